// Text for the person at the standard streams.
#pragma once

#include <cstdio>
#include <string_view>

namespace platform {

// Writes UTF-8 to standard output or standard error: to a Windows console as the wide text that it
// takes whatever its code page, elsewhere as it is, buffered as the stream is.
void writeText(std::FILE* stream, std::string_view text);

// Whether all that was written to the stream so far has arrived. The next question is about what is
// written from now on.
bool flushText(std::FILE* stream);

} // namespace platform
