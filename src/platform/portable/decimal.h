// Arithmetic on DECIMAL: making, rounding, comparing with integers, text.
#pragma once

#include "platform/portable/hresults.h"
#include "platform/portable/variant_types.h"

#include <string>
#include <string_view>

// What DECIMAL allows: digits behind the point.
inline constexpr int maxDecimalScale = 28;

// A DECIMAL from magnitude and sign; zero is never negative.
DECIMAL makeDecimal(ULONGLONG magnitude, bool negative, int scale = 0) noexcept;

inline bool isNegative(const DECIMAL& value) noexcept { return value.sign == DECIMAL_NEG; }
inline bool isZero(const DECIMAL& value) noexcept { return value.Lo64 == 0 && value.Hi32 == 0; }

// E_INVALIDARG for a scale or sign that DECIMAL doesn't know.
HRESULT checkDecimal(const DECIMAL& value) noexcept;

// The number `digits` * 10^exponent with `maxScale` digits behind the point at most, and as many
// as 96 bits hold; halves go to even, and zeros at the end of the fraction are dropped. `digits`
// are decimal digits. DISP_E_OVERFLOW when the integral part doesn't fit.
HRESULT decimalFromDigits(std::string_view digits, int exponent, bool negative, int maxScale,
                          DECIMAL& result);

// The nearest number with exactly `scale` digits behind the point, halves to even.
// DISP_E_OVERFLOW when 96 bits can't hold it.
HRESULT rescaleDecimal(const DECIMAL& value, int scale, DECIMAL& result) noexcept;

// The nearest double.
double decimalToDouble(const DECIMAL& value);

// As "-12.5": no exponent, no zeros at the end of the fraction.
std::string decimalToText(const DECIMAL& value);
