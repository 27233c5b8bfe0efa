// The writing side of a type: ICreateTypeInfo, but for LayOut.
#include "platform/answer.h"
#include "platform/fold_case.h"
#include "platform/portable/typeinfo_library.h"

#include <algorithm>
#include <stdexcept>

namespace platform {
namespace {

OptionalText optionalText(LPCOLESTR text) { return text ? OptionalText(text) : std::nullopt; }

// The kinds of function that a kind of type may have.
bool takesFunction(TYPEKIND type, FUNCKIND function) {
    switch (type) {
    case TKIND_DISPATCH:
        return function == FUNC_DISPATCH;
    case TKIND_INTERFACE:
        return function == FUNC_PUREVIRTUAL;
    case TKIND_MODULE:
        return function == FUNC_STATIC;
    default:
        return false;
    }
}

// The kinds of variable that a kind of type may have.
bool takesVariable(TYPEKIND type, VARKIND variable) {
    switch (type) {
    case TKIND_ENUM:
    case TKIND_MODULE:
        return variable == VAR_CONST;
    case TKIND_RECORD:
    case TKIND_UNION:
        return variable == VAR_PERINSTANCE;
    case TKIND_DISPATCH:
        return variable == VAR_DISPATCH;
    default:
        return false;
    }
}

// What `call` answers, which refuses what cannot be copied.
template <class Call>
HRESULT answerCopy(Call call) {
    return answer([&] {
        try {
            return call();
        } catch (const std::invalid_argument&) {
            return E_INVALIDARG;
        }
    });
}

// Copies a description to its place among its like, refusing what cannot be copied.
template <class Members, class Desc>
HRESULT insertCopy(Members& members, UINT index, Desc& desc) {
    if (index > members.size()) {
        return TYPE_E_ELEMENTNOTFOUND;
    }
    return answerCopy([&] {
        typename Members::value_type member(desc);
        members.insert(members.begin() + index, std::move(member));
        return S_OK;
    });
}

// Sets a field of the member at index.
template <class Members, class Set>
HRESULT setField(Members& members, UINT index, Set set) {
    if (index >= members.size()) {
        return TYPE_E_ELEMENTNOTFOUND;
    }
    return answer([&] {
        set(members[index]);
        return S_OK;
    });
}

bool isPut(INVOKEKIND invkind) {
    return invkind == INVOKE_PROPERTYPUT || invkind == INVOKE_PROPERTYPUTREF;
}

} // namespace

HRESULT TypeDescription::SetGuid(REFGUID guid) {
    if (guid != GUID_NULL && library_.hasGuid(guid, this)) {
        return TYPE_E_DUPLICATEID;
    }
    attr_.guid = guid;
    return S_OK;
}

HRESULT TypeDescription::SetTypeFlags(UINT flags) {
    attr_.wTypeFlags = static_cast<WORD>(flags);
    return S_OK;
}

HRESULT TypeDescription::SetDocString(LPOLESTR text) {
    return answer([&] {
        doc_ = optionalText(text);
        return S_OK;
    });
}

HRESULT TypeDescription::SetHelpContext(DWORD helpContext) {
    helpContext_ = helpContext;
    return S_OK;
}

HRESULT TypeDescription::SetVersion(WORD major, WORD minor) {
    attr_.wMajorVerNum = major;
    attr_.wMinorVerNum = minor;
    return S_OK;
}

HRESULT TypeDescription::AddRefTypeInfo(ITypeInfo* typeInfo, HREFTYPE* refType) {
    if (!typeInfo || !refType) {
        return E_INVALIDARG;
    }
    return answer([&] {
        *refType = library_.addReference(typeInfo);
        return S_OK;
    });
}

HRESULT TypeDescription::AddFuncDesc(UINT index, FUNCDESC* funcDesc) {
    if (!funcDesc || funcDesc->cParams < 0 || funcDesc->cScodes < 0 ||
        funcDesc->cParamsOpt > funcDesc->cParams ||
        (funcDesc->cParams > 0 && !funcDesc->lprgelemdescParam) ||
        (funcDesc->cScodes > 0 && !funcDesc->lprgscode)) {
        return E_INVALIDARG;
    }
    return takesFunction(kind(), funcDesc->funckind) ? insertCopy(functions_, index, *funcDesc)
                                                     : TYPE_E_BADMODULEKIND;
}

HRESULT TypeDescription::AddVarDesc(UINT index, VARDESC* varDesc) {
    if (!varDesc) {
        return E_INVALIDARG;
    }
    return takesVariable(kind(), varDesc->varkind) ? insertCopy(variables_, index, *varDesc)
                                                   : TYPE_E_BADMODULEKIND;
}

HRESULT TypeDescription::AddImplType(UINT index, HREFTYPE refType) {
    if (!isInterface() && kind() != TKIND_COCLASS) {
        return TYPE_E_BADMODULEKIND;
    }
    if (index > implemented_.size() || (isInterface() && index != 0)) {
        return TYPE_E_ELEMENTNOTFOUND;
    }
    ComPtr<ITypeInfo> ancestor = library_.resolve(refType);
    if (!ancestor) {
        return TYPE_E_ELEMENTNOTFOUND;
    }
    if (isInterface()) {
        if (!implemented_.empty()) {
            return TYPE_E_BADMODULEKIND;
        }
        // An interface among its own ancestors would make every look-up endless.
        while (ancestor) {
            if (ancestor.get() == static_cast<ITypeInfo*>(this)) {
                return TYPE_E_CIRCULARTYPE;
            }
            HREFTYPE next = 0;
            ComPtr<ITypeInfo> further;
            if (SUCCEEDED(ancestor->GetRefTypeOfImplType(0, &next)) &&
                FAILED(ancestor->GetRefTypeInfo(next, further.put()))) {
                return TYPE_E_UNDEFINEDTYPE;
            }
            ancestor = std::move(further);
        }
    }
    return answer([&] {
        implemented_.insert(implemented_.begin() + index, {refType, 0});
        return S_OK;
    });
}

HRESULT TypeDescription::SetImplTypeFlags(UINT index, INT flags) {
    if (kind() != TKIND_COCLASS) {
        return TYPE_E_BADMODULEKIND;
    }
    return setField(implemented_, index, [&](ImplementedType& type) { type.flags = flags; });
}

HRESULT TypeDescription::SetAlignment(WORD alignment) {
    attr_.cbAlignment = alignment;
    return S_OK;
}

// Whether the function at index may have the name: another one of that name must be the other
// accessor of the same property.
bool TypeDescription::namesAgree(std::size_t index, OleView name) const {
    const FUNCDESC& own = *functions_[index].desc;
    for (const Function& other : functions_) {
        if (&other == &functions_[index] || other.names.empty() ||
            !equalNoCase(other.names.front(), name)) {
            continue;
        }
        const bool bothAccessors = own.invkind != INVOKE_FUNC && other.desc->invkind != INVOKE_FUNC;
        if (!bothAccessors || own.memid != other.desc->memid ||
            own.invkind == other.desc->invkind) {
            return false;
        }
    }
    return true;
}

HRESULT TypeDescription::SetFuncAndParamNames(UINT index, LPOLESTR* names, UINT count) {
    if (!names || count == 0 || std::find(names, names + count, nullptr) != names + count) {
        return E_INVALIDARG;
    }
    if (index >= functions_.size()) {
        return TYPE_E_ELEMENTNOTFOUND;
    }
    Function& function = functions_[index];
    // The value of a property that is put has no name.
    const auto parameters = static_cast<UINT>(function.desc->cParams);
    const UINT most = isPut(function.desc->invkind) && parameters > 0 ? parameters : parameters + 1;
    if (count > most) {
        return TYPE_E_ELEMENTNOTFOUND;
    }
    if (!namesAgree(index, names[0])) {
        return TYPE_E_AMBIGUOUSNAME;
    }
    return answer([&] {
        function.names = std::vector<OleString>(names, names + count);
        return S_OK;
    });
}

HRESULT TypeDescription::SetVarName(UINT index, LPOLESTR name) {
    if (!name) {
        return E_INVALIDARG;
    }
    return setField(variables_, index, [&](Variable& variable) { variable.names = {name}; });
}

HRESULT TypeDescription::SetTypeDescAlias(TYPEDESC* alias) {
    if (!alias) {
        return E_INVALIDARG;
    }
    if (kind() != TKIND_ALIAS) {
        return TYPE_E_BADMODULEKIND;
    }
    return answerCopy([&] {
        attr_.tdescAlias = aliasMemory_.copyType(*alias);
        return S_OK;
    });
}

HRESULT TypeDescription::SetFuncDocString(UINT index, LPOLESTR text) {
    return setField(functions_, index, [&](Function& f) { f.doc = optionalText(text); });
}

HRESULT TypeDescription::SetVarDocString(UINT index, LPOLESTR text) {
    return setField(variables_, index, [&](Variable& v) { v.doc = optionalText(text); });
}

HRESULT TypeDescription::SetFuncHelpContext(UINT index, DWORD helpContext) {
    return setField(functions_, index, [&](Function& f) { f.helpContext = helpContext; });
}

HRESULT TypeDescription::SetVarHelpContext(UINT index, DWORD helpContext) {
    return setField(variables_, index, [&](Variable& v) { v.helpContext = helpContext; });
}

HRESULT TypeDescription::SetTypeIdldesc(IDLDESC* idlDesc) {
    if (!idlDesc) {
        return E_INVALIDARG;
    }
    attr_.idldescType = *idlDesc;
    return S_OK;
}

HRESULT TypeDescription::SetSchema(LPOLESTR) { return E_NOTIMPL; }
HRESULT TypeDescription::DefineFuncAsDllEntry(UINT, LPOLESTR, LPOLESTR) { return E_NOTIMPL; }
HRESULT TypeDescription::SetMops(UINT, BSTR) { return E_NOTIMPL; }

} // namespace platform
