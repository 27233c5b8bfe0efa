// IDispatch for every server object.
#include "servers/kit/dispatch_object.h"

#include <new>

namespace kit {

namespace {

HRESULT giveReference(IUnknown* object, void** out) {
    object->AddRef();
    *out = object;
    return S_OK;
}

// A property is put through exactly one named argument.
void checkNamedArguments(const DISPPARAMS& params, bool isPut) {
    if (!isPut) {
        if (params.cNamedArgs) throw ComFailure{DISP_E_NONAMEDARGS};
        return;
    }
    if (!params.cNamedArgs) throw ComFailure{DISP_E_PARAMNOTFOUND};
    if (params.cNamedArgs > 1 || params.rgdispidNamedArgs[0] != DISPID_PROPERTYPUT)
        throw ComFailure{DISP_E_NONAMEDARGS};
}

} // namespace

DispatchObject::DispatchObject(const ClassDefinition& definition)
    : LiveObject(definition.name()), definition_(definition),
      events_(*this, definition.parts().sourceInterface) {}

DispatchObject::~DispatchObject() = default;

void* DispatchObject::findInterface(REFIID) { return nullptr; }

HRESULT DispatchObject::QueryInterface(REFIID iid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    const ClassParts& parts = definition_.parts();
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == parts.mainInterface)
        return giveReference(static_cast<IDispatch*>(this), object);
    if (iid == IID_IConnectionPointContainer && parts.sourceInterface != GUID_NULL)
        return giveReference(static_cast<IConnectionPointContainer*>(this), object);
    if ((iid == IID_IProvideClassInfo || iid == IID_IProvideClassInfo2) && parts.hasTypeInfo)
        return giveReference(static_cast<IProvideClassInfo2*>(this), object);
    *object = findInterface(iid);
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

HRESULT DispatchObject::GetTypeInfoCount(UINT* count) {
    if (!count) return E_POINTER;
    *count = definition_.parts().hasTypeInfo ? 1 : 0;
    return S_OK;
}

HRESULT DispatchObject::GetTypeInfo(UINT index, LCID, ITypeInfo** info) {
    if (!info) return E_POINTER;
    *info = nullptr;
    if (!definition_.parts().hasTypeInfo) return E_NOTIMPL;
    if (index != 0) return DISP_E_BADINDEX;
    return answer([&] {
        *info = platform::ComPtr<ITypeInfo>::borrow(definition_.typeInfo()).detach();
        return S_OK;
    });
}

HRESULT DispatchObject::GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID,
                                      DISPID* dispids) {
    if (riid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (!names || !dispids || count == 0) return E_INVALIDARG;
    // Only members have numbers here: parameters can't be named in a call.
    for (UINT index = 0; index < count; ++index)
        dispids[index] = DISPID_UNKNOWN;
    return answer([&] {
        dispids[0] = definition_.dispidOf(names[0]);
        return dispids[0] == DISPID_UNKNOWN || count > 1 ? DISP_E_UNKNOWNNAME : S_OK;
    });
}

HRESULT DispatchObject::Invoke(DISPID dispid, REFIID riid, LCID lcid, WORD flags,
                               DISPPARAMS* params, VARIANT* result, EXCEPINFO* excepInfo,
                               UINT* argumentError) {
    if (CallLog* log = CallLog::current())
        log->record(definition_.name(), dispid, riid, lcid, flags, params, result, excepInfo,
                    argumentError);
    if (riid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (!params || (params->cArgs && !params->rgvarg)) return E_INVALIDARG;
    bool isPut = false;
    const Handler* handler = definition_.find(dispid, flags, isPut);
    if (!handler) return DISP_E_MEMBERNOTFOUND;
    try {
        checkNamedArguments(*params, isPut);
        Call call{flags, lcid, *params, result, excepInfo, argumentError, isPut};
        return handler->run(*this, call);
    } catch (const ComFailure& failure) {
        if (argumentError && failure.argument) *argumentError = *failure.argument;
        return failure.result;
    } catch (const ServerError& error) {
        if (excepInfo) error.fill(*excepInfo);
        return DISP_E_EXCEPTION;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

HRESULT DispatchObject::EnumConnectionPoints(IEnumConnectionPoints** points) {
    if (!points) return E_POINTER;
    *points = nullptr;
    return E_NOTIMPL;
}

HRESULT DispatchObject::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
    if (!point) return E_POINTER;
    *point = nullptr;
    const IID& source = definition_.parts().sourceInterface;
    if (source == GUID_NULL || iid != source) return CONNECT_E_NOCONNECTION;
    *point = platform::ComPtr<IConnectionPoint>::borrow(&events_).detach();
    return S_OK;
}

HRESULT DispatchObject::GetClassInfo(ITypeInfo** info) {
    if (!info) return E_POINTER;
    *info = nullptr;
    return answer([&] {
        *info = platform::ComPtr<ITypeInfo>::borrow(definition_.classInfo()).detach();
        return S_OK;
    });
}

HRESULT DispatchObject::GetGUID(DWORD kind, GUID* guid) {
    if (!guid) return E_POINTER;
    *guid = definition_.parts().sourceInterface;
    if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID || *guid == GUID_NULL) return E_INVALIDARG;
    return S_OK;
}

} // namespace kit
