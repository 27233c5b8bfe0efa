// A file without a disk, for readers that take a path.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace fuzz {

class MemoryFile {
  public:
    // With these bytes.
    explicit MemoryFile(std::span<const std::uint8_t> bytes) : handle_(memfd_create("input", 0)) {
        valid_ = handle_ >= 0 &&
                 write(handle_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(handle_); }

    explicit operator bool() const { return valid_; }
    std::filesystem::path path() const { return "/proc/self/fd/" + std::to_string(handle_); }

  private:
    int handle_;
    bool valid_;
};

} // namespace fuzz
