// Loops that are compiled for many elements at once, whatever the rest is compiled for.
#include "conversion/logical_copy.h"

namespace axlink2 {

void copyLogicals(const unsigned char* __restrict from, VARIANT_BOOL* __restrict to,
                  std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        to[i] = static_cast<VARIANT_BOOL>(-(from[i] == 1));
}

void copyLogicals(const VARIANT_BOOL* __restrict from, bool* __restrict to, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        to[i] = from[i] == VARIANT_TRUE;
}

} // namespace axlink2
