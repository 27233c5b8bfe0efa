// Shared libraries through the system's loader.
#include "platform/shared_library.h"

#include "platform/text.h"

#include <utility>

namespace platform {
namespace {

std::string reasonOf(DWORD code) {
    const _com_error error(HRESULT_FROM_WIN32(code));
    return toNarrow(error.ErrorMessage());
}

} // namespace

SharedLibrary::SharedLibrary(const std::filesystem::path& file) {
    std::error_code ignored;
    const std::filesystem::path absolute = std::filesystem::absolute(file, ignored);
    if (absolute.empty()) {
        error_ = "a library's path is empty";
        return;
    }
    // What the library needs is looked for beside it first.
    handle_ = LoadLibraryExW(absolute.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!handle_) error_ = toNarrow(OleView(absolute.native())) + ": " + reasonOf(GetLastError());
}

SharedLibrary::SharedLibrary(SharedLibrary&& other) noexcept
    : handle_(std::exchange(other.handle_, nullptr)), error_(std::move(other.error_)) {}

SharedLibrary& SharedLibrary::operator=(SharedLibrary&& other) noexcept {
    std::swap(handle_, other.handle_);
    std::swap(error_, other.error_);
    return *this;
}

SharedLibrary::~SharedLibrary() {
    if (handle_) FreeLibrary(static_cast<HMODULE>(handle_));
}

void* SharedLibrary::findAddress(const char* name) const {
    if (!handle_) return nullptr;
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

} // namespace platform
