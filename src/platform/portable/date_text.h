// Dates as text in the form of US English: reading and writing.
#pragma once

#include "platform/portable/hresults.h"

#include <string>
#include <string_view>

// Reads dates ("1/2/2003", "2-Jan-03", "January 2, 2003", "2003/1/2"), times ("3:04", "3:04:05
// PM", "3 PM") and both in either order. A two-digit year means 1950 to 2049, a missing one the
// current year, a missing day the first. DISP_E_TYPEMISMATCH when the text is neither.
HRESULT readDate(std::u16string_view text, DATE& date);

// As "1/2/2003 3:04:05 PM"; the time of a whole day is left out, and so is the day of DATE zero.
// E_INVALIDARG for what is no DATE.
HRESULT dateToText(DATE date, std::string& text);
