// What the host's listeners receive of an event.
#pragma once

#include "host/array.h"
#include "host/interface.h"
#include "host/member_info.h"

namespace axlink2 {

class COMEventData : public hos::HOSEventData {
  public:
    // `data`, the event's structure, stays the caller's and outlives the event and its clones.
    COMEventData(hos::id eventName, const hos::HOSInterfacePtr& source, hxArray* data)
        : eventName(eventName), source(source), data(data) {}

    hos::id* getEventName(hos::id* out) const override;
    hos::HOSInterfacePtr* getSource(hos::HOSInterfacePtr* out) const override;
    // Null when there is no memory for it.
    hos::HOSEventData* clone() const override;
    hxArray* getEventData() const override { return data; }

  private:
    hos::id eventName;
    hos::HOSInterfacePtr source;
    hxArray* data;
};

} // namespace axlink2
