// Files that are read and written as a whole.
#pragma once

#include "platform/text.h"

#include <cstddef>
#include <filesystem>
#include <span>
#include <system_error>
#include <vector>

namespace platform {

// The file that a name of COM means.
std::filesystem::path pathOf(const OleString& name);

// Gives `file` that content through a temporary file beside it, which then takes its place: on a
// failure, a full disk too, the old file is as it was. The new file has the old one's permissions.
// Only an ordinary file that may be written is replaced; a link stays and its target is replaced.
std::error_code replaceFile(const std::filesystem::path& file, std::span<const std::byte> content);

// The content of an ordinary file. Raises std::bad_alloc.
std::error_code readFile(const std::filesystem::path& file, std::vector<std::byte>& content);

// Whether replaceFile may begin: why not, else no error.
std::error_code checkReplaceable(const std::filesystem::path& file);

} // namespace platform
