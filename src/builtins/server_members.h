// Small members that only objects of servers have.
#pragma once

#include "builtins/builtin_declarations.h"

namespace axlink2 {

class COMMoveMethodInfo final : public Builtin<declarations::move> {
  public:
    using Builtin::Builtin;

    // `move(h, position, flag)`: four zeros, whatever the inputs: a server has no place on screen.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

class COMSendMethodInfo final : public Builtin<declarations::send> {
  public:
    using Builtin::Builtin;

    // `send(h)`: the same as `events(h)`.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

class COMPropeditMethodInfo final : public Builtin<declarations::propedit> {
  public:
    using Builtin::Builtin;

    // `propedit(h)`: warns with "VELMAR:COM:noPropPage" when the server has no property pages and
    // with "VELMAR:COM:propPageError" when it can't tell. Raises "VELMAR:class:InvalidHandle".
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

class COMInterfacesMethodInfo final : public Builtin<declarations::interfaces> {
  public:
    using Builtin::Builtin;

    // `interfaces(h)`: an n-by-1 cell with the names of the server's interfaces, the default one
    // first.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

} // namespace axlink2
