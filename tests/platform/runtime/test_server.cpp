// A COM server in a shared library: one class, which can't be aggregated and counts its objects.
#include "platform/com.h"

#include <atomic>

namespace {

std::atomic<int> liveObjects{0};

constexpr CLSID counterClass = {
    0x6F1C0C0E, 0x3A52, 0x4D0B, {0x9A, 0x53, 0x5B, 0x7C, 0x0C, 0x2D, 0x4E, 0x1F}};

// What the class object and its objects share: a counted IUnknown and one interface beside it.
template <class Interface>
class Counted : public Interface {
  public:
    explicit Counted(const IID& iid) : iid_(iid) { ++liveObjects; }
    virtual ~Counted() { --liveObjects; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = iid == IID_IUnknown || iid == iid_ ? this : nullptr;
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

  private:
    const IID& iid_;
    std::atomic<ULONG> references_{1};
};

class Counter final : public Counted<IPersist> {
  public:
    Counter() : Counted(IID_IPersist) {}
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* clsid) override {
        *clsid = counterClass;
        return S_OK;
    }
};

class CounterFactory final : public Counted<IClassFactory> {
  public:
    CounterFactory() : Counted(IID_IClassFactory) {}
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        *object = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        auto* counter = new Counter;
        const HRESULT hr = counter->QueryInterface(iid, object);
        counter->Release();
        return hr;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

} // namespace

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    *object = nullptr;
    if (clsid != counterClass) return CLASS_E_CLASSNOTAVAILABLE;
    auto* factory = new CounterFactory;
    const HRESULT hr = factory->QueryInterface(iid, object);
    factory->Release();
    return hr;
}

extern "C" int runtimeTestLiveObjects() { return liveObjects; }
