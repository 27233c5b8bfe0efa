// The library: its attributes, its types, and the numbers by which types refer to each other.
#include "platform/portable/typeinfo_library.h"

#include "platform/answer.h"
#include "platform/fold_case.h"

#include <algorithm>

namespace platform {

HRESULT Documentation::give(BSTR* nameOut, BSTR* docOut, DWORD* contextOut, BSTR* fileOut) const {
    return answer([&] {
        const auto make = [](const OptionalText& text, BSTR* wanted) {
            return text && wanted ? makeBstr(*text) : ScopedBstr();
        };
        ScopedBstr madeName = make(name, nameOut);
        ScopedBstr madeDoc = make(doc, docOut);
        ScopedBstr madeFile = make(helpFile, fileOut);
        if (nameOut) {
            *nameOut = madeName.detach();
        }
        if (docOut) {
            *docOut = madeDoc.detach();
        }
        if (fileOut) {
            *fileOut = madeFile.detach();
        }
        if (contextOut) {
            *contextOut = helpContext;
        }
        return S_OK;
    });
}

namespace {

HRESULT setText(OptionalText& text, LPCOLESTR value) {
    return answer([&] {
        text = value ? OptionalText(value) : std::nullopt;
        return S_OK;
    });
}

} // namespace

TypeLibrary::TypeLibrary(SYSKIND sysKind) { attr_.syskind = sysKind; }

UINT TypeLibrary::indexOf(const TypeDescription* type) const {
    const auto found = std::find_if(types_.begin(), types_.end(),
                                    [type](const auto& entry) { return entry.get() == type; });
    return static_cast<UINT>(found - types_.begin());
}

bool TypeLibrary::hasGuid(REFGUID guid, const TypeDescription* except) const {
    return std::any_of(types_.begin(), types_.end(), [&](const auto& entry) {
        return entry.get() != except && entry->guid() == guid;
    });
}

HREFTYPE TypeLibrary::addReference(ITypeInfo* typeInfo) {
    const auto sameType = [typeInfo](const Reference& reference) {
        return reference.own ? static_cast<ITypeInfo*>(reference.own) == typeInfo
                             : reference.foreign.get() == typeInfo;
    };
    auto found = std::find_if(typeReferences_.begin(), typeReferences_.end(), sameType);
    if (found == typeReferences_.end()) {
        const auto own = std::find_if(types_.begin(), types_.end(), [typeInfo](const auto& entry) {
            return static_cast<ITypeInfo*>(entry.get()) == typeInfo;
        });
        Reference reference;
        if (own != types_.end()) {
            reference.own = own->get();
        } else {
            reference.foreign = ComPtr<ITypeInfo>::borrow(typeInfo);
        }
        found = typeReferences_.insert(found, std::move(reference));
    }
    return static_cast<HREFTYPE>(found - typeReferences_.begin() + 1);
}

ComPtr<ITypeInfo> TypeLibrary::resolve(HREFTYPE refType) const {
    if (refType == 0 || refType > typeReferences_.size()) {
        return {};
    }
    const Reference& reference = typeReferences_[refType - 1];
    return ComPtr<ITypeInfo>::borrow(reference.own ? reference.own : reference.foreign.get());
}

HRESULT TypeLibrary::QueryInterface(REFIID iid, void** object) {
    if (!object) {
        return E_POINTER;
    }
    if (iid == IID_IUnknown || iid == IID_ICreateTypeLib || iid == IID_ICreateTypeLib2) {
        *object = static_cast<ICreateTypeLib2*>(this);
    } else if (iid == IID_ITypeLib) {
        *object = static_cast<ITypeLib*>(this);
    } else {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

UINT TypeLibrary::GetTypeInfoCount() { return static_cast<UINT>(types_.size()); }

HRESULT TypeLibrary::GetTypeInfo(UINT index, ITypeInfo** typeInfo) {
    if (!typeInfo) {
        return E_INVALIDARG;
    }
    *typeInfo = nullptr;
    if (index >= types_.size()) {
        return TYPE_E_ELEMENTNOTFOUND;
    }
    *typeInfo = ComPtr<ITypeInfo>::borrow(types_[index].get()).detach();
    return S_OK;
}

HRESULT TypeLibrary::GetTypeInfoType(UINT index, TYPEKIND* kind) {
    if (!kind) {
        return E_INVALIDARG;
    }
    if (index >= types_.size()) {
        return TYPE_E_ELEMENTNOTFOUND;
    }
    *kind = types_[index]->kind();
    return S_OK;
}

HRESULT TypeLibrary::GetTypeInfoOfGuid(REFGUID guid, ITypeInfo** typeInfo) {
    if (!typeInfo) {
        return E_INVALIDARG;
    }
    *typeInfo = nullptr;
    const auto found = std::find_if(types_.begin(), types_.end(),
                                    [&](const auto& entry) { return entry->guid() == guid; });
    return found == types_.end() ? TYPE_E_ELEMENTNOTFOUND
                                 : GetTypeInfo(static_cast<UINT>(found - types_.begin()), typeInfo);
}

HRESULT TypeLibrary::GetLibAttr(TLIBATTR** libAttr) {
    return libAttr ? handOut(attr_, libAttr) : E_INVALIDARG;
}

HRESULT TypeLibrary::GetTypeComp(ITypeComp** comp) {
    if (comp) {
        *comp = nullptr;
    }
    return E_NOTIMPL;
}

HRESULT TypeLibrary::GetDocumentation(INT index, BSTR* name, BSTR* docString, DWORD* helpContext,
                                      BSTR* helpFile) {
    if (index >= 0) {
        return static_cast<std::size_t>(index) < types_.size()
                   ? types_[static_cast<std::size_t>(index)]->GetDocumentation(
                         MEMBERID_NIL, name, docString, helpContext, helpFile)
                   : TYPE_E_ELEMENTNOTFOUND;
    }
    if (index != -1) {
        return TYPE_E_ELEMENTNOTFOUND;
    }
    return Documentation{name_, doc_, helpContext_, helpFile_}.give(name, docString, helpContext,
                                                                    helpFile);
}

HRESULT TypeLibrary::IsName(LPOLESTR name, ULONG, BOOL* isName) {
    if (!name || !isName) {
        return E_INVALIDARG;
    }
    *isName = FALSE;
    for (const auto& type : types_) {
        if (const OleString* spelling = type->findSpelling(name)) {
            // The caller learns how the library writes it; the length is the same.
            spelling->copy(name, spelling->size());
            *isName = TRUE;
            break;
        }
    }
    return S_OK;
}

HRESULT TypeLibrary::FindName(LPOLESTR name, ULONG, ITypeInfo** typeInfos, MEMBERID* memids,
                              USHORT* found) {
    if (!name || !typeInfos || !memids || !found) {
        return E_INVALIDARG;
    }
    USHORT count = 0;
    for (const auto& type : types_) {
        if (count == *found) {
            break;
        }
        const std::optional<MEMBERID> memid =
            equalNoCase(type->name(), name) ? MEMBERID_NIL : type->findMember(name);
        if (memid) {
            typeInfos[count] = ComPtr<ITypeInfo>::borrow(type.get()).detach();
            memids[count] = *memid;
            ++count;
        }
    }
    *found = count;
    return S_OK;
}

void TypeLibrary::ReleaseTLibAttr(TLIBATTR* libAttr) { takeBack(libAttr); }

HRESULT TypeLibrary::CreateTypeInfo(LPOLESTR name, TYPEKIND kind, ICreateTypeInfo** typeInfo) {
    if (!name || !typeInfo || kind < TKIND_ENUM || kind >= TKIND_MAX) {
        return E_INVALIDARG;
    }
    *typeInfo = nullptr;
    for (const auto& type : types_) {
        if (equalNoCase(type->name(), name)) {
            return TYPE_E_NAMECONFLICT;
        }
    }
    return answer([&] {
        types_.push_back(std::make_unique<TypeDescription>(*this, name, kind));
        *typeInfo = ComPtr<ICreateTypeInfo>::borrow(types_.back().get()).detach();
        return S_OK;
    });
}

HRESULT TypeLibrary::SetName(LPOLESTR name) { return setText(name_, name); }

HRESULT TypeLibrary::SetVersion(WORD major, WORD minor) {
    attr_.wMajorVerNum = major;
    attr_.wMinorVerNum = minor;
    return S_OK;
}

HRESULT TypeLibrary::SetGuid(REFGUID guid) {
    attr_.guid = guid;
    return S_OK;
}

HRESULT TypeLibrary::SetDocString(LPOLESTR text) { return setText(doc_, text); }

HRESULT TypeLibrary::SetHelpFileName(LPOLESTR fileName) { return setText(helpFile_, fileName); }

HRESULT TypeLibrary::SetHelpContext(DWORD helpContext) {
    helpContext_ = helpContext;
    return S_OK;
}

HRESULT TypeLibrary::SetLcid(LCID lcid) {
    attr_.lcid = lcid;
    return S_OK;
}

HRESULT TypeLibrary::SetLibFlags(UINT flags) {
    attr_.wLibFlags = static_cast<WORD>(flags);
    return S_OK;
}

HRESULT TypeLibrary::SaveAllChanges() { return S_OK; }
HRESULT TypeLibrary::DeleteTypeInfo(LPOLESTR) { return E_NOTIMPL; }
HRESULT TypeLibrary::SetCustData(REFGUID, VARIANT*) { return E_NOTIMPL; }
HRESULT TypeLibrary::SetHelpStringContext(ULONG) { return E_NOTIMPL; }
HRESULT TypeLibrary::SetHelpStringDll(LPOLESTR) { return E_NOTIMPL; }

} // namespace platform

extern "C" {

HRESULT CreateTypeLib2(SYSKIND sysKind, LPCOLESTR fileName, ICreateTypeLib2** library) {
    if (!fileName || !library) {
        return E_INVALIDARG;
    }
    return platform::answer([&] {
        *library = new platform::TypeLibrary(sysKind);
        return S_OK;
    });
}

HRESULT LoadRegTypeLib(REFGUID libraryId, WORD major, WORD minor, LCID, ITypeLib** library) {
    static constexpr GUID standardLibrary = {
        0x00020430, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
    if (!library) {
        return E_INVALIDARG;
    }
    *library = nullptr;
    return libraryId == standardLibrary && major == 2 && minor == 0
               ? platform::answer([&] { return platform::createStandardLibrary(library); })
               : TYPE_E_LIBNOTREGISTERED;
}
}
