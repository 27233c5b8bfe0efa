// Text by a format with %d, %s and their kin.
#pragma once

#include "shell/value.h"

#include <span>
#include <string>
#include <string_view>

namespace velsh {

// The format with its escapes (\n, \t, \\) and the arguments in place, taken one by one: a text as
// a whole, an array element by element. The format repeats while arguments are left.
std::string formatText(std::string_view format, std::span<const hxArray* const> arguments);

} // namespace velsh
