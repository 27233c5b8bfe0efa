// Built-in methods whose work is still to come. They are declared as they will be, and a call says
// that the function isn't available yet.
#pragma once

#include "builtins/builtin_declarations.h"
#include "builtins/builtin_method.h"
#include "host/exception.h"
#include "host/message_ids.h"

namespace axlink2 {

template <const BuiltinDeclaration& declaration>
class PendingBuiltin final : public Builtin<declaration> {
  public:
    using Builtin<declaration>::Builtin;

    // Raises "VELMAR:COM:notavailable".
    void invoke(const hos::HOSClient*, std::uint32_t*, hos::HOSValue*, std::int32_t,
                hos::HOSValue*) override {
        hmsgcore::raise(VELMAR::COM::notavailable(this->name));
    }
};

using COMSaveMethodInfo = PendingBuiltin<declarations::save>;
using COMLoadMethodInfo = PendingBuiltin<declarations::load>;

} // namespace axlink2
