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

// How many types a library says that it has; no more than are worth looking at, as a count that
// lies must not cost for ever.
UINT typeCount(ITypeLib* library) {
    constexpr UINT mostTypes = 0x10000;
    UINT count = 0;
    askServer([&] {
        count = library->GetTypeInfoCount();
        return S_OK;
    });
    return std::min(count, mostTypes);
}

} // namespace

ServerPtr<ITypeLib> containingLibrary(ITypeInfo* type) {
    UINT index = 0;
    return obtain<ITypeLib>(
        [&](ITypeLib** out) { return type->GetContainingTypeLib(out, &index); });
}

void visitCoclasses(ITypeInfo* interfaceType, const CoclassVisitor& visit) {
    const TypeAttrHolder attributes(interfaceType, &ITypeInfo::GetTypeAttr);
    if (!attributes) return;
    const auto library = containingLibrary(interfaceType);
    if (!library) return;
    const UINT count = typeCount(library.get());
    for (UINT index = 0; index < count; ++index) {
        const auto type =
            obtain<ITypeInfo>([&](ITypeInfo** out) { return library->GetTypeInfo(index, out); });
        const TypeAttrHolder typeAttributes(type.get(), &ITypeInfo::GetTypeAttr);
        if (typeAttributes && typeAttributes->typekind == TKIND_COCLASS &&
            visit(type.get(), *typeAttributes, attributes->guid))
            return;
    }
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
    GUID source = GUID_NULL;
    visitCoclasses(interfaceType,
                   [&](ITypeInfo* coclass, const TYPEATTR& attributes, const GUID& iid) {
                       if (!lists(coclass, attributes, iid)) return false;
                       source = defaultSource(coclass, attributes);
                       return true;
                   });
    return source;
}

} // namespace axlink2
