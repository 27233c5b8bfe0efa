// Properties that a program adds to one object.
#pragma once

#include "builtins/builtin_declarations.h"

namespace axlink2 {

class COMAddpropertyMethodInfo final : public Builtin<declarations::addproperty> {
  public:
    using Builtin::Builtin;

    // Adds a property of any type, without a value. Raises "VELMAR:class:InvalidHandle",
    // "VELMAR:COM:invalidnumargs" without a name, "VELMAR:COM:propertynameerror" for an empty one
    // and "VELMAR:COM:propertyexisterror" for one that the object has.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

class COMDeletepropertyMethodInfo final : public Builtin<declarations::deleteproperty> {
  public:
    using Builtin::Builtin;

    // Takes an added property away. Raises as `addproperty` does for the object and the name, and
    // "VELMAR:COM:invalidruntimeproperty" for a property that wasn't added.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

} // namespace axlink2
