// What the executable's operators new and delete have done so far.
#pragma once

#include <cstddef>

namespace axlink2::test {

// Blocks made, and those of them that were not ended.
std::size_t allocationsMade();
std::size_t allocationsAlive();

} // namespace axlink2::test
