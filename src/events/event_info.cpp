// Listeners come and go.
#include "events/event_info.h"

#include "comruntime/interned.h"
#include "events/connection.h"

namespace axlink2 {

COMEventInfo::COMEventInfo(hos::HOSClass* owner, DISPID dispid, COMEventDescriptor* descriptor)
    : owner(owner), descriptor(descriptor), dispid(dispid), description(std::to_string(dispid)) {}

hos::id* COMEventInfo::getEventDataType(hos::id* out) const {
    *out = internedId("event.EventData");
    return out;
}

void COMEventInfo::addListener(hos::HOSInterfacePtr source) {
    COMInstanceRecord* record = recordOf(source);
    if (!record) raiseInvalidHandle();
    connectEvent(*record, source, dispid);
}

void COMEventInfo::removeListener(hos::HOSInterfacePtr source) {
    if (COMInstanceRecord* record = recordOf(source)) disconnectEvent(*record, dispid);
}

} // namespace axlink2
