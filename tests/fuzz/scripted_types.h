// Type information whose every answer is drawn from an input, and then may change.
#pragma once

#include "fuzz/byte_source.h"
#include "platform/com.h"

namespace fuzz {

struct Script;

// All types and libraries of one case draw from here, so no answer need fit another. At its end
// all answers are failures. Outlives them.
class ScriptedTypes {
  public:
    ScriptedTypes(ByteSource source, Script& script) : source_(source), script_(script) {}

    // A new type or library; or a failure, or success with nothing.
    HRESULT giveType(ITypeInfo** out);
    HRESULT giveLibrary(ITypeLib** out);

    ByteSource& source() { return source_; }
    Script& script() { return script_; }

    int outstanding = 0; // descriptions handed out and not taken back

  private:
    template <class Made, class Interface>
    HRESULT give(Interface** out);

    ByteSource source_;
    Script& script_;
};

// One of a few: what asks for an identity shall find it.
GUID drawGuid(ByteSource& source);
// A name out of a few, or any text; null at times. The caller owns it.
BSTR drawName(ByteSource& source);

} // namespace fuzz
