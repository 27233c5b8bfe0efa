// What a program can ask an object about itself.
#pragma once

#include "builtins/builtin_declarations.h"

namespace axlink2 {

class COMMehtodsMethodInfo final : public Builtin<declarations::methods, HiddenBuiltinMethodInfo> {
  public:
    using Builtin::Builtin;

    // `methods(h, options...)`: what the host's own function of that name gives.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

class COMIspropMethodInfo final : public Builtin<declarations::isprop, HiddenBuiltinMethodInfo> {
  public:
    using Builtin::Builtin;

    // `isprop(h, name)`: whether the object has that property; for those of the class letter case
    // doesn't count. False for any other inputs.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

class COMEventsMethodInfo final : public Builtin<declarations::events> {
  public:
    using Builtin::Builtin;

    // `events(h)`: each event's name and signature, printed or, with an output asked for, as the
    // fields of a struct; nothing for an object without events.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

} // namespace axlink2
