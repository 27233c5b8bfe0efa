// What [ ] and { } make of their elements.
#pragma once

#include "shell/value.h"

#include <vector>

namespace velsh {

// Rows joined to one array of the class that all elements have in common. Arrays of no row, or of
// no column, are left out. Raises when sizes or classes don't go together.
Value concatenate(const std::vector<Values>& rows);

// A cell that holds the elements.
Value makeCell(std::vector<Values> rows);

} // namespace velsh
