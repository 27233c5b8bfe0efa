// The connection between an object and the events of its server: one for all its events.
#pragma once

#include "classmodel/instance_record.h"

namespace axlink2 {

// Sends the event to the object's listeners from now on. The first event of an object connects it;
// nothing changes when that fails. Raises "VELMAR:COM:errorregisterevents" with the step that
// failed, and "VELMAR:class:InvalidHandle" when the object ends meanwhile.
void connectEvent(COMInstanceRecord& record, const hos::HOSInterfacePtr& source, DISPID dispid);

// The opposite. The last event disconnects the object. Never fails.
void disconnectEvent(COMInstanceRecord& record, DISPID dispid);

} // namespace axlink2
