// Instance records and the handles that lead to them.
#include "classmodel/instance_record.h"

#include "comruntime/guarded_invoke.h"
#include "comruntime/server_call.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "host/object_array.h"

#include <utility>

namespace axlink2 {
// Each field is null before the server hears of it: its last words may lead back here.
void releaseServerReferences(COMInstanceRecord& record) {
    guardedRelease(std::exchange(record.sink, nullptr));
    releaseServer(std::exchange(record.dispatch, nullptr));
    record.children.clear();
    record.parents.clear();
    guardedRelease(std::exchange(record.connectionPoint, nullptr));
}

void raiseInvalidHandle() { hmsgcore::raise(VELMAR::class_::InvalidHandle()); }

hos::HOSInterfacePtr requireValidHandle(const hxArray* const* inputs) {
    hos::HOSInterfacePtr object = hoGetArrayElement(inputs[0], 0); // null of what has no element
    if (object && !object->isDeleted()) return object;
    raiseInvalidHandle();
}

} // namespace axlink2
