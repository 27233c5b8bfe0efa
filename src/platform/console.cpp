// What a stream says of itself.
#include "platform/console.h"

namespace platform {

bool flushText(std::FILE* stream) {
    const bool arrived = std::fflush(stream) == 0 && !std::ferror(stream);
    std::clearerr(stream);
    return arrived;
}

} // namespace platform
