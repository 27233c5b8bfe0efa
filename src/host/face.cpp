// Faces, and the casts from handles to what they stand for.
#include "host/face.h"

#include "host/class.h"
#include "host/host_messages.h"

namespace hos {

HOSIterator* Face::getDynamicProperties(HOSIterator* out) {
    *out = HOSIterator();
    return out;
}

HOSInterfacePtr* Face::findDynamicProperty(HOSInterfacePtr* out, id) {
    *out = HOSInterfacePtr();
    return out;
}

HOSInterfacePtr* Face::findProperty(HOSInterfacePtr* out, id) {
    *out = HOSInterfacePtr();
    return out;
}

void Face::addDynamicProperty(HOSGenericProp* property) {
    delete property;
    velmar::fail(velmar::keys::NotAnObject, "addDynamicProperty", "meta");
}

HOSClass* hosiToClass(HOSInterface* handle) {
    return Face::subjectOf<HOSClass>(handle, FaceKind::Class);
}
HOSPropInfo* hosiToProp(HOSInterface* handle) {
    return Face::subjectOf<HOSPropInfo>(handle, FaceKind::Property);
}
HOSMethodInfo* hosiToMethod(HOSInterface* handle) {
    return Face::subjectOf<HOSMethodInfo>(handle, FaceKind::Method);
}
HOSEventInfo* hosiToEvent(HOSInterface* handle) {
    return Face::subjectOf<HOSEventInfo>(handle, FaceKind::Event);
}
HOSDataType* HOSDataTypePtrHelper::getObject(const HOSInterfacePtr& handle) {
    return Face::subjectOf<HOSDataType>(handle, FaceKind::DataType);
}

} // namespace hos
