// From a server to an object of its ProgID's class.
#pragma once

#include "comruntime/server_call.h"
#include "host/array.h"
#include "host/class.h"

#include <string>

namespace axlink2 {

// The class id of a ProgID, or why there is none. Raises "VELMAR:COM:invalidprogid" for a
// registered ProgID that its class name doesn't give back: it would get the class of another one.
HRESULT classIdOf(const std::string& progId, CLSID* clsid);

// The generated class of a ProgID; null when there is none yet.
hos::HOSClass* findServerClass(const std::string& progId);

// A new object of that ProgID's class, which takes the server over and from which the class is made
// when there is none yet.
harray::unique_array serverObject(const std::string& progId, ServerPtr<IDispatch> server);

// The same for a class that there is.
harray::unique_array objectOf(hos::HOSClass* owner, ServerPtr<IDispatch> server);

} // namespace axlink2
