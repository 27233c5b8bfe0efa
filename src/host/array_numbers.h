// The numbers of a host array by their C++ type.
#pragma once

#include "host/array_store.h"

#include <cstdint>

namespace velmar {

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
