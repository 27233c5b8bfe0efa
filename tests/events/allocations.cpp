// Operators new and delete that count.
#include "events/allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> made = 0;
std::atomic<std::size_t> ended = 0;

} // namespace

namespace axlink2::test {

std::size_t allocationsMade() { return made; }
std::size_t allocationsAlive() { return made - ended; }

} // namespace axlink2::test

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    void* block = std::malloc(size ? size : 1);
    if (block) ++made;
    return block;
}

void* operator new(std::size_t size) {
    if (void* block = operator new(size, std::nothrow)) return block;
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
    if (block) ++ended;
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
