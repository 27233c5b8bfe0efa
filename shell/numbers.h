// Reading and making numeric, logical and char data by its C++ type.
#pragma once

#include "host/number_conversion.h"
#include "shell/value.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace velsh {

// Calls `use` with a null pointer of the C++ type of the class's elements. Raises for a class
// without such a type.
template <class Use>
decltype(auto) withElementType(hxClassID type, Use use) {
    switch (type) {
    case hxLOGICAL_CLASS:
        return use(static_cast<bool*>(nullptr));
    case hxCHAR_CLASS:
        return use(static_cast<char16_t*>(nullptr));
    case hxSINGLE_CLASS:
        return use(static_cast<float*>(nullptr));
    case hxINT8_CLASS:
        return use(static_cast<std::int8_t*>(nullptr));
    case hxUINT8_CLASS:
        return use(static_cast<std::uint8_t*>(nullptr));
    case hxINT16_CLASS:
        return use(static_cast<std::int16_t*>(nullptr));
    case hxUINT16_CLASS:
        return use(static_cast<std::uint16_t*>(nullptr));
    case hxINT32_CLASS:
        return use(static_cast<std::int32_t*>(nullptr));
    case hxUINT32_CLASS:
        return use(static_cast<std::uint32_t*>(nullptr));
    case hxINT64_CLASS:
        return use(static_cast<std::int64_t*>(nullptr));
    case hxUINT64_CLASS:
        return use(static_cast<std::uint64_t*>(nullptr));
    case hxDOUBLE_CLASS:
        return use(static_cast<double*>(nullptr));
    default:
        raise("wrongtype", "Only numbers, logical values and characters have a number.");
    }
}

// Wide enough for every element type, 64-bit integers included.
using WideNumber = long double;

// Calls `use(index, value)` for every element of a full, real array.
template <class Use>
void forEachNumber(const hxArray* array, Use use) {
    withElementType(hxGetClassID(array), [&](auto* type) {
        using Element = std::remove_pointer_t<decltype(type)>;
        auto* data = static_cast<const Element*>(hxGetData(array));
        for (std::size_t i = 0, count = countOf(array); i < count; ++i)
            use(i, static_cast<WideNumber>(data[i]));
    });
}

inline std::vector<WideNumber> numbersOf(const hxArray* array) {
    std::vector<WideNumber> numbers(countOf(array));
    forEachNumber(array, [&](std::size_t i, WideNumber value) { numbers[i] = value; });
    return numbers;
}

} // namespace velsh
