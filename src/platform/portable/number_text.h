// Numbers as text in the form of US English: reading and writing.
#pragma once

#include "platform/portable/hresults.h"

#include <optional>
#include <string>
#include <string_view>

// A number as read: `digits` * 10^exponent, or whole bits when it was hexadecimal or octal.
struct NumberText {
    bool negative = false;
    bool isBits = false;
    ULONGLONG bits = 0;
    std::string digits;
    int exponent = 0;
};

// Reads signs in front or behind, parentheses for negative numbers, thousands separators, a
// currency sign, fractions, exponents, "&HFF" and "&O17". Nothing when the text is no number.
std::optional<NumberText> readNumber(std::u16string_view text);

// The nearest double; DISP_E_OVERFLOW when there is none.
HRESULT numberToDouble(const NumberText& number, double& result);

// With `digits` significant digits, as "1.5", "1E+16", "NAN", "-INF".
std::string doubleToText(double value, int digits);
