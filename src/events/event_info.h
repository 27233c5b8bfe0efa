// The event members of generated classes.
#pragma once

#include "classmodel/event_descriptor.h"
#include "host/class.h"
#include "platform/com.h"

#include <string>

namespace axlink2 {

class COMEventInfo : public hos::HOSEventInfo {
  public:
    // `descriptor` belongs to the class that `owner` was made from.
    COMEventInfo(hos::HOSClass* owner, DISPID dispid, COMEventDescriptor* descriptor);

    const char* getName() const override { return descriptor->name.c_str(); }
    // The DISPID in decimal.
    const char* getDescription() const override { return description.c_str(); }
    const char* getDetailedDescription() const override { return ""; }
    bool eventTrait() const override { return true; }
    hos::id* getEventDataType(hos::id* out) const override;
    hos::MemberAccess getSendAccess() const override { return 2; }
    hos::MemberAccess getListenAccess() const override { return 0; }
    // What `connectEvent` and `disconnectEvent` do, for the object's record.
    void addListener(hos::HOSInterfacePtr source) override;
    void removeListener(hos::HOSInterfacePtr source) override;

    hos::HOSClass* owner;
    COMEventDescriptor* descriptor;
    DISPID dispid;
    std::string description;
};

} // namespace axlink2
