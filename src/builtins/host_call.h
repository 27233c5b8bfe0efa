// Calls back into the host's language.
#pragma once

#include "host/array.h"
#include "host/value.h"

#include <cstdint>
#include <span>
#include <vector>

namespace axlink2 {

// Calls the function, or the member of the first object among the inputs, as a program would. Gives
// the outputs that were asked for, or one; what the callee didn't set is null.
std::vector<harray::unique_array> callHost(const char* name, std::uint32_t outputCount,
                                           std::span<const hxArray* const> inputs);

// Gives a struct as the output, or shows it with `disp` when none is wanted.
void giveOrShow(harray::unique_array value, std::uint32_t* outputCount, hos::HOSValue* outputs);

} // namespace axlink2
