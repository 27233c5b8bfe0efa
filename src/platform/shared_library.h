// A shared library, held open.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

namespace platform {

// Opens a library and finds its symbols; closes it at the end of the holder unless it was kept.
class SharedLibrary {
  public:
    SharedLibrary() = default;
    // Opens the library. On failure the holder is empty and error() says why.
    explicit SharedLibrary(const std::filesystem::path& file);

    explicit operator bool() const { return handle_ != nullptr; }
    const std::string& error() const { return error_; }

    // The address of a symbol; null when there is none, or the holder is empty.
    template <class Function>
    Function* find(const char* name) const {
        return reinterpret_cast<Function*>(findAddress(name));
    }

    // Leaves the library loaded to the end of the process.
    void keep() { (void)handle_.release(); }

  private:
    // Each system's own.
    void open(const std::filesystem::path& absolute);
    void* findAddress(const char* name) const;
    struct Close {
        void operator()(void* handle) const;
    };

    std::unique_ptr<void, Close> handle_;
    std::string error_;
};

} // namespace platform
