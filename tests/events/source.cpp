// The source's way to fail, and the fixture's listeners.
#include "events/source.h"

#include "servers/sample/faults.h"
#include "support/com_double.h"

namespace axlink2::test {
namespace {

using platform::ComPtr;

// Gives the other connection point's cookies a look of their own.
constexpr DWORD firstCookie = 100;

// Whether the step fails now; `result` is then its answer, with an out-parameter left as it is or,
// for NullWithSuccess, null.
bool fails(Step step, HRESULT& result) {
    if (Source::traffic.failing != step) return false;
    if (Source::traffic.failure == Failure::Fault) sample::writeThroughNull();
    result = Source::traffic.failure == Failure::Code ? E_FAIL : S_OK;
    return true;
}

// Stands before the connection point of a source.
class Point final : public Counted<Silent<IConnectionPoint>> {
  public:
    explicit Point(Source& owner)
        : Counted("Point"), owner_(ComPtr<IDispatch>::borrow(&owner)), events_(owner.events()) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** out) override {
        return offer(false, this, out);
    }
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override {
        HRESULT hr = S_OK;
        if (fails(Step::Advise, hr)) return hr;
        if (Source::traffic.onAdvise) Source::traffic.onAdvise();
        hr = events_.Advise(sink, cookie);
        *cookie += firstCookie;
        Source::traffic.advised.push_back(*cookie);
        return hr;
    }
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override {
        Source::traffic.unadvised.push_back(cookie);
        HRESULT hr = S_OK;
        if (fails(Step::Unadvise, hr)) return hr;
        return events_.Unadvise(cookie - firstCookie);
    }

  private:
    ComPtr<IDispatch> owner_;
    kit::ConnectionPoint& events_;
};

void* const garbage = reinterpret_cast<void*>(0x10);

} // namespace

HRESULT Source::QueryInterface(REFIID iid, void** object) {
    if (iid != IID_IConnectionPointContainer) return DispatchObject::QueryInterface(iid, object);
    ++traffic.queries;
    HRESULT hr = S_OK;
    // A client has no business with what a failed call leaves behind.
    *object = traffic.failure == Failure::Code ? garbage : nullptr;
    return fails(Step::Query, hr) ? hr : DispatchObject::QueryInterface(iid, object);
}

HRESULT Source::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
    ++traffic.finds;
    *point = traffic.failure == Failure::Code ? static_cast<IConnectionPoint*>(garbage) : nullptr;
    HRESULT hr = S_OK;
    if (fails(Step::Find, hr)) return hr;
    EXPECT_EQ(iid, definition().parts().sourceInterface);
    *point = new Point(*this);
    return S_OK;
}

void Source::crash() { sample::writeThroughNull(); }

std::shared_ptr<velmar::Listener> EventTest::listen(const Array& object, const std::string& event) {
    return velmar::addListener(handle(object), event,
                               [this](const hxArray* source, const hxArray* data) {
                                   EXPECT_TRUE(hoIsHOS(source));
                                   heard.push_back(plain(data));
                               });
}

std::shared_ptr<velmar::Listener> EventTest::listen(const Array& object, const std::string& event,
                                                    std::function<void()> action) {
    return velmar::addListener(
        handle(object), event,
        [action = std::move(action)](const hxArray*, const hxArray*) { action(); });
}

std::string EventTest::event(const std::string& name, DISPID dispid, const std::string& fields) {
    return "(Type='" + name + "' Source=<COM.Test_Source> EventID=" + std::to_string(dispid) +
           (fields.empty() ? "" : " " + fields) + ")";
}

HRESULT EventTest::invoke(IDispatch* sink, DISPID dispid, DISPPARAMS params, VARIANT* result,
                          const IID& iid) {
    return sink->Invoke(dispid, iid, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, result, nullptr,
                        nullptr);
}

} // namespace axlink2::test
