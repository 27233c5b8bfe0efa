// Display names of registered type libraries.
#pragma once

#include "platform/com.h"
#include "platform/text.h"

#include <cstdint>

namespace axlink2 {

// The display name of a library, whose identifier has its braces, in the version that fits: the
// very one, or the newest when both texts say 0. Empty when anything is missing. The texts are
// hexadecimal and not empty; `outMajor` and `outMinor`, where given, get the version chosen.
_bstr_t typeLibraryName(platform::OleView libraryId, platform::OleView majorText,
                        platform::OleView minorText, std::uint32_t* outMajor = nullptr,
                        std::uint32_t* outMinor = nullptr);

} // namespace axlink2
