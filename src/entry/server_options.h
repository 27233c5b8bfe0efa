// The options of actxserver.
#pragma once

#include "host/array.h"

#include <optional>
#include <string>

namespace axlink2 {

struct ServerOptions {
    std::optional<std::u16string> machine; // absent for this machine
};

// Reads `prhs[1]` on. Raises "VELMAR:COM:numargs", "VELMAR:COM:unknownparam" and
// "VELMAR:COM:unsupported64bit"; an unknown option is a warning.
ServerOptions parseServerOptions(int nrhs, const hxArray* const* prhs);

} // namespace axlink2
