// Faulty fronts of IDispatch and of what a server has beside it.
#include "support/faulty/server.h"

#include "support/faulty/persistence.h"
#include "support/faulty/type_info.h"

#include <map>
#include <set>

namespace axlink2::test {
namespace {

using platform::ComPtr;

// What is alive: fronts by the identity of the real object, and fronts alone.
std::map<IUnknown*, IDispatch*>& fronts() {
    static std::map<IUnknown*, IDispatch*> alive;
    return alive;
}
std::set<IUnknown*>& frontObjects() {
    static std::set<IUnknown*> alive;
    return alive;
}

ComPtr<IUnknown> identityOf(IUnknown* object) {
    return platform::queryInterface<IUnknown>(object, IID_IUnknown);
}

// Puts a front in the place of an object, whose reference it takes over.
template <class Interface>
void wrapObject(Interface*& object, FaultPlan& plan) {
    if (!object || frontObjects().contains(object)) return;
    const auto real = ComPtr<Interface>::adopt(object);
    const auto dispatch = platform::queryInterface<IDispatch>(real.get(), IID_IDispatch);
    object =
        dispatch ? faultyServer(dispatch.get(), plan).detach() : ComPtr<Interface>(real).detach();
}

void wrapValue(VARIANT& v, FaultPlan& plan);

void wrapElements(SAFEARRAY* array, VARTYPE vt, FaultPlan& plan) {
    if (!array || array->cDims == 0) return;
    ULONG count = 1;
    for (USHORT i = 0; i < array->cDims; ++i)
        count *= array->rgsabound[i].cElements;
    for (ULONG i = 0; i < count; ++i) {
        if (vt == VT_VARIANT)
            wrapValue(static_cast<VARIANT*>(array->pvData)[i], plan);
        else
            wrapObject(static_cast<IUnknown**>(array->pvData)[i], plan);
    }
}

void wrapValue(VARIANT& v, FaultPlan& plan) {
    const auto element = static_cast<VARTYPE>(v.vt & VT_TYPEMASK);
    if (element != VT_DISPATCH && element != VT_UNKNOWN && element != VT_VARIANT) return;
    const bool isReference = (v.vt & VT_BYREF) != 0;
    if (isReference && !v.byref) return;
    if (v.vt & VT_ARRAY)
        wrapElements(isReference ? *v.pparray : v.parray, element, plan);
    else if (element == VT_VARIANT)
        wrapValue(*v.pvarVal, plan);
    else if (element == VT_DISPATCH)
        wrapObject(isReference ? *v.ppdispVal : v.pdispVal, plan);
    else
        wrapObject(isReference ? *v.ppunkVal : v.punkVal, plan);
}

class FaultyConnectionPoint final : public Faulty<IConnectionPoint, Silent<IConnectionPoint>> {
  public:
    using Faulty::Faulty;

    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override {
        return orFails("Advise", [&] { return real_->Advise(sink, cookie); });
    }
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override {
        // A server that refuses to let go of a sink keeps it, and the sink keeps nothing alive.
        const HRESULT hr = real_->Unadvise(cookie);
        return orFails("Unadvise", [&] { return hr; });
    }
};

class FaultyContainer final : public Faulty<IConnectionPointContainer> {
  public:
    using Faulty::Faulty;

    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints**) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override {
        return orFails("FindConnectionPoint", point, [&] {
            const HRESULT hr = real_->FindConnectionPoint(iid, point);
            if (FAILED(hr)) return hr;
            const OwnWork own(plan_);
            const auto real = ComPtr<IConnectionPoint>::adopt(*point);
            *point = new FaultyConnectionPoint(real.get(), IID_IConnectionPoint, plan_);
            return hr;
        });
    }
};

class FaultyServer final : public Faulty<IDispatch> {
  public:
    FaultyServer(IDispatch* real, FaultPlan& plan)
        : Faulty(real, IID_IDispatch, plan), identity_(identityOf(real).get()) {
        fronts().emplace(identity_, this);
        frontObjects().insert(this);
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        return orFails("QueryInterface", reinterpret_cast<IUnknown**>(out), [&] {
            if (iid == IID_IConnectionPointContainer) return giveContainer(out);
            if (SUCCEEDED(givePersistence(real_.get(), iid, plan_, this, out))) return S_OK;
            return Faulty::QueryInterface(iid, out);
        });
    }
    // Both fail by a fault, when they have done their work, and only where that is asked for.
    ULONG STDMETHODCALLTYPE AddRef() override {
        const ULONG now = Faulty::AddRef();
        if (plan_.only) plan_.fails("AddRef");
        return now;
    }
    ULONG STDMETHODCALLTYPE Release() override {
        FaultPlan& plan = plan_;
        const ULONG left = Faulty::Release();
        if (plan.only && left == 0) plan.fails("Release");
        return left;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (!plan_.fails("GetTypeInfoCount")) return real_->GetTypeInfoCount(count);
        if (plan_.kind == FaultPlan::EmptySuccess) *count = 2;
        return plan_.answer();
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID lcid, ITypeInfo** out) override {
        return orFails("GetTypeInfo", out,
                       [&] { return wrapType(real_->GetTypeInfo(index, lcid, out), out, plan_); });
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID lcid,
                                            DISPID* dispids) override {
        return plan_.fails("GetIDsOfNames")
                   ? E_FAIL
                   : real_->GetIDsOfNames(iid, names, count, lcid, dispids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID dispid, REFIID iid, LCID lcid, WORD flags,
                                     DISPPARAMS* params, VARIANT* result, EXCEPINFO* excepInfo,
                                     UINT* argumentError) override {
        if (plan_.fails("Invoke")) {
            if (result && plan_.kind == FaultPlan::Garbage) {
                result->vt = VT_BSTR;
                result->bstrVal = reinterpret_cast<BSTR>(0x10);
            }
            return plan_.answer();
        }
        const HRESULT hr =
            real_->Invoke(dispid, iid, lcid, flags, params, result, excepInfo, argumentError);
        if (FAILED(hr)) return hr;
        if (result) wrapValue(*result, plan_);
        for (UINT i = 0; i < params->cArgs; ++i)
            if (params->rgvarg[i].vt & VT_BYREF) wrapValue(params->rgvarg[i], plan_);
        return hr;
    }

  private:
    ~FaultyServer() override {
        fronts().erase(identity_);
        frontObjects().erase(this);
    }

    HRESULT giveContainer(void** out) {
        const OwnWork own(plan_);
        *out = nullptr;
        const auto offered = platform::queryInterface<IConnectionPointContainer>(
            real_.get(), IID_IConnectionPointContainer);
        if (!offered) return E_NOINTERFACE;
        *out = static_cast<IConnectionPointContainer*>(
            new FaultyContainer(offered.get(), IID_IConnectionPointContainer, plan_, this));
        return S_OK;
    }

    IUnknown* const identity_;
};

} // namespace

ComPtr<IDispatch> faultyServer(IDispatch* real, FaultPlan& plan) {
    const OwnWork own(plan);
    const auto known = fronts().find(identityOf(real).get());
    if (known != fronts().end()) return ComPtr<IDispatch>::borrow(known->second);
    return ComPtr<IDispatch>::adopt(new FaultyServer(real, plan));
}

} // namespace axlink2::test
