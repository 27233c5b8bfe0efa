// Calling a member whose name is held as text, and listing those that there are.
#pragma once

#include "builtins/builtin_declarations.h"

namespace axlink2 {

class COMInvokeMethodInfo final : public Builtin<declarations::invoke> {
  public:
    using Builtin::Builtin;

    // `invoke(h)`: the server's methods with their signatures as a 1-by-1 struct, or printed when
    // no output is wanted. `invoke(h, name, arguments...)`: a method of the class as a program
    // would call it, any other name as a method of the server, by name.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

} // namespace axlink2
