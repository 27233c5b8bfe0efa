// Shared libraries through the system's dynamic linker.
#include "platform/shared_library.h"

#include <dlfcn.h>

namespace platform {
namespace {

// Constructors of the library run in it, which may raise, though its declaration denies that: the
// compiler must not know whom it calls.
void* (*volatile openLibrary)(const char*, int) = dlopen;

} // namespace

void SharedLibrary::open(const std::filesystem::path& absolute) {
    handle_.reset(openLibrary(absolute.c_str(), RTLD_NOW | RTLD_LOCAL));
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
