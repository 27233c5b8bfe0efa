// What ties a host object to its server.
#pragma once

#include "classmodel/object_links.h"
#include "host/array.h"
#include "host/class.h"
#include "platform/com.h"

namespace axlink2 {

// The record of one object, kept for it by the host. Every pointer holds one reference.
struct COMInstanceRecord {
    IDispatch* dispatch = nullptr; // null until the server has been started, or when that failed
    // While a listener is connected: a CAXSink and the IConnectionPoint that it is advised at.
    IDispatch* sink = nullptr;
    IUnknown* connectionPoint = nullptr;
    ParentLinks parents; // objects that this one was returned from
    ChildLinks children; // objects returned from this one
};

// Lets go of the sink, the server, the links and the connection point, in this order.
void releaseServerReferences(COMInstanceRecord& record);

// The record of an object of a generated class; null for null and for what has none.
inline COMInstanceRecord* recordOf(hos::HOSInterface* object) {
    hos::HOSClass* owner = object ? object->getClass() : nullptr;
    if (!owner) return nullptr;
    hos::id classId;
    owner->getID(&classId);
    return static_cast<COMInstanceRecord*>(object->getInstanceData(classId));
}

// Raises "VELMAR:class:InvalidHandle".
[[noreturn]] void raiseInvalidHandle();

// The object in element 0 of `inputs[0]`. Raises "VELMAR:class:InvalidHandle" when the array is
// null or empty, or the object has gone.
hos::HOSInterfacePtr requireValidHandle(const hxArray* const* inputs);

} // namespace axlink2
