// Counting at the place where the shell itself counts, and a heap with an end.
#include "fuzz/step_limit.h"

#include "host/embedding.h"
#include "shell/recursion.h"

#include <cstdlib>
#include <new>

namespace {

constexpr int mostSteps = 500;
constexpr std::size_t largestBlock = 1 << 20;

bool limited = false;
int steps = 0;

} // namespace

// The linker leads every evaluation of an expression here first.
extern "C" void __real__ZN5velsh9RecursionC1Ei(velsh::Recursion* self, int weight);
extern "C" void __wrap__ZN5velsh9RecursionC1Ei(velsh::Recursion* self, int weight) {
    if (limited && ++steps > mostSteps) velmar::raiseError("VELMAR:toolong", "Too many steps.");
    __real__ZN5velsh9RecursionC1Ei(self, weight);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return limited && size > largestBlock ? nullptr : std::malloc(size ? size : 1);
}
void* operator new(std::size_t size) {
    if (void* const block = operator new(size, std::nothrow)) return block;
    throw std::bad_alloc();
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace fuzz {

StepLimit::StepLimit() {
    limited = true;
    steps = 0;
}

StepLimit::~StepLimit() { limited = false; }

} // namespace fuzz
