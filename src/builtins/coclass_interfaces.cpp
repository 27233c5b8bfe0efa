// Reading coclasses for the interfaces that they list.
#include "builtins/coclass_interfaces.h"

#include "comruntime/server_call.h"
#include "comruntime/source_interface.h"
#include "comruntime/type_reader.h"
#include "platform/typeinfo_holders.h"

namespace axlink2 {
namespace {

using platform::TypeAttrHolder;

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
        auto name = narrowName(documentedName(type.get(), MEMBERID_NIL).get());
        if (!name) return;
        const bool isDefault = *flags & IMPLTYPEFLAG_FDEFAULT;
        names.insert(isDefault ? names.begin() : names.end(), std::move(*name));
    }
};

} // namespace

std::vector<std::string> coclassInterfaceNames(IDispatch* server) {
    std::vector<std::string> names;
    visitCoclasses(typeInfoOf(server).get(),
                   [&](ITypeInfo* coclass, const TYPEATTR& attributes, const GUID& wanted) {
                       CoclassListing listing;
                       for (UINT index = 0; index < attributes.cImplTypes; ++index)
                           listing.add(coclass, index, wanted);
                       if (listing.listsWanted) names = std::move(listing.names);
                       return listing.listsWanted;
                   });
    return names;
}

} // namespace axlink2
