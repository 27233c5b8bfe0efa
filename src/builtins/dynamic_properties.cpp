// Properties that a program adds to one object.
#include "builtins/dynamic_properties.h"

#include "builtins/call_support.h"
#include "builtins/property_lookup.h"
#include "comruntime/interned.h"
#include "host/exception.h"
#include "host/message_ids.h"

namespace axlink2 {
namespace {

std::string requireName(std::int32_t inputCount, const hos::HOSValue* inputs) {
    const char* name = inputCount > 1 ? inputs[1].pointer<const char>() : nullptr;
    if (!name) hmsgcore::raise(VELMAR::COM::invalidnumargs());
    if (!*name) hmsgcore::raise(VELMAR::COM::propertynameerror());
    return name;
}

} // namespace

void COMAddpropertyMethodInfo::invoke(const hos::HOSClient*, std::uint32_t*, hos::HOSValue*,
                                      std::int32_t inputCount, hos::HOSValue* inputs) {
    const hos::HOSInterfacePtr object = liveObject(inputs);
    if (!object) return;
    const std::string name = requireName(inputCount, inputs);
    if (findProperty(*object, name)) hmsgcore::raise(VELMAR::COM::propertyexisterror(name));
    object->addDynamicProperty(
        hos::HOSGenericProp::createNewDynamicProp(internedId(name), internedId("any"), hos::id()));
}

void COMDeletepropertyMethodInfo::invoke(const hos::HOSClient* client, std::uint32_t*,
                                         hos::HOSValue*, std::int32_t inputCount,
                                         hos::HOSValue* inputs) {
    const hos::HOSInterfacePtr object = liveObject(inputs);
    if (!object) return;
    const std::string name = requireName(inputCount, inputs);
    hos::HOSInterfacePtr property;
    object->findDynamicProperty(&property, knownId(name.c_str()));
    if (!property) hmsgcore::raise(VELMAR::COM::invalidruntimeproperty(name));
    property->destroy(client);
}

} // namespace axlink2
