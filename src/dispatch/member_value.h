// Values that came out of members, on their way to the host.
#pragma once

#include "conversion/arg_converter.h"

namespace axlink2 {

// The value of `v`, which came out of member `memberName` of `owner`; `v` may be emptied.
// Interfaces become objects that are linked to the owner; one that is null, or can't be wrapped, is
// a NaN.
hos::HOSValue propertyValue(ArgVarConverter& converter, VARIANT& v, hos::HOSInterface* owner,
                            const char* memberName);

// The same for results and outputs of methods, among which a bare IUnknown isn't wrapped: it is a
// NaN with the warning "VELMAR:COM:unsupportedVARIANTtype".
hos::HOSValue methodValue(ArgVarConverter& converter, VARIANT& v, hos::HOSInterface* owner,
                          const char* memberName);

} // namespace axlink2
