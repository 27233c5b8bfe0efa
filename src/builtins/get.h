// The four forms of `get`.
#pragma once

#include "builtins/builtin_declarations.h"
#include "builtins/readable_names.h"

#include <optional>

namespace axlink2 {

class COMGet1MethodInfo final : public Builtin<declarations::get1> {
  public:
    using Builtin::Builtin;

    // `get(h)`: a 1-by-1 struct with all properties that can be read, or its display when no output
    // is wanted. A property whose server fails gives the error's text instead of its value.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;

  private:
    std::optional<ReadableNames> ofClass; // of the objects that have this method
};

class COMGet2MethodInfo final : public Builtin<declarations::get2> {
  public:
    using Builtin::Builtin;

    // `get(h, text)`: the property of that name, whatever its case, or of the only name that begins
    // with it; a name that matches none is the server's. `get(h, cell)`: a 1-by-n cell with the
    // properties of those exact names. Raises "VELMAR:COM:AmbiguousPropertyException" for several
    // matches and for anything else than text and cells of texts, and errors of the calls.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;

  private:
    std::optional<ReadableNames> ofClass; // of the objects that have this method
};

class COMGet3MethodInfo final : public Builtin<declarations::get3> {
  public:
    using Builtin::Builtin;

    // `get(v, name)`: an n-by-1 cell with one property of each object. Raises
    // "VELMAR:COM:AmbiguousPropertyException" for a name that the class doesn't have.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

class COMGet4MethodInfo final : public Builtin<declarations::get4> {
  public:
    using Builtin::Builtin;

    // `get(h, name, arguments...)`: a read with parameters, by name.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

} // namespace axlink2
