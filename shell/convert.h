// Values of one class made from another, and numbers as text.
#pragma once

#include "shell/value.h"

#include <string>

namespace velsh {

// Numbers, logical values and characters as numbers of class `type`, in the same shape; integers
// round and saturate. To double also from text of strings: NaN where it is no number.
Value toNumbers(const hxArray* array, hxClassID type);
// A char array of the same shape from numbers; text of a string; rows from a cell of texts.
Value toChar(const hxArray* array);
// A string for a text; one for each element of a number array or a cell of texts.
Value toString(const hxArray* array);

// A char array of that shape, from characters in column order.
Value charArray(std::u16string_view characters, const Extents& extents);

// As num2str writes it: integers in full, others with at least five digits.
std::string numberText(double value);
std::string numberText(double value, int precision);
// Of one element of a numeric, logical or char array.
std::string elementText(const hxArray* array, std::size_t index);

} // namespace velsh
