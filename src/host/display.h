// The parts of what `displayText` writes.
#pragma once

#include "host/array_store.h"

#include <string>
#include <vector>

namespace velmar {

// "3x4", with every extent.
std::string extentsText(const hxArray& array);

// A number as a person reads it: integers without decimals, others with five digits.
std::string numberText(double number);

// The elements of a full numeric or logical array in column-major order, made alike so that they
// line up.
std::vector<std::string> numberTexts(const hxArray& array);

// What stands for a value inside another: 5, 'text', [1 2 3], [3x4 double], {1x2 cell}.
std::string summaryText(const hxArray* array);

// UTF-8 of text, with a sign for each character that can't be seen; line feeds and tabs stay.
std::string visibleText(std::u16string_view text);

// Rows and pages of cells of text, right-aligned or left-aligned in columns, broken at 80
// characters. `cells` is in column-major order.
std::string gridText(const hxArray& array, const std::vector<std::string>& cells, bool alignRight);

// Cells, structs, objects and function handles, whole.
std::string containerText(const hxArray& array);

} // namespace velmar
