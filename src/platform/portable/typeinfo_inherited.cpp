// What a dispinterface has from the interfaces that it extends.
#include "platform/portable/typeinfo_library.h"
#include "platform/typeinfo_holders.h"

namespace platform {

// Another library numbers the types that its descriptions refer to in its own way.
HRESULT TypeDescription::renumber(ITypeInfo* owner, TYPEDESC& type) {
    switch (type.vt) {
    case VT_PTR:
    case VT_SAFEARRAY:
        return renumber(owner, *type.lptdesc);
    case VT_CARRAY:
        return renumber(owner, type.lpadesc->tdescElem);
    case VT_USERDEFINED: {
        ComPtr<ITypeInfo> referred;
        const HRESULT hr = owner->GetRefTypeInfo(type.hreftype, referred.put());
        if (SUCCEEDED(hr)) {
            type.hreftype = library_.addReference(referred.get());
        }
        return hr;
    }
    default:
        return S_OK;
    }
}

HRESULT TypeDescription::inheritFunction(ITypeInfo* owner, const FUNCDESC& from) {
    auto function = std::make_unique<OwnedDesc<FUNCDESC>>(from);
    HRESULT hr = renumber(owner, function->elemdescFunc.tdesc);
    for (SHORT i = 0; i < function->cParams && SUCCEEDED(hr); ++i) {
        hr = renumber(owner, function->lprgelemdescParam[i].tdesc);
    }
    // Who calls through Invoke gets the code of a method from Invoke itself.
    if (function->funckind != FUNC_DISPATCH && function->elemdescFunc.tdesc.vt == VT_HRESULT) {
        function->elemdescFunc.tdesc.vt = VT_VOID;
    }
    function->funckind = FUNC_DISPATCH;
    inherited_.push_back(std::move(function));
    return hr;
}

// A dispinterface gives its inherited functions itself, an interface only its own.
HRESULT TypeDescription::inheritFrom(ITypeInfo* from) {
    const TypeAttrHolder attr(from, &ITypeInfo::GetTypeAttr);
    if (!attr) {
        return TYPE_E_UNDEFINEDTYPE;
    }
    HRESULT hr = S_OK;
    HREFTYPE next = 0;
    if (attr->typekind == TKIND_INTERFACE && SUCCEEDED(from->GetRefTypeOfImplType(0, &next))) {
        ComPtr<ITypeInfo> further;
        hr = from->GetRefTypeInfo(next, further.put());
        hr = SUCCEEDED(hr) ? inheritFrom(further.get()) : hr;
    }
    for (UINT i = 0; i < attr->cFuncs && SUCCEEDED(hr); ++i) {
        const FuncDescHolder function(from, &ITypeInfo::GetFuncDesc, i);
        hr = function ? inheritFunction(from, *function) : TYPE_E_UNDEFINEDTYPE;
    }
    return hr;
}

} // namespace platform
