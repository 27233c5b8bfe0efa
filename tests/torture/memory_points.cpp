// Memory with a failure on demand. Under AddressSanitizer, whose own malloc must stay in place, it
// is what C++ allocates; otherwise all that the process does.
#include "torture/points.h"

#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <new>

#ifdef __SANITIZE_ADDRESS__

namespace {

void* allocate(std::size_t size) {
    if (torture::anyMemory.fails("operator new")) return nullptr;
    return std::malloc(size ? size : 1);
}

void* allocateOrThrow(std::size_t size) {
    if (void* block = allocate(size)) return block;
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size) { return allocateOrThrow(size); }
void* operator new[](std::size_t size) { return allocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { std::free(block); }

#else

namespace {

// GLib, on which compound files are built, ends the program when it gets no memory.
bool isGlib(void* caller) {
    Dl_info info{};
    return dladdr(caller, &info) && std::strstr(info.dli_fname, "libglib");
}

bool fails(const char* call, void* caller) {
    if (!torture::anyMemory.counting || isGlib(caller)) return false;
    return torture::anyMemory.fails(call);
}

} // namespace

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

void* malloc(std::size_t size) noexcept {
    return fails("malloc", __builtin_return_address(0)) ? nullptr : __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) noexcept {
    return fails("calloc", __builtin_return_address(0)) ? nullptr : __libc_calloc(count, size);
}
void* realloc(void* block, std::size_t size) noexcept {
    return fails("realloc", __builtin_return_address(0)) ? nullptr : __libc_realloc(block, size);
}
}

#endif
