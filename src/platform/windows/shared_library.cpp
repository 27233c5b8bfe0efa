// Shared libraries through the system's loader.
#include "platform/shared_library.h"

#include "platform/text.h"

namespace platform {
namespace {

std::string reasonOf(DWORD code) {
    const _com_error error(HRESULT_FROM_WIN32(code));
    return toNarrow(error.ErrorMessage());
}

} // namespace

void SharedLibrary::open(const std::filesystem::path& absolute) {
    // What the library needs is looked for beside it first.
    handle_.reset(LoadLibraryExW(absolute.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
    if (!handle_) error_ = toNarrow(OleView(absolute.native())) + ": " + reasonOf(GetLastError());
}

void SharedLibrary::Close::operator()(void* handle) const {
    FreeLibrary(static_cast<HMODULE>(handle));
}

void* SharedLibrary::findAddress(const char* name) const {
    if (!handle_) return nullptr;
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_.get()), name));
}

} // namespace platform
