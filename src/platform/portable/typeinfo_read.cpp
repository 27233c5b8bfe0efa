// The reading side of a type: ITypeInfo.
#include "platform/answer.h"
#include "platform/fold_case.h"
#include "platform/portable/typeinfo_library.h"

#include <algorithm>

namespace platform {

TypeDescription::TypeDescription(TypeLibrary& library, OleString name, TYPEKIND kind)
    : library_(library), name_(std::move(name)) {
    attr_.lcid = library.lcid();
    attr_.memidConstructor = MEMBERID_NIL;
    attr_.memidDestructor = MEMBERID_NIL;
    attr_.typekind = kind;
    const bool isObject =
        kind == TKIND_INTERFACE || kind == TKIND_DISPATCH || kind == TKIND_COCLASS;
    attr_.cbSizeInstance = isObject ? sizeof(void*) : (kind == TKIND_ENUM ? sizeof(INT) : 0);
    attr_.cbAlignment = static_cast<WORD>(isObject ? alignof(void*) : alignof(INT));
    // A caller of a dispinterface sees the seven methods of IDispatch.
    attr_.cbSizeVft = static_cast<WORD>(kind == TKIND_DISPATCH ? 7 * sizeof(void*) : 0);
}

HRESULT TypeDescription::QueryInterface(REFIID iid, void** object) {
    if (!object) {
        return E_POINTER;
    }
    if (iid == IID_IUnknown || iid == IID_ITypeInfo) {
        *object = static_cast<ITypeInfo*>(this);
    } else if (iid == IID_ICreateTypeInfo) {
        *object = static_cast<ICreateTypeInfo*>(this);
    } else {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

ULONG TypeDescription::AddRef() { return library_.AddRef(); }
ULONG TypeDescription::Release() { return library_.Release(); }

const OleString* TypeDescription::findSpelling(OleView name) const {
    if (equalNoCase(name_, name)) {
        return &name_;
    }
    const OleString* spelling = nullptr;
    const auto search = [&](const auto& members) {
        for (const auto& member : members) {
            for (const OleString& own : member.names) {
                if (!spelling && equalNoCase(own, name)) {
                    spelling = &own;
                }
            }
        }
    };
    search(functions_);
    search(variables_);
    return spelling;
}

std::optional<MEMBERID> TypeDescription::findMember(OleView name) const {
    const auto find = [name](const auto& members) -> std::optional<MEMBERID> {
        for (const auto& member : members) {
            if (!member.names.empty() && equalNoCase(member.names.front(), name)) {
                return member.desc->memid;
            }
        }
        return std::nullopt;
    };
    const std::optional<MEMBERID> function = find(functions_);
    return function ? function : find(variables_);
}

template <class Use>
bool TypeDescription::useMember(MEMBERID memid, Use use) const {
    const auto useFirst = [&](const auto& members) {
        const auto found = std::find_if(members.begin(), members.end(),
                                        [memid](const auto& m) { return m.desc->memid == memid; });
        if (found == members.end()) {
            return false;
        }
        use(*found);
        return true;
    };
    return useFirst(functions_) || useFirst(variables_);
}

bool TypeDescription::isInterface() const {
    return kind() == TKIND_INTERFACE || kind() == TKIND_DISPATCH;
}

ComPtr<ITypeInfo> TypeDescription::base() const {
    return isInterface() && !implemented_.empty() ? library_.resolve(implemented_.front().refType)
                                                  : ComPtr<ITypeInfo>();
}

HRESULT TypeDescription::GetTypeAttr(TYPEATTR** typeAttr) {
    if (!typeAttr) {
        return E_INVALIDARG;
    }
    TYPEATTR attr = attr_;
    attr.cFuncs = static_cast<WORD>(inherited_.size() + functions_.size());
    attr.cVars = static_cast<WORD>(variables_.size());
    attr.cImplTypes = static_cast<WORD>(implemented_.size());
    return handOut(attr, typeAttr);
}

HRESULT TypeDescription::GetFuncDesc(UINT index, FUNCDESC** funcDesc) {
    if (!funcDesc) {
        return E_INVALIDARG;
    }
    *funcDesc = nullptr;
    if (index < inherited_.size()) {
        return handOut<FUNCDESC>(*inherited_[index], funcDesc);
    }
    const std::size_t own = index - inherited_.size();
    return own < functions_.size() ? handOut<FUNCDESC>(*functions_[own].desc, funcDesc)
                                   : TYPE_E_ELEMENTNOTFOUND;
}

HRESULT TypeDescription::GetVarDesc(UINT index, VARDESC** varDesc) {
    if (!varDesc) {
        return E_INVALIDARG;
    }
    *varDesc = nullptr;
    return index < variables_.size() ? handOut<VARDESC>(*variables_[index].desc, varDesc)
                                     : TYPE_E_ELEMENTNOTFOUND;
}

HRESULT TypeDescription::GetNames(MEMBERID memid, BSTR* names, UINT maxNames, UINT* count) {
    if (!names || !count) {
        return E_INVALIDARG;
    }
    *count = 0;
    return answer([&] {
        const bool found = useMember(memid, [&](const auto& member) {
            // All of them are made before the first is given away.
            std::vector<ScopedBstr> made;
            const std::size_t given = std::min<std::size_t>(maxNames, member.names.size());
            for (std::size_t i = 0; i < given; ++i) {
                made.push_back(makeBstr(member.names[i]));
            }
            for (ScopedBstr& name : made) {
                names[(*count)++] = name.detach();
            }
        });
        if (found) {
            return S_OK;
        }
        const ComPtr<ITypeInfo> extended = base();
        return extended ? extended->GetNames(memid, names, maxNames, count)
                        : TYPE_E_ELEMENTNOTFOUND;
    });
}

HRESULT TypeDescription::GetRefTypeOfImplType(UINT index, HREFTYPE* refType) {
    if (!refType) {
        return E_INVALIDARG;
    }
    if (index >= implemented_.size()) {
        return TYPE_E_ELEMENTNOTFOUND;
    }
    *refType = implemented_[index].refType;
    return S_OK;
}

HRESULT TypeDescription::GetImplTypeFlags(UINT index, INT* flags) {
    if (!flags) {
        return E_INVALIDARG;
    }
    if (index >= implemented_.size()) {
        *flags = 0;
        return TYPE_E_ELEMENTNOTFOUND;
    }
    *flags = implemented_[index].flags;
    return S_OK;
}

HRESULT TypeDescription::GetIDsOfNames(LPOLESTR* names, UINT count, MEMBERID* memids) {
    if (!names || !memids || count == 0) {
        return E_INVALIDARG;
    }
    std::fill_n(memids, count, MEMBERID_NIL);
    const std::optional<MEMBERID> member = findMember(names[0]);
    if (!member) {
        const ComPtr<ITypeInfo> extended = base();
        return extended ? extended->GetIDsOfNames(names, count, memids) : DISP_E_UNKNOWNNAME;
    }
    memids[0] = *member;
    HRESULT hr = S_OK;
    // The further names are those of the function's parameters, numbered from 0.
    useMember(*member, [&](const auto& described) {
        for (UINT i = 1; i < count; ++i) {
            const auto begin = described.names.begin() + (described.names.empty() ? 0 : 1);
            const auto found = std::find_if(begin, described.names.end(), [&](const auto& own) {
                return equalNoCase(own, names[i]);
            });
            if (found == described.names.end()) {
                hr = DISP_E_UNKNOWNNAME;
            } else {
                memids[i] = static_cast<MEMBERID>(found - begin);
            }
        }
    });
    return hr;
}

HRESULT TypeDescription::GetDocumentation(MEMBERID memid, BSTR* name, BSTR* docString,
                                          DWORD* helpContext, BSTR* helpFile) {
    return answer([&] {
        HRESULT hr = TYPE_E_ELEMENTNOTFOUND;
        const auto give = [&](const OptionalText& own, const OptionalText& doc, DWORD context) {
            hr = Documentation{own, doc, context, library_.helpFile()}.give(name, docString,
                                                                            helpContext, helpFile);
        };
        if (memid == MEMBERID_NIL) {
            give(name_, doc_, helpContext_);
            return hr;
        }
        const bool found = useMember(memid, [&](const auto& member) {
            give(member.names.empty() ? OptionalText() : OptionalText(member.names.front()),
                 member.doc, member.helpContext);
        });
        const ComPtr<ITypeInfo> extended = found ? ComPtr<ITypeInfo>() : base();
        return extended ? extended->GetDocumentation(memid, name, docString, helpContext, helpFile)
                        : hr;
    });
}

HRESULT TypeDescription::GetRefTypeInfo(HREFTYPE refType, ITypeInfo** typeInfo) {
    if (!typeInfo) {
        return E_INVALIDARG;
    }
    *typeInfo = library_.resolve(refType).detach();
    return *typeInfo ? S_OK : TYPE_E_ELEMENTNOTFOUND;
}

HRESULT TypeDescription::GetContainingTypeLib(ITypeLib** library, UINT* index) {
    if (!library && !index) {
        return E_INVALIDARG;
    }
    if (library) {
        *library = ComPtr<ITypeLib>::borrow(&library_).detach();
    }
    if (index) {
        *index = library_.indexOf(this);
    }
    return S_OK;
}

void TypeDescription::ReleaseTypeAttr(TYPEATTR* typeAttr) { takeBack(typeAttr); }
void TypeDescription::ReleaseFuncDesc(FUNCDESC* funcDesc) { takeBack(funcDesc); }
void TypeDescription::ReleaseVarDesc(VARDESC* varDesc) { takeBack(varDesc); }

HRESULT TypeDescription::GetTypeComp(ITypeComp** comp) {
    if (comp) {
        *comp = nullptr;
    }
    return E_NOTIMPL;
}
HRESULT TypeDescription::Invoke(PVOID, MEMBERID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) {
    return E_NOTIMPL;
}
HRESULT TypeDescription::GetDllEntry(MEMBERID, INVOKEKIND, BSTR*, BSTR*, WORD*) {
    return E_NOTIMPL;
}
HRESULT TypeDescription::AddressOfMember(MEMBERID, INVOKEKIND, PVOID*) { return E_NOTIMPL; }
HRESULT TypeDescription::CreateInstance(IUnknown*, REFIID, PVOID*) { return E_NOTIMPL; }
HRESULT TypeDescription::GetMops(MEMBERID, BSTR*) { return E_NOTIMPL; }

} // namespace platform
