// The properties of objects and classes.
#include "builtins/property_lookup.h"

#include "comruntime/interned.h"
#include "host/exception.h"
#include "host/message_ids.h"

namespace axlink2 {
namespace {

using AccessQuestion = hos::MemberAccess (hos::HOSPropInfo::*)() const;

void append(std::vector<hos::HOSPropInfo*>& list, hos::HOSIterator& properties,
            AccessQuestion access) {
    while (properties.hasMoreElements()) {
        hos::HOSPropInfo* property = hos::hosiToProp(properties.nextElement());
        if (property && property->propertyTrait10() && !property->isGrandfathered() &&
            (property->*access)() == 0)
            list.push_back(property);
    }
}

} // namespace

hos::HOSPropInfo* findProperty(hos::HOSInterface& object, const std::string& name) {
    hos::HOSInterfacePtr found;
    return hos::hosiToProp(*object.findProperty(&found, knownId(name.c_str())));
}

void requireClassProperty(hos::HOSClass& owner, const char* name) {
    hos::HOSInterfacePtr found;
    if (!*owner.findClassProperty(&found, knownId(name)))
        hmsgcore::raise(VELMAR::COM::AmbiguousPropertyException(std::string(name)));
}

std::vector<hos::HOSPropInfo*> readableProperties(hos::HOSClass& owner) {
    std::vector<hos::HOSPropInfo*> list;
    hos::HOSIterator properties;
    append(list, *owner.getProperties(&properties), &hos::HOSPropInfo::getGetAccess);
    return list;
}

std::vector<hos::HOSPropInfo*> readableAddedProperties(hos::HOSInterface& object) {
    std::vector<hos::HOSPropInfo*> list;
    hos::HOSIterator properties;
    append(list, *object.getDynamicProperties(&properties), &hos::HOSPropInfo::getGetAccess);
    return list;
}

std::vector<hos::HOSPropInfo*> writableProperties(hos::HOSInterface& object) {
    std::vector<hos::HOSPropInfo*> list;
    hos::HOSIterator properties;
    append(list, *object.getClass()->getProperties(&properties), &hos::HOSPropInfo::getSetAccess);
    append(list, *object.getDynamicProperties(&properties), &hos::HOSPropInfo::getSetAccess);
    return list;
}

std::vector<std::string> namesOf(const std::vector<hos::HOSPropInfo*>& properties) {
    std::vector<std::string> names;
    names.reserve(properties.size());
    for (const hos::HOSPropInfo* property : properties)
        names.emplace_back(property->getName());
    return names;
}

} // namespace axlink2
