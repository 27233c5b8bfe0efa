// Numbers of host arrays as other numbers: to nearest, halves away from zero, saturated.
#pragma once

#include "host/array_store.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <utility>

namespace velmar {

// std::round, without the C libraries that add a half first and so round 0.49999999999999994 up.
inline double roundHalvesAway(double number) {
    const double whole = std::trunc(number);
    return std::fabs(number - whole) >= 0.5 ? whole + std::copysign(1.0, number) : whole;
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
        const double rounded = roundHalvesAway(static_cast<double>(number));
        // The upper limit of 64-bit types isn't a double; the next one above it is.
        if (rounded >= std::ldexp(1.0, Limits::digits)) return Limits::max();
        if (rounded <= static_cast<double>(Limits::min())) return Limits::min();
        return static_cast<T>(rounded);
    }
}

// Calls `visitor` with the element type's pointer to the store of a numeric, logical or char array.
template <class Visitor>
decltype(auto) visitNumbers(const hxArray& array, Visitor&& visitor) {
    switch (array.classId) {
    case hxSINGLE_CLASS:
        return visitor(array.elements<const float>());
    case hxINT8_CLASS:
        return visitor(array.elements<const std::int8_t>());
    case hxUINT8_CLASS:
        return visitor(array.elements<const std::uint8_t>());
    case hxINT16_CLASS:
        return visitor(array.elements<const std::int16_t>());
    case hxUINT16_CLASS:
        return visitor(array.elements<const std::uint16_t>());
    case hxINT32_CLASS:
        return visitor(array.elements<const std::int32_t>());
    case hxUINT32_CLASS:
        return visitor(array.elements<const std::uint32_t>());
    case hxINT64_CLASS:
        return visitor(array.elements<const std::int64_t>());
    case hxUINT64_CLASS:
        return visitor(array.elements<const std::uint64_t>());
    case hxLOGICAL_CLASS:
        return visitor(array.elements<const bool>());
    case hxCHAR_CLASS:
        return visitor(array.elements<const char16_t>());
    default:
        return visitor(array.elements<const double>());
    }
}

} // namespace velmar
