// Shared libraries through the system's dynamic linker.
#include "platform/shared_library.h"

#include <dlfcn.h>
#include <utility>

namespace platform {

SharedLibrary::SharedLibrary(const std::filesystem::path& file) {
    // A name without a folder would be searched for, and the empty one means the program itself;
    // a library is always a file of its own here.
    std::error_code ignored;
    const std::filesystem::path absolute = std::filesystem::absolute(file, ignored);
    if (absolute.empty()) {
        error_ = "a library's path is empty";
        return;
    }
    handle_ = dlopen(absolute.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle_) {
        const char* reason = dlerror();
        error_ = reason ? reason : absolute.string() + ": cannot be opened";
    }
}

SharedLibrary::SharedLibrary(SharedLibrary&& other) noexcept
    : handle_(std::exchange(other.handle_, nullptr)), error_(std::move(other.error_)) {}

SharedLibrary& SharedLibrary::operator=(SharedLibrary&& other) noexcept {
    std::swap(handle_, other.handle_);
    std::swap(error_, other.error_);
    return *this;
}

SharedLibrary::~SharedLibrary() {
    if (handle_) {
        dlclose(handle_);
    }
}

void* SharedLibrary::findAddress(const char* name) const {
    return handle_ ? dlsym(handle_, name) : nullptr;
}

} // namespace platform
