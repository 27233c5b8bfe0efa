// What running built-in methods share: their object, their text, their output.
#pragma once

#include "comruntime/server_call.h"
#include "host/array.h"
#include "host/interface.h"
#include "host/value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace axlink2 {

// Element 0 of the first input, which may have been deleted. Raises "VELMAR:class:InvalidHandle"
// when there is none.
hos::HOSInterfacePtr firstObject(const hos::HOSValue* inputs);

// The same for an object that must be alive; null when it has no instance record. Raises
// "VELMAR:class:InvalidHandle".
hos::HOSInterfacePtr liveObject(const hos::HOSValue* inputs);

// The server of an object, held, since what it calls back may end the object; null when it has
// none.
ServerPtr<IDispatch> serverOf(const hos::HOSInterfacePtr& object);

// The text of a char row or a string that isn't missing, as narrow text; none for anything else.
std::optional<std::string> scalarText(const hxArray* array);

// A 1-by-1 struct with those fields, numbered in that order and null.
harray::unique_array createStruct(const std::vector<std::string>& fields);

// Gives the first output, asked for or not.
void giveOutput(harray::unique_array value, std::uint32_t* outputCount, hos::HOSValue* outputs);
// The same for an output of the type "logical scalar".
void giveOutput(bool value, std::uint32_t* outputCount, hos::HOSValue* outputs);

} // namespace axlink2
