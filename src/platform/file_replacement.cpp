// Whole files, by the standard library alone.
#include "platform/file_replacement.h"

#include <cerrno>
#include <fstream>
#include <random>
#include <string>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace platform {

namespace fs = std::filesystem;

namespace {

std::error_code lastError() {
    return std::error_code(errno ? errno : EIO, std::generic_category());
}

bool isWritable(const fs::path& file) {
#ifdef _WIN32
    return _waccess(file.c_str(), 2) == 0;
#else
    return access(file.c_str(), W_OK) == 0;
#endif
}

// A file that goes away again unless it has been moved.
class TemporaryFile {
  public:
    explicit TemporaryFile(fs::path path) : path_(std::move(path)) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        std::error_code ignored;
        if (!path_.empty()) fs::remove(path_, ignored);
    }

    std::error_code write(std::span<const std::byte> content) {
        errno = 0;
        std::ofstream out(path_, std::ios::binary);
        out.write(reinterpret_cast<const char*>(content.data()),
                  static_cast<std::streamsize>(content.size()));
        out.close();
        return out ? std::error_code() : lastError();
    }

    std::error_code moveTo(const fs::path& target) {
        std::error_code error;
        fs::rename(path_, target, error);
        if (!error) path_.clear();
        return error;
    }

    const fs::path& path() const { return path_; }

  private:
    fs::path path_;
};

// Short, so that a long name of the file doesn't make one that is too long.
fs::path temporaryNameBeside(const fs::path& file) {
    std::random_device random;
    return file.parent_path() /
           (".axlink2-" + std::to_string(random()) + std::to_string(random()) + ".tmp");
}

} // namespace

fs::path pathOf(const OleString& name) {
#ifdef _WIN32
    return name;
#else
    return toNarrow(name);
#endif
}

std::error_code checkReplaceable(const fs::path& file) {
    std::error_code error;
    const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
    const fs::file_status folderStatus = fs::status(folder, error);
    if (!fs::is_directory(folderStatus)) return std::make_error_code(std::errc::not_a_directory);
    const fs::file_status status = fs::status(file, error);
    if (!fs::exists(status)) {
        const bool isMissing = status.type() == fs::file_type::not_found;
        return isMissing ? std::error_code() : error;
    }
    if (fs::is_directory(status)) return std::make_error_code(std::errc::is_a_directory);
    if (!fs::is_regular_file(status) || !isWritable(file))
        return std::make_error_code(std::errc::permission_denied);
    return {};
}

std::error_code replaceFile(const fs::path& file, std::span<const std::byte> content) {
    if (std::error_code error = checkReplaceable(file)) return error;
    std::error_code error;
    const fs::path target = fs::weakly_canonical(file, error);
    if (error) return error;
    TemporaryFile temporary(temporaryNameBeside(target));
    if ((error = temporary.write(content))) return error;
    const fs::file_status old = fs::status(target, error);
    if (fs::exists(old)) {
        fs::permissions(temporary.path(), old.permissions(), error);
        if (error) return error;
    }
    return temporary.moveTo(target);
}

std::error_code readFile(const fs::path& file, std::vector<std::byte>& content) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (!fs::exists(status))
        return error ? error : std::make_error_code(std::errc::no_such_file_or_directory);
    if (fs::is_directory(status)) return std::make_error_code(std::errc::is_a_directory);
    // A device has no size and perhaps no end.
    if (!fs::is_regular_file(status)) return std::make_error_code(std::errc::permission_denied);
    const std::uintmax_t size = fs::file_size(file, error);
    if (error) return error;
    errno = 0;
    std::ifstream in(file, std::ios::binary);
    if (!in) return lastError();
    content.resize(size);
    in.read(reinterpret_cast<char*>(content.data()), static_cast<std::streamsize>(size));
    content.resize(static_cast<std::size_t>(in.gcount()));
    return in.bad() ? lastError() : std::error_code();
}

} // namespace platform
