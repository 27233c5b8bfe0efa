// The way of one event from a server's arguments to the host's listeners.
#pragma once

#include "host/interface.h"
#include "platform/com.h"

namespace axlink2 {

// Runs the listeners of that event of the object, with a structure: "Type", the event's name;
// "Source", the object; "EventID"; and one field for each declared parameter. Arguments that are
// missing are 0-by-0 double, those that can't be converted NaN; further ones are ignored. Nothing
// happens when `source` has ended. `params`, which may be null, stays as it is. Raises
// std::out_of_range for a DISPID that is no event of the class, and what the host raises.
void deliverEvent(const hos::HOSInterfacePtr& source, DISPID dispid, const DISPPARAMS* params);

} // namespace axlink2
