// The answers of scripted servers: calls, failures, outputs, events.
#include "fuzz/scripted_server.h"

#include "fuzz/scripted_types.h"
#include "platform/element_size.h"

#include <utility>

namespace fuzz {
namespace {

using axlink2::test::Silent;

class ScriptedConnectionPoint final : public Scripted<Silent<IConnectionPoint>> {
  public:
    explicit ScriptedConnectionPoint(Script& script)
        : Scripted("ScriptedConnectionPoint", script) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        return offer(iid == IID_IUnknown || iid == IID_IConnectionPoint, this, out);
    }
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override {
        if (script_.answers.oneIn(4)) return script_.failure();
        *cookie = script_.answers.number<DWORD>();
        if (script_.answers.oneIn(8)) return S_OK; // without looking at the sink
        auto dispatch = platform::queryInterface<IDispatch>(sink, IID_IDispatch);
        if (dispatch) script_.sinks.push_back(std::move(dispatch));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD) override {
        if (script_.sinks.empty()) return E_POINTER;
        script_.sinks.pop_back();
        return S_OK;
    }
};

// What a failed call leaves in an out-parameter.
template <class T>
T* garbage() {
    return reinterpret_cast<T*>(0x10);
}

} // namespace

IDispatch* Script::makeServer() {
    return answers.isEmpty() || answers.oneIn(4) ? nullptr : new ScriptedServer(*this);
}

BSTR Script::text(unsigned most) {
    if (answers.oneIn(8)) return nullptr;
    const platform::OleString text = platform::toOle(answers.wideText(most));
    return SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

HRESULT Script::failure() {
    constexpr std::array<HRESULT, 10> failures = {
        E_FAIL,           DISP_E_MEMBERNOTFOUND, DISP_E_PARAMNOTFOUND, DISP_E_TYPEMISMATCH,
        DISP_E_EXCEPTION, DISP_E_EXCEPTION,      DISP_E_OVERFLOW,      DISP_E_BADPARAMCOUNT,
        E_OUTOFMEMORY,    DISP_E_UNKNOWNNAME};
    return answers.oneIn(8) ? static_cast<HRESULT>(0x80000000u | answers.number<ULONG>())
                            : answers.pick(failures);
}

HRESULT ScriptedServer::QueryInterface(REFIID iid, void** out) {
    if (iid == IID_IConnectionPointContainer)
        return offer(!script_.answers.oneIn(4), static_cast<IConnectionPointContainer*>(this), out);
    return offer(iid == IID_IUnknown || iid == IID_IDispatch, static_cast<IDispatch*>(this), out);
}

HRESULT ScriptedServer::GetTypeInfoCount(UINT* count) {
    *count = script_.types ? 1 : 0;
    return S_OK;
}

HRESULT ScriptedServer::GetTypeInfo(UINT, LCID, ITypeInfo** out) {
    if (!script_.types) return E_NOTIMPL;
    return script_.types->giveType(out);
}

HRESULT ScriptedServer::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID* dispids) {
    if (script_.answers.oneIn(8)) return script_.failure();
    *dispids = static_cast<DISPID>(script_.answers.upTo(7));
    return S_OK;
}

HRESULT ScriptedServer::fail(VARIANT* result, EXCEPINFO* excepInfo, UINT* argumentError) {
    if (result && script_.answers.oneIn(2)) {
        result->vt = VT_BSTR;
        result->bstrVal = garbage<OLECHAR>();
    }
    if (excepInfo && script_.answers.oneIn(2)) {
        excepInfo->wCode = script_.answers.number<WORD>();
        excepInfo->scode = script_.answers.number<SCODE>();
        excepInfo->dwHelpContext = script_.answers.number<DWORD>();
        excepInfo->bstrSource = script_.text();
        excepInfo->bstrDescription = script_.text();
        excepInfo->bstrHelpFile = script_.text();
    }
    if (argumentError) *argumentError = script_.answers.number<UINT>();
    return script_.failure();
}

// What is referred to is replaced by a value of its own kind, as a server that keeps to the rules
// does; its kind and the arguments by value are the caller's.
void ScriptedServer::writeOutputs(DISPPARAMS& params) {
    for (UINT i = 0; i < params.cArgs; ++i) {
        VARIANT& argument = params.rgvarg[i];
        if (!(argument.vt & VT_BYREF) || !argument.byref || script_.answers.oneIn(4)) continue;
        VARIANT value{};
        script_.values.fill(value);
        const auto wanted = static_cast<VARTYPE>(argument.vt & ~VT_BYREF);
        if (wanted == VT_VARIANT) {
            if (SUCCEEDED(VariantClear(argument.pvarVal))) std::swap(*argument.pvarVal, value);
        } else if (wanted == VT_DECIMAL) {
            *argument.pdecVal = script_.answers.number<DECIMAL>();
        } else if (value.vt == wanted || SUCCEEDED(VariantChangeType(&value, &value, 0, wanted))) {
            VARIANT old{};
            old.vt = wanted;
            const std::size_t size =
                wanted & VT_ARRAY ? sizeof(SAFEARRAY*) : platform::elementSize(wanted);
            std::memcpy(&old.llVal, argument.byref, size);
            std::memcpy(argument.byref, &value.llVal, size);
            value = old;
        }
        VariantClear(&value);
    }
}

void ScriptedServer::fireEvent() {
    if (script_.sinks.empty()) return;
    VARIANT arguments[3] = {};
    const UINT count = script_.answers.upTo(3);
    for (UINT i = 0; i < count; ++i)
        script_.values.fill(arguments[i]);
    DISPPARAMS params{arguments, nullptr, count, 0};
    const auto sink = script_.sinks.back();
    sink->Invoke(static_cast<DISPID>(script_.answers.upTo(7)), IID_NULL, LOCALE_USER_DEFAULT,
                 DISPATCH_METHOD, &params, nullptr, nullptr, nullptr);
    for (VARIANT& argument : arguments)
        VariantClear(&argument);
}

HRESULT ScriptedServer::Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT* result,
                               EXCEPINFO* excepInfo, UINT* argumentError) {
    if (script_.answers.isEmpty() || script_.answers.oneIn(4))
        return fail(result, excepInfo, argumentError);
    if (script_.answers.oneIn(8)) fireEvent();
    writeOutputs(*params);
    if (result) script_.values.fill(*result);
    return script_.answers.oneIn(8) ? S_FALSE : S_OK;
}

HRESULT ScriptedServer::EnumConnectionPoints(IEnumConnectionPoints**) { return E_NOTIMPL; }

HRESULT ScriptedServer::FindConnectionPoint(REFIID, IConnectionPoint** out) {
    *out = garbage<IConnectionPoint>();
    if (script_.answers.oneIn(4)) return script_.failure();
    *out = script_.answers.oneIn(8) ? nullptr : new ScriptedConnectionPoint(script_);
    return S_OK;
}

} // namespace fuzz
