// Text arguments, string arrays, and conversion between narrow, wide and 16-bit text.
#pragma once

#include "host/array.h"
#include "platform/text.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hoststring {

// Text is a char row (0-by-0 counts), or a string array of one element.
// As `isScalarText`, and a missing string is no text. The host's `tolerance` argument is 1.
bool isNonMissingScalarText(const hxArray* array, int tolerance);
// Whether `array` is text: with `allowMissing` a missing string counts, with `allowEmpty` an empty
// text does.
bool isScalarText(const hxArray* array, bool allowMissing, bool allowEmpty);
bool isString(const hxArray* array);
// The elements of a string array in order; a missing one has no value.
std::vector<std::optional<std::u16string_view>> getString(const hxArray* array);
// Reads a text argument; false for anything else, and for a missing string unless allowed.
bool getScalarText(const hxArray* array, std::u16string& text, bool refuseMissing);
// A 1-by-1 string array.
harray::unique_array createStringArray(std::u16string text);
// A string array of that shape; an element without value is missing.
harray::unique_array createStringArray(std::size_t rows, std::size_t columns,
                                       std::vector<std::optional<std::u16string>> elements);

} // namespace hoststring

namespace hsys::i18n {

// Narrow text is UTF-8. What can't be converted becomes U+FFFD.
std::string to_string(std::u16string_view text);
platform::OleString to_wstring(std::u16string_view text);
std::u16string to_ustring(std::string_view text);
std::u16string to_ustring(const platform::OleString& text);
std::u16string to_ustring(const OLECHAR* text); // null gives an empty text

namespace detail {

// Brings `length` units of `source` to lower or upper case into `destination`. Gives the number of
// units of the result, whether or not it fits `capacity`; what doesn't fit isn't written.
std::size_t transform(char16_t* destination, std::size_t capacity, const char16_t* source,
                      std::size_t length, bool toLower);

} // namespace detail
} // namespace hsys::i18n
