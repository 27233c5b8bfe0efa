// The standard streams take UTF-8.
#include "platform/console.h"

namespace platform {

void writeText(std::FILE* stream, std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stream);
}

} // namespace platform
