// The faults are the processor's own: volatile hides them from the optimiser, and the sanitizers,
// which would report them first, are kept out.
#include "servers/sample/faults.h"

#include <cstdint>
#include <stdexcept>

#define SAMPLE_FAULT [[gnu::noinline, gnu::no_sanitize("address,undefined")]]

namespace sample {

SAMPLE_FAULT void writeThroughNull() {
    int* volatile nowhere = nullptr;
    *static_cast<volatile int*>(nowhere) = 1; // NOLINT: the fault that is wanted
}

SAMPLE_FAULT void divideByZero() {
    volatile int dividend = 1;
    volatile int divisor = 0;
    volatile int quotient = 0;
    quotient = dividend / divisor; // NOLINT: the fault that is wanted
    (void)quotient;
}

SAMPLE_FAULT void callBadPointer() {
    volatile std::uintptr_t address = 16;
    reinterpret_cast<void (*)()>(static_cast<std::uintptr_t>(address))();
}

void throwException() { throw std::runtime_error("thrown by the sample server"); }

} // namespace sample
