// Text from the host's units to COM's and back.
#pragma once

#include "host/array.h"
#include "platform/com.h"

#include <string_view>

namespace axlink2 {

// A new BSTR with the text up to its first zero, which is where COM takes a text without a length
// to end. Raises E_OUTOFMEMORY as `_com_error`.
BSTR newBstr(std::u16string_view text);

// The text up to its first zero as a char row; 0-by-0 for null and for empty text.
harray::unique_array charRow(BSTR text);

} // namespace axlink2
