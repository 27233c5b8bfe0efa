// From a server to an object of its ProgID's class.
#pragma once

#include "comruntime/server_call.h"
#include "host/array.h"
#include "host/class.h"

#include <string>

namespace axlink2 {

// A new object that takes the server over; its class is made from the server when there is none of
// that name yet. Raises "VELMAR:COM:invalidprogid" when the name's ProgID has no class id.
harray::unique_array serverObject(const std::string& className, ServerPtr<IDispatch> server);

// The same for a class that there is.
harray::unique_array objectOf(hos::HOSClass* owner, ServerPtr<IDispatch> server);

} // namespace axlink2
