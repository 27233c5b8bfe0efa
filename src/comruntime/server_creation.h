// Starting servers.
#pragma once

#include "platform/com.h"
#include "platform/text.h"

namespace axlink2 {

// Starts a server of that class and asks it for IDispatch; an empty `machine` is this one. On
// success `*out` holds one reference that is the caller's.
HRESULT createServerDispatch(const CLSID& clsid, IDispatch** out, platform::OleString machine);

// The same for an object whose class is known, on a thread that is brought back into its
// apartment where it has left it; a failure raises "VELMAR:COM:servercreationfailed".
void createInstanceServer(IDispatch** out, const CLSID& clsid, const platform::OleString& machine);

// Raises "VELMAR:COM:servercreationfailed" with the system's text of `hr`, or with the code where
// the system has none.
[[noreturn]] void raiseServerCreationFailed(HRESULT hr);

} // namespace axlink2
