// The scan over the coclasses of a type library.
#include "comruntime/source_interface.h"

#include "comruntime/type_reader.h"
#include "platform/typeinfo_holders.h"

#include <algorithm>

namespace axlink2 {
namespace {

using platform::TypeAttrHolder;

bool isDefaultSource(ITypeInfo* coclass, UINT index) {
    constexpr int mask = IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE | IMPLTYPEFLAG_FRESTRICTED;
    const auto flags = implementationFlags(coclass, index);
    return flags && (*flags & mask) == (IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE);
}

GUID defaultSource(ITypeInfo* coclass, const TYPEATTR& attributes) {
    for (UINT index = 0; index < attributes.cImplTypes; ++index) {
        if (!isDefaultSource(coclass, index)) continue;
        const auto source = implementedType(coclass, index);
        const TypeAttrHolder sourceAttributes(source.get(), &ITypeInfo::GetTypeAttr);
        return sourceAttributes ? sourceAttributes->guid : GUID_NULL;
    }
    return GUID_NULL;
}

bool lists(ITypeInfo* coclass, const TYPEATTR& attributes, const GUID& iid) {
    for (UINT index = 0; index < attributes.cImplTypes; ++index) {
        const auto type = implementedType(coclass, index);
        const TypeAttrHolder typeAttributes(type.get(), &ITypeInfo::GetTypeAttr);
        if (typeAttributes && IsEqualGUID(typeAttributes->guid, iid)) return true;
    }
    return false;
}

// The answer of the type at `index`, when it is a coclass that lists the interface.
std::optional<GUID> sourceByCoclass(ITypeLib* library, UINT index, const GUID& iid) {
    const auto coclass = typeAt(library, index);
    const TypeAttrHolder attributes(coclass.get(), &ITypeInfo::GetTypeAttr);
    if (!attributes || attributes->typekind != TKIND_COCLASS) return std::nullopt;
    if (!lists(coclass.get(), *attributes, iid)) return std::nullopt;
    return defaultSource(coclass.get(), *attributes);
}

} // namespace

ServerPtr<ITypeLib> containingLibrary(ITypeInfo* type) {
    UINT index = 0;
    return obtain<ITypeLib>(
        [&](ITypeLib** out) { return type->GetContainingTypeLib(out, &index); });
}

UINT typeCount(ITypeLib* library) {
    constexpr UINT mostTypes = 0x10000;
    UINT count = 0;
    askServer([&] {
        count = library->GetTypeInfoCount();
        return S_OK;
    });
    return std::min(count, mostTypes);
}

ServerPtr<ITypeInfo> typeAt(ITypeLib* library, UINT index) {
    return obtain<ITypeInfo>([&](ITypeInfo** out) { return library->GetTypeInfo(index, out); });
}

std::optional<int> implementationFlags(ITypeInfo* coclass, UINT index) {
    int flags = 0;
    const HRESULT hr = askServer([&] { return coclass->GetImplTypeFlags(index, &flags); });
    return SUCCEEDED(hr) ? std::optional(flags) : std::nullopt;
}

ServerPtr<ITypeInfo> implementedType(ITypeInfo* type, UINT index) {
    HREFTYPE reference = 0;
    if (FAILED(askServer([&] { return type->GetRefTypeOfImplType(index, &reference); }))) return {};
    return referencedType(type, reference);
}

GUID findSourceInterface(ITypeInfo* interfaceType) {
    const TypeAttrHolder attributes(interfaceType, &ITypeInfo::GetTypeAttr);
    if (!attributes) return GUID_NULL;
    const auto library = containingLibrary(interfaceType);
    if (!library) return GUID_NULL;
    const UINT count = typeCount(library.get());
    for (UINT index = 0; index < count; ++index)
        if (const auto source = sourceByCoclass(library.get(), index, attributes->guid))
            return *source;
    return GUID_NULL;
}

} // namespace axlink2
