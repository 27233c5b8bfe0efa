// Small members that only objects of interfaces have.
#include "builtins/interface_objects.h"

#include "builtins/call_support.h"
#include "host/exception.h"
#include "host/message_ids.h"

#include <utility>

namespace axlink2 {

void COMSaveobjMethodInfo::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                                  hos::HOSValue* outputs, std::int32_t, hos::HOSValue*) {
    harray::unique_array saved = createStruct({"Name"});
    hxSetFieldByNumber(saved.get(), 0, 0, hxCreateString(ownerClass->getName()));
    giveOutput(std::move(saved), outputCount, outputs);
}

void COMLoadobjMethodInfo::invoke(const hos::HOSClient*, std::uint32_t*, hos::HOSValue*,
                                  std::int32_t, hos::HOSValue*) {
    hmsgcore::raise(VELMAR::COM::loadobjnotsupported());
}

} // namespace axlink2
