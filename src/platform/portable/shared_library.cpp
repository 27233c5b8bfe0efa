// Shared libraries through the system's dynamic linker.
#include "platform/shared_library.h"

#include "platform/guarded_call.h"

#include <dlfcn.h>

namespace platform {
namespace {

// Constructors of the library run in it, which may raise, though its declaration denies that: the
// compiler must not know whom it calls.
void* (*volatile openLibrary)(const char*, int) = dlopen;

} // namespace

void SharedLibrary::open(const std::filesystem::path& absolute) {
    const char* const path = absolute.c_str();
    void* handle = nullptr;
    if (guarded([&] { handle = openLibrary(path, RTLD_NOW | RTLD_LOCAL); })) {
        error_ = absolute.string() + ": a constructor of the library failed";
        return;
    }
    handle_.reset(handle);
    if (!handle_) {
        const char* reason = dlerror();
        error_ = reason ? reason : absolute.string() + ": cannot be opened";
    }
}

void SharedLibrary::Close::operator()(void* handle) const { dlclose(handle); }

void* SharedLibrary::findAddress(const char* name) const {
    return handle_ ? dlsym(handle_.get(), name) : nullptr;
}

} // namespace platform
