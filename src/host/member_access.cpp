// Reading and writing properties of objects.
#include "host/member_access.h"

#include "host/host_messages.h"

namespace velmar {
namespace {

// A property of a class or of one object.
struct Found {
    hos::HOSPropInfo* info;
    const TypeEntry* type; // null for a dynamic property, whose value is an array
};

Found findProperty(hos::HOSInterface& object, hos::id name, const char* text) {
    hos::HOSClass* owner = object.getClass();
    if (!owner) fail(keys::UndefinedMember, std::string(text ? text : ""), std::string("meta"));
    // Only live objects have a class.
    auto& live = static_cast<LiveObject&>(object);
    if (LiveClass::Property* property = live.liveClass().property(name)) {
        if (!property->type || !property->type->type) {
            hos::HOSDataTypePtr type;
            property->info->getDataType(&type);
            property->type = &typeEntry(type.getID());
        }
        return {property->info.get(), property->type};
    }
    if (hos::HOSGenericProp* property = live.dynamicProperty(name)) return {property, nullptr};
    fail(keys::UndefinedMember, std::string(text ? text : ""), live.liveClass().classId().str());
}

[[noreturn]] void failAccess(const HostKey& key, const Found& property, hos::HOSInterface& object) {
    fail(key, std::string(property.info->getName()),
         static_cast<LiveObject&>(object).liveClass().classId().str());
}

} // namespace

harray::unique_array readProperty(hos::HOSInterface& object, hos::id name, const char* text) {
    const Found property = findProperty(object, name, text);
    if (property.info->getGetAccess() != 0) failAccess(keys::WriteOnlyProperty, property, object);
    hos::HOSValue value;
    property.info->getValue(&value, &object);
    // The array of a dynamic property stays its own.
    if (!property.type) return harray::unique_array(hxCreateSharedDataCopy(value.array()));
    if (property.type->holdsArrays())
        return harray::unique_array(value.isNull() ? hxCreateSharedDataCopy(nullptr)
                                                   : value.array());
    struct Ending {
        hos::HOSPropInfo* info;
        hos::HOSInterface* object;
        hos::HOSValue value;
        bool isOwned;
        ~Ending() {
            if (isOwned) info->destroyValue(object, value);
        }
    } ending{property.info, &object, value, !property.type->isWord};
    harray::unique_array array = property.type->arrayOf(value);
    return array ? std::move(array) : harray::unique_array(hxCreateSharedDataCopy(nullptr));
}

void writeProperty(hos::HOSInterface& object, hos::id name, const char* text,
                   const hxArray* value) {
    const Found property = findProperty(object, name, text);
    if (property.info->getSetAccess() != 0) failAccess(keys::ReadOnlyProperty, property, object);
    const hxArray& source = harray::detail::reading(value);
    if (!property.type) {
        property.info->setValue(&object, hos::HOSValue::ofPointer(&source));
        return;
    }
    // The others look at the array as they convert it.
    if (property.type->holdsArrays()) property.type->host->require(source);
    const struct Converted {
        const TypeEntry& type;
        const hxArray* source;
        const hos::HOSValue value;
        ~Converted() { type.endInput(value, source); }
    } converted{*property.type, &source, property.type->valueOf(&source)};
    property.info->setValue(&object, converted.value);
}

} // namespace velmar
