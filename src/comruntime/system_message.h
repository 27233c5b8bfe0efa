// The operating system's text of an error code.
#pragma once

#include "platform/com.h"

#include <string>

namespace axlink2 {

// The system's text of `hr`, as the system gives it; empty when it has none. `size` is what the
// system is told of the buffer, which it allocates itself.
std::u16string systemMessageText(HRESULT hr, DWORD size = 0);

} // namespace axlink2
