// Memory and time that a long run uses.
#pragma once

#include <cstddef>

namespace torture {

// Bytes that the program has allocated and not given back.
std::ptrdiff_t heapInUse();

// Bytes of the program that are in memory.
std::ptrdiff_t residentMemory();

// Seconds of processor time that the program has taken.
double processorTime();

} // namespace torture
