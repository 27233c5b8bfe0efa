// Small members that only objects of interfaces have.
#pragma once

#include "builtins/builtin_declarations.h"

namespace axlink2 {

class COMSaveobjMethodInfo final : public Builtin<declarations::saveobj> {
  public:
    using Builtin::Builtin;

    // `saveobj(h)`: a 1-by-1 struct whose field "Name" is the class's bare name.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

class COMLoadobjMethodInfo final : public Builtin<declarations::loadobj> {
  public:
    using Builtin::Builtin;

    // Raises "VELMAR:COM:loadobjnotsupported".
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

} // namespace axlink2
