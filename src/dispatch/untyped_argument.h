// Arguments of a call whose types nobody declares.
#pragma once

#include "conversion/host_to_variant.h"

namespace axlink2 {

// Writes what `input` itself says into `argument`, whose old content isn't looked at. `holders`
// must outlive the call. Raises what `hostToVariant` raises.
inline void untypedToVariant(VARIANT& argument, const hxArray* input, ReferenceHolders& holders) {
    hostToVariant(&argument, input, false, 0, 0, 0, false, &holders);
}

} // namespace axlink2
