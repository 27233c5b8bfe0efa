// The constructor of a server's class: the class's name used as a function.
#pragma once

#include "builtins/builtin_declarations.h"

namespace axlink2 {

class COMCoclassConstructorInfo final : public Builtin<declarations::constructor> {
  public:
    using Builtin::Builtin;

    // With "server", a machine and "IDispatch" starts a server for the object in `outputs[0]`,
    // which the host has made. Raises "VELMAR:COM:unsupported64bit" for "IUnknown" and
    // "VELMAR:COM:servercreationfailed"; any other words do nothing.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

} // namespace axlink2
