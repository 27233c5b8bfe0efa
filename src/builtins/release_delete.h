// The two ways in which a program ends an object.
#pragma once

#include "builtins/builtin_declarations.h"

namespace axlink2 {

class COMReleaseMethodInfo final : public Builtin<declarations::release> {
  public:
    using Builtin::Builtin;

    // Ends the object alone; what was returned from it stays. Raises "VELMAR:class:InvalidHandle".
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

class COMDeleteMethodInfo final : public Builtin<declarations::deleteObject> {
  public:
    using Builtin::Builtin;

    // Ends the object and everything that hangs together with it. Raises
    // "VELMAR:COM:toomanyinargs" for further inputs and "VELMAR:class:InvalidHandle".
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

} // namespace axlink2
