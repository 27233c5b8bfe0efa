// DECIMAL arithmetic on 128-bit magnitudes.
#include "platform/portable/decimal.h"

#include <boost/multiprecision/cpp_int.hpp>

#include <algorithm>
#include <charconv>

namespace {

using Magnitude = boost::multiprecision::uint128_t;

const Magnitude limit = Magnitude(1) << 96; // the first magnitude too large

Magnitude magnitudeOf(const DECIMAL& value) {
    return (Magnitude(value.Hi32) << 64) | Magnitude(value.Lo64);
}

DECIMAL compose(const Magnitude& magnitude, bool negative, int scale) {
    DECIMAL result = makeDecimal(static_cast<ULONGLONG>(magnitude & UINT64_MAX), negative, scale);
    result.Hi32 = static_cast<ULONG>(magnitude >> 64);
    result.sign = negative && magnitude != 0 ? DECIMAL_NEG : 0;
    return result;
}

Magnitude powerOfTen(int exponent) {
    Magnitude power = 1;
    while (exponent-- > 0)
        power *= 10;
    return power;
}

Magnitude divideHalfEven(const Magnitude& value, const Magnitude& divisor) {
    Magnitude quotient = value / divisor;
    const Magnitude twice = (value % divisor) * 2;
    if (twice > divisor || (twice == divisor && (quotient & 1) != 0)) ++quotient;
    return quotient;
}

// The front of `digits` as a number, rounded by the `dropped` digits behind it.
Magnitude roundDigits(std::string_view digits, std::size_t dropped) {
    if (dropped > digits.size()) return 0;
    const std::string_view kept = digits.substr(0, digits.size() - dropped);
    const std::string_view rest = digits.substr(kept.size());
    Magnitude value = 0;
    for (const char digit : kept)
        value = value * 10 + (digit - '0');
    if (rest.empty() || rest.front() < '5') return value;
    const bool exactHalf =
        rest.front() == '5' && rest.find_first_not_of('0', 1) == std::string_view::npos;
    if (!exactHalf || (value & 1) != 0) ++value;
    return value;
}

} // namespace

DECIMAL makeDecimal(ULONGLONG magnitude, bool negative, int scale) noexcept {
    DECIMAL result{};
    result.Lo64 = magnitude;
    result.scale = static_cast<BYTE>(scale);
    result.sign = negative && magnitude != 0 ? DECIMAL_NEG : 0;
    return result;
}

HRESULT checkDecimal(const DECIMAL& value) noexcept {
    const bool known =
        value.scale <= maxDecimalScale && (value.sign == 0 || value.sign == DECIMAL_NEG);
    return known ? S_OK : E_INVALIDARG;
}

HRESULT decimalFromDigits(std::string_view digits, int exponent, bool negative, int maxScale,
                          DECIMAL& result) {
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    while (!digits.empty() && digits.back() == '0') {
        digits.remove_suffix(1);
        ++exponent;
    }
    constexpr int maxDigits = 29; // of a 96-bit number
    const int integralDigits = static_cast<int>(digits.size()) + exponent;
    if (digits.empty() || integralDigits < -maxDecimalScale - 1) {
        result = makeDecimal(0, false);
        return S_OK;
    }
    if (integralDigits > maxDigits) return DISP_E_OVERFLOW;
    if (exponent >= 0) {
        const Magnitude magnitude = roundDigits(digits, 0) * powerOfTen(exponent);
        if (magnitude >= limit) return DISP_E_OVERFLOW;
        result = compose(magnitude, negative, 0);
        return S_OK;
    }
    // As many digits of the fraction as fit: 29 digits may be one too many for 96 bits.
    int scale = std::min({-exponent, maxScale, maxDigits - integralDigits});
    Magnitude magnitude = roundDigits(digits, static_cast<std::size_t>(-exponent - scale));
    if (magnitude >= limit && scale > 0)
        magnitude = roundDigits(digits, static_cast<std::size_t>(-exponent - --scale));
    if (magnitude >= limit) return DISP_E_OVERFLOW;
    for (; scale > 0 && magnitude % 10 == 0; --scale)
        magnitude /= 10;
    result = compose(magnitude, negative, scale);
    return S_OK;
}

HRESULT rescaleDecimal(const DECIMAL& value, int scale, DECIMAL& result) noexcept {
    if (value.scale == scale) {
        result = value;
        return S_OK;
    }
    Magnitude magnitude = magnitudeOf(value);
    if (value.scale > scale) {
        magnitude = divideHalfEven(magnitude, powerOfTen(value.scale - scale));
    } else {
        const Magnitude factor = powerOfTen(scale - value.scale);
        if (magnitude > (limit - 1) / factor) return DISP_E_OVERFLOW;
        magnitude *= factor;
    }
    result = compose(magnitude, isNegative(value), scale);
    return S_OK;
}

double decimalToDouble(const DECIMAL& value) {
    constexpr int exactPowers = 22; // 10^22 is the last power of ten that a double holds exactly
    double result = 0;
    if (value.Hi32 == 0 && value.Lo64 < (1ULL << 53) && value.scale <= exactPowers) {
        result = static_cast<double>(value.Lo64);
        double divisor = 1;
        for (int i = 0; i != value.scale; ++i)
            divisor *= 10;
        result /= divisor; // one rounding only: both operands are exact
        return isNegative(value) && !isZero(value) ? -result : result;
    }
    const std::string text = decimalToText(value);
    std::from_chars(text.data(), text.data() + text.size(), result);
    return result;
}

std::string decimalToText(const DECIMAL& value) {
    char digits[48]; // a sign, a point, 28 zeros or 29 digits at most
    char* const end = digits + sizeof(digits);
    char* at = end;
    // From the last digit on; zeros at the end of the fraction aren't begun.
    const auto write = [&](auto rest) {
        for (int written = 0; rest != 0 || written <= value.scale; rest /= 10) {
            const int digit = static_cast<int>(rest % 10);
            if (at != end || digit != 0 || written >= value.scale)
                *--at = static_cast<char>('0' + digit);
            if (++written == value.scale && at != end) *--at = '.';
        }
    };
    if (value.Hi32 == 0)
        write(value.Lo64);
    else
        write(magnitudeOf(value));
    if (isNegative(value) && !isZero(value)) *--at = '-';
    return std::string(at, end);
}
