// Numbers as other numbers: to nearest, halves away from zero, saturated. The only rounding of the
// host's values, so that a number is the same integer wherever it becomes one.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <utility>

namespace velmar {

// std::round, without the C libraries that add a half first and so round 0.49999999999999994 up.
template <class Real>
Real roundHalvesAway(Real number) {
    const Real whole = std::trunc(number);
    return std::fabs(number - whole) >= Real{0.5} ? whole + std::copysign(Real{1}, number) : whole;
}

// `number` as a T. An integer T doesn't take NaN: it gives 0.
template <class T, class From>
T convertNumber(From number) {
    if constexpr (std::is_same_v<T, bool>) {
        return number != 0;
    } else if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(number);
    } else if constexpr (std::is_integral_v<From>) {
        using Limits = std::numeric_limits<T>;
        if constexpr (std::is_same_v<From, bool> || std::is_same_v<From, char16_t>) {
            return convertNumber<T>(static_cast<std::int32_t>(number));
        } else {
            if (std::cmp_less(number, Limits::min())) return Limits::min();
            if (std::cmp_greater(number, Limits::max())) return Limits::max();
            return static_cast<T>(number);
        }
    } else {
        using Limits = std::numeric_limits<T>;
        if (std::isnan(number)) return 0;
        const From rounded = roundHalvesAway(number);
        // The upper limit of 64-bit types isn't a double; the next one above it is.
        if (rounded >= std::ldexp(From{1}, Limits::digits)) return Limits::max();
        if (rounded <= static_cast<From>(Limits::min())) return Limits::min();
        return static_cast<T>(rounded);
    }
}

} // namespace velmar
