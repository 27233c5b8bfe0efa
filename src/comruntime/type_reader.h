// Reading type information into a description: names, types, and the walks over members.
#pragma once

#include "comruntime/server_call.h"
#include "comruntime/type_description.h"
#include "platform/holders.h"

#include <optional>
#include <string>

namespace axlink2 {

// Fills the empty `description` from `typeInfo`. `server` may be null. A call that fails leaves out
// what it was about and nothing else.
void readTypeDescription(ITypeInfo* typeInfo, IDispatch* server, COMTypeDescription& description);

// The type information of a server, as the server gives it; empty for null, for a server that has
// none or more than one, and when it can't be had.
ServerPtr<ITypeInfo> typeInfoOf(IDispatch* server);

// The name of a member, or of the type itself for MEMBERID_NIL; null when it can't be read.
platform::ScopedBstr documentedName(ITypeInfo* typeInfo, MEMBERID member);

// The name of a member, or of the type itself for MEMBERID_NIL, as narrow text. None when it can't
// be read, when it begins with an underscore, or when `server` is given and doesn't know it.
std::optional<std::string> readName(ITypeInfo* typeInfo, MEMBERID member, IDispatch* server);

// A name as UTF-8; none when it is null or empty.
std::optional<std::string> narrowName(BSTR name);

// The type that `reference` refers to; empty when it can't be had.
ServerPtr<ITypeInfo> referencedType(ITypeInfo* owner, HREFTYPE reference);

// Reduces types to the few kinds that matter to a class, and collects the enumerations on the way.
class TypeReducer {
  public:
    using Enumerations = decltype(COMTypeDescription::enumerations);
    explicit TypeReducer(Enumerations& enumerations) : enumerations_(enumerations) {}

    enum class Pointers { Keep, Strip };
    // `owner` is the type information that `type` was read from. `output` tells of an array whether
    // it comes out.
    COMMemberType reduce(ITypeInfo* owner, const TYPEDESC& type, Pointers pointers, bool output);

  private:
    COMMemberType reduceUserDefined(ITypeInfo* owner, HREFTYPE reference);
    std::optional<std::string> readEnumeration(ITypeInfo* owner, HREFTYPE reference);

    Enumerations& enumerations_;
};

} // namespace axlink2
