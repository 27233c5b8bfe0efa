// A server whose every answer is drawn from an input.
#pragma once

#include "fuzz/variant_values.h"
#include "platform/com.h"
#include "platform/holders.h"
#include "servers/kit/live_objects.h"

#include <atomic>
#include <vector>

namespace fuzz {

class ScriptedTypes;

// What all scripted objects of a case share; it outlives them.
struct Script {
    explicit Script(ByteSource source) : answers(source) {}

    ByteSource answers;             // of calls
    ScriptedTypes* types = nullptr; // null for servers without type information
    VariantWorld values{answers, [this] { return makeServer(); }};
    std::vector<platform::ComPtr<IDispatch>> sinks; // that are advised

    // A new server, or null.
    IDispatch* makeServer();
    BSTR text(unsigned most = 12);
    HRESULT failure();
};

// Reference counting, for an object that the kit counts too.
template <class... Interfaces>
class Scripted : public Interfaces..., public kit::LiveObject {
  public:
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

  protected:
    Scripted(const char* name, Script& script) : LiveObject(name), script_(script) {}
    virtual ~Scripted() = default;

    // Hands `object` out where `iid` is known.
    HRESULT offer(bool isKnown, IUnknown* object, void** out) {
        *out = isKnown ? object : nullptr;
        if (isKnown) AddRef();
        return isKnown ? S_OK : E_NOINTERFACE;
    }

    Script& script_;

  private:
    ULONG references_ = 1;
};

class ScriptedServer final : public Scripted<IDispatch, IConnectionPointContainer> {
  public:
    explicit ScriptedServer(Script& script) : Scripted("ScriptedServer", script) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return Scripted::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return Scripted::Release(); }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID lcid, ITypeInfo** out) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID lcid,
                                            DISPID* dispids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID dispid, REFIID iid, LCID lcid, WORD flags,
                                     DISPPARAMS* params, VARIANT* result, EXCEPINFO* excepInfo,
                                     UINT* argumentError) override;

    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** out) override;
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** out) override;

  private:
    HRESULT fail(VARIANT* result, EXCEPINFO* excepInfo, UINT* argumentError);
    void writeOutputs(DISPPARAMS& params);
    void fireEvent();
};

} // namespace fuzz
