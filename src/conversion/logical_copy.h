// Logicals of the host and of COM: one byte here, two there.
#pragma once

#include "platform/com.h"

#include <cstddef>

namespace axlink2 {

// VARIANT_TRUE for a byte that is exactly 1, VARIANT_FALSE for any other.
void copyLogicals(const unsigned char* from, VARIANT_BOOL* to, std::size_t count);

// True for exactly VARIANT_TRUE.
void copyLogicals(const VARIANT_BOOL* from, bool* to, std::size_t count);

} // namespace axlink2
