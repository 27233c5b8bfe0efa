// What opening a shared library means on every system.
#include "platform/shared_library.h"

namespace platform {

SharedLibrary::SharedLibrary(const std::filesystem::path& file) {
    // A name without a folder would be searched for, and the empty one means the program itself;
    // a library is always a file of its own here.
    std::error_code ignored;
    const std::filesystem::path absolute = std::filesystem::absolute(file, ignored);
    if (absolute.empty())
        error_ = "a library's path is empty";
    else
        open(absolute);
}

} // namespace platform
