// What the live class of an object offers.
#include "shell/live_members.h"

#include "host/object_array.h"

namespace velsh {

namespace {

template <class Info>
std::vector<Info*> collect(hos::HOSIterator members, Info* (*cast)(hos::HOSInterface*)) {
    std::vector<Info*> infos;
    while (members.hasMoreElements())
        if (Info* info = cast(members.nextElement())) infos.push_back(info);
    return infos;
}

} // namespace

hos::HOSClass* classOf(const hxArray* object) {
    const hos::HOSInterfacePtr handle = hoGetArrayElement(object, 0);
    return handle && !handle->isDeleted() ? handle->getClass() : nullptr;
}

std::vector<hos::HOSMethodInfo*> callableMethods(hos::HOSClass& objectClass) {
    hos::HOSIterator members;
    std::vector<hos::HOSMethodInfo*> methods =
        collect(*objectClass.getMethods(&members), hos::hosiToMethod);
    std::erase_if(methods, [](auto* method) { return method->getMemberAccess() != 0; });
    return methods;
}

std::vector<hos::HOSPropInfo*> properties(hos::HOSClass& objectClass) {
    hos::HOSIterator members;
    return collect(*objectClass.getProperties(&members), hos::hosiToProp);
}

std::vector<hos::HOSEventInfo*> events(hos::HOSClass& objectClass) {
    hos::HOSIterator members;
    return collect(*objectClass.getEvents(&members), hos::hosiToEvent);
}

} // namespace velsh
