// Wide text for a console; pipes and files take UTF-8.
#include "platform/console.h"

#include "platform/text.h"

#include <io.h>

namespace platform {

void writeText(std::FILE* stream, std::string_view text) {
    const auto console = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    DWORD mode = 0;
    if (!GetConsoleMode(console, &mode)) {
        std::fwrite(text.data(), 1, text.size(), stream);
        // Some C libraries there buffer it in pipes, so that warnings come behind later output.
        if (stream == stderr) std::fflush(stream);
        return;
    }
    std::fflush(stream);
    constexpr std::size_t most = 8192; // characters that older consoles take at once
    const OleString wide = toOle(text);
    for (std::size_t at = 0; at < wide.size(); at += most) {
        const OleView part = OleView(wide).substr(at, most);
        DWORD written = 0;
        WriteConsoleW(console, part.data(), static_cast<DWORD>(part.size()), &written, nullptr);
    }
}

} // namespace platform
