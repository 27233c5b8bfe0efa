// The module's reader of text arguments.
#pragma once

#include "host/array.h"

#include <string>
#include <string_view>

namespace axlink2 {

// The text of a char row, of a 0-by-0 char array or of a string array with one element; with
// `rowOnly` false also all characters of any other char array. Valid as long as the array is.
// Raises "VELMAR:string:MissingNotSupported" for a missing string and
// "VELMAR:string:MustBeStringScalarOrCharacterVector" for anything else, null included.
std::u16string_view readScalarText(const hxArray* array, bool rowOnly);

// The same as narrow text.
std::string readNarrowText(const hxArray* array);

} // namespace axlink2
