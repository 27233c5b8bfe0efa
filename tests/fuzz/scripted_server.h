// A server whose every answer is drawn from an input.
#pragma once

#include "fuzz/variant_values.h"
#include "platform/holders.h"
#include "support/com_double.h"

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

// An object whose answers come from the script.
template <class... Interfaces>
class Scripted : public axlink2::test::Counted<Interfaces...> {
  protected:
    Scripted(const char* name, Script& script)
        : axlink2::test::Counted<Interfaces...>(name), script_(script) {}

    Script& script_;
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
