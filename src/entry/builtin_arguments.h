// What both builtin functions ask of their arguments.
#pragma once

#include "host/exception.h"

namespace axlink2 {

// Raises the host's errors for more than one output, more than `mostInputs` inputs, or none.
inline void requireCounts(int nlhs, int nrhs, int mostInputs) {
    if (nlhs > 1) harray::detail::error_maxlhs();
    if (nrhs > mostInputs) harray::detail::error_maxrhs();
    if (nrhs < 1) harray::detail::error_minrhs();
}

} // namespace axlink2
