// The three forms of `set`.
#pragma once

#include "builtins/builtin_declarations.h"

namespace axlink2 {

class COMSet1MethodInfo final : public Builtin<declarations::set1> {
  public:
    using Builtin::Builtin;

    // `set(h)`: a 1-by-1 struct of the properties that can be written, each with a cell of its
    // possible values, or its display when no output is wanted. The server isn't called.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

class COMSet2MethodInfo final : public Builtin<declarations::set2> {
  public:
    using Builtin::Builtin;

    // `set(h, name)`: the n-by-1 cell of a property's possible values. Otherwise writes in order
    // what comes as names and values, as structs and as pairs of cells; what can't be that is a
    // write with parameters, by name. Raises "VELMAR:legacy_two_part:noSuchMethodOrField",
    // "VELMAR:class:BadParamValuePairs", "VELMAR:class:EmptyParamCell",
    // "VELMAR:COM:invalidargumenttype" and errors of the calls; earlier writes stay.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

class COMSet3MethodInfo final : public Builtin<declarations::set3> {
  public:
    using Builtin::Builtin;

    // `set(v, name, value)`: one property of each object. Raises
    // "VELMAR:COM:AmbiguousPropertyException" for a name that the class doesn't have.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

} // namespace axlink2
