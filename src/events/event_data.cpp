// Copies of what an event carries.
#include "events/event_data.h"

#include <new>

namespace axlink2 {

hos::id* COMEventData::getEventName(hos::id* out) const {
    *out = eventName;
    return out;
}

hos::HOSInterfacePtr* COMEventData::getSource(hos::HOSInterfacePtr* out) const {
    *out = source;
    return out;
}

hos::HOSEventData* COMEventData::clone() const { return new (std::nothrow) COMEventData(*this); }

} // namespace axlink2
