// How many bytes an array keeps for each of its elements, by kind.
#pragma once

#include "platform/com.h"

#include <iterator>

namespace platform {

// VT_EMPTY to VT_UINT.
inline constexpr ULONG elementSizes[] = {0,  0, 2,  4, 4, 8, 8, 8, 8, 8, 4, 2,
                                         24, 8, 16, 0, 1, 1, 2, 4, 8, 8, 4, 4};

// 0 for kinds that arrays can't hold.
constexpr ULONG elementSize(VARTYPE vt) noexcept {
    if (vt == VT_INT_PTR || vt == VT_UINT_PTR) return sizeof(void*);
    return vt < std::size(elementSizes) ? elementSizes[vt] : 0;
}

} // namespace platform
