// Reading coclasses for the interfaces that they list.
#include "builtins/coclass_interfaces.h"

#include "comruntime/server_call.h"
#include "comruntime/source_interface.h"
#include "comruntime/type_reader.h"
#include "platform/typeinfo_holders.h"

namespace axlink2 {
namespace {

using platform::TypeAttrHolder;

std::string nameOf(ITypeInfo* type) {
    platform::ScopedBstr name;
    if (FAILED(askServer([&] {
            return type->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr);
        }))) {
        (void)name.detach(); // an out-parameter of a failed call is not to be trusted
        return {};
    }
    return narrowName(name.get()).value_or("");
}

// What a coclass lists, as far as it has been read.
struct CoclassListing {
    bool listsWanted = false;
    std::vector<std::string> names;

    void add(ITypeInfo* coclass, UINT index, const GUID& wanted) {
        const auto type = implementedType(coclass, index);
        const TypeAttrHolder attributes(type.get(), &ITypeInfo::GetTypeAttr);
        const auto flags = implementationFlags(coclass, index);
        if (!attributes || !flags || (*flags & IMPLTYPEFLAG_FSOURCE)) return;
        if (IsEqualGUID(attributes->guid, wanted)) listsWanted = true;
        std::string name = nameOf(type.get());
        if (name.empty()) return;
        const bool isDefault = *flags & IMPLTYPEFLAG_FDEFAULT;
        names.insert(isDefault ? names.begin() : names.end(), std::move(name));
    }
};

CoclassListing readCoclass(ITypeLib* library, UINT index, const GUID& wanted) {
    CoclassListing listing;
    const auto type = typeAt(library, index);
    const TypeAttrHolder attributes(type.get(), &ITypeInfo::GetTypeAttr);
    if (!attributes || attributes->typekind != TKIND_COCLASS) return listing;
    for (UINT i = 0; i < attributes->cImplTypes; ++i)
        listing.add(type.get(), i, wanted);
    return listing;
}

ServerPtr<ITypeInfo> typeInfoOf(IDispatch* server) {
    if (!server) return {};
    return obtain<ITypeInfo>([&](ITypeInfo** out) { return guardedGetTypeInfo(server, out); });
}

} // namespace

std::vector<std::string> coclassInterfaceNames(IDispatch* server) {
    const auto type = typeInfoOf(server);
    const TypeAttrHolder attributes(type.get(), &ITypeInfo::GetTypeAttr);
    if (!attributes) return {};
    const auto library = containingLibrary(type.get());
    if (!library) return {};
    const UINT count = typeCount(library.get());
    for (UINT index = 0; index < count; ++index) {
        CoclassListing listing = readCoclass(library.get(), index, attributes->guid);
        if (listing.listsWanted) return std::move(listing.names);
    }
    return {};
}

} // namespace axlink2
