// The interfaces that a server's type library lists for it.
#pragma once

#include "platform/com.h"

#include <string>
#include <vector>

namespace axlink2 {

// The names of the interfaces, other than event sources, of the first coclass that lists the
// server's own: the default one, then the others in library order. None without a server, type
// information or such a coclass; an interface that can't be read is left out.
std::vector<std::string> coclassInterfaceNames(IDispatch* server);

} // namespace axlink2
