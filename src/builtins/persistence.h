// Servers that write their state to a file and read it back.
#pragma once

#include "builtins/builtin_declarations.h"
#include "platform/com.h"
#include "platform/text.h"

namespace axlink2 {

class COMSaveMethodInfo final : public Builtin<declarations::save> {
  public:
    using Builtin::Builtin;

    // `save(h, path)`: a server that can't save is left alone. Raises
    // "VELMAR:COM:serializationerror" for any result other than success; then a file that was
    // there is as it was, as far as that is this side's to say. Raises
    // "VELMAR:class:InvalidHandle" for an object that has been deleted.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

class COMLoadMethodInfo final : public Builtin<declarations::load> {
  public:
    using Builtin::Builtin;

    // `load(h, path)`: the same the other way.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

// Through the first of IPersistFile, IPersistStorage, IPersistStreamInit and IPersistStream that
// the server offers. `*status` becomes the result, which counts as a failure unless it is 0; it
// stays as it is when the server offers none and says so in the orderly way, or is null. A fault
// inside the server gives E_FAIL. The file is closed at the end.
void persistObject(IDispatch* server, const platform::OleString& path, HRESULT* status,
                   bool isLoad);

} // namespace axlink2
