// A store of named values on one object.
#include "builtins/appdata.h"

#include "builtins/call_support.h"
#include "builtins/property_lookup.h"
#include "comruntime/interned.h"
#include "host/exception.h"
#include "host/message_ids.h"

namespace axlink2 {
namespace {

using harray::unique_array;

hos::HOSPropInfo* findStore(hos::HOSInterface& object) {
    hos::HOSInterfacePtr found;
    return hos::hosiToProp(*object.findDynamicProperty(&found, internedId("AppData")));
}

hos::HOSPropInfo* makeStore(hos::HOSInterface& object) {
    // The server's own.
    if (findProperty(object, "AppData")) hmsgcore::raise(VELMAR::COM::InvalidAppData());
    object.addDynamicProperty(hos::HOSGenericProp::createNewDynamicProp(
        internedId("AppData"), internedId("any"), hos::id()));
    hos::HOSPropInfo* property = findStore(object);
    property->setValue(&object, hos::HOSValue::ofPointer(createStruct({}).get()));
    return property;
}

// The array that holds the application data of a live object: the property's own, not a copy, so
// that a change to it is a change of the store. Raises "VELMAR:COM:InvalidAppData".
hxArray* appDataStruct(hos::HOSInterface& object) {
    hos::HOSPropInfo* property = findStore(object);
    if (!property) property = makeStore(object);
    hos::HOSValue value;
    property->getValue(&value, &object);
    const hxClassID classId = value.isNull() ? hxUNKNOWN_CLASS : hxGetClassID(value.array());
    if ((classId != hxSTRUCT_CLASS && classId != hxOBJECT_CLASS) ||
        hxGetNumberOfElements(value.array()) != 1)
        hmsgcore::raise(VELMAR::COM::InvalidAppData());
    return value.array();
}

// Gives a field another value; what it held ends last, as its end may lead back here.
unique_array exchangeField(hxArray* store, int field, unique_array value) {
    unique_array former(const_cast<hxArray*>(hxGetFieldByNumber(store, 0, field)));
    hxSetFieldByNumber(store, 0, field, value.release());
    return former;
}

const char* nameIn(const hos::HOSValue* inputs) { return inputs[1].pointer<const char>(); }

} // namespace

void COMSetappdataMethodInfo::invoke(const hos::HOSClient*, std::uint32_t*, hos::HOSValue*,
                                     std::int32_t, hos::HOSValue* inputs) {
    const hos::HOSInterfacePtr object = liveObject(inputs);
    if (!object) return;
    // First, as it may share what the store holds.
    unique_array value(hxCreateSharedDataCopy(inputs[2].array()));
    hxArray* const store = hxUnshareShallow(appDataStruct(*object));
    exchangeField(store, hxAddFieldToStruct(store, nameIn(inputs)), std::move(value));
}

void COMGetappdataMethodInfo::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                                     hos::HOSValue* outputs, std::int32_t inputCount,
                                     hos::HOSValue* inputs) {
    const hos::HOSInterfacePtr object = liveObject(inputs);
    if (!object) return;
    const hxArray* const store = appDataStruct(*object);
    const hxArray* const value = inputCount == 1 ? store : hxGetField(store, 0, nameIn(inputs));
    giveOutput(unique_array(hxCreateSharedDataCopy(value)), outputCount, outputs);
}

void COMRmappdataMethodInfo::invoke(const hos::HOSClient*, std::uint32_t*, hos::HOSValue*,
                                    std::int32_t, hos::HOSValue* inputs) {
    const hos::HOSInterfacePtr object = liveObject(inputs);
    if (!object) return;
    hxArray* store = appDataStruct(*object);
    const int field = hxGetFieldNumber(store, nameIn(inputs));
    if (field < 0) hmsgcore::raise(VELMAR::HostGraphics::Appdata::InvalidNameAppdata());
    store = hxUnshareShallow(store);
    const unique_array former = exchangeField(store, field, nullptr);
    hxRemoveField(store, field);
}

void COMIsappdataMethodInfo::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                                    hos::HOSValue* outputs, std::int32_t, hos::HOSValue* inputs) {
    const hos::HOSInterfacePtr object = liveObject(inputs);
    if (object)
        giveOutput(hxGetFieldNumber(appDataStruct(*object), nameIn(inputs)) >= 0, outputCount,
                   outputs);
}

} // namespace axlink2
