// Properties that belong to one object and keep their value in the host.
#include "host/array.h"
#include "host/class.h"

namespace hos {

HOSGenericProp::HOSGenericProp(id name, id type) : name_(name), type_(type) {}

HOSGenericProp::~HOSGenericProp() { harray::destroyArray(value_); }

HOSGenericProp* HOSGenericProp::createNewDynamicProp(HOSString name, id type, id) {
    return new HOSGenericProp(name, type);
}

HOSValue* HOSGenericProp::getDefaultValue(HOSValue* out) const {
    *out = HOSValue();
    return out;
}

HOSDataTypePtr* HOSGenericProp::getDataType(HOSDataTypePtr* out) const {
    *out = HOSDataTypePtr(type_);
    return out;
}

HOSValue* HOSGenericProp::getValue(HOSValue* out, HOSInterface*) {
    *out = HOSValue::ofPointer(value_);
    return out;
}

void HOSGenericProp::setValue(HOSInterface*, HOSValue value) {
    hxArray* const array = value.array();
    // What the former value holds may look at this property as it ends.
    const harray::unique_array former(
        std::exchange(value_, array ? hxCreateSharedDataCopy(array) : nullptr));
}

void HOSGenericProp::destroyValue(HOSInterface*, HOSValue) {}

} // namespace hos
