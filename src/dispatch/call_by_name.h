// Calls of members that the class doesn't declare, by their names.
#pragma once

#include "host/interface.h"
#include "host/value.h"
#include "platform/com.h"

#include <cstdint>

namespace axlink2 {

// Asks the live object for the member's DISPID and calls it with untyped arguments. `flags` is
// DISPATCH_METHOD, DISPATCH_PROPERTYGET or DISPATCH_PROPERTYPUT, whose last input is the new value.
// The inputs are arrays and stay the caller's. There is one output, an array that the caller owns:
// `outputs[0]`, with `*outputCount` at least 1 afterwards.
//
// Raises "VELMAR:UndefinedFunction" for an object without a record, "VELMAR:COM:invalidmethodname"
// for one without a server, and the errors of a failed look-up or call.
void callByName(hos::HOSInterfacePtr object, const char* name, WORD flags,
                std::uint32_t* outputCount, hos::HOSValue* outputs, std::int32_t inputCount,
                const hos::HOSValue* inputs);

} // namespace axlink2
