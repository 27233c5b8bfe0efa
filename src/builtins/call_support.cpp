// What running built-in methods share.
#include "builtins/call_support.h"

#include "classmodel/instance_record.h"
#include "host/object_array.h"
#include "host/text.h"

#include <algorithm>

namespace axlink2 {

hos::HOSInterfacePtr firstObject(const hos::HOSValue* inputs) {
    hos::HOSInterfacePtr object = hoGetArrayElement(inputs[0].array(), 0);
    if (!object) raiseInvalidHandle();
    return object;
}

hos::HOSInterfacePtr liveObject(const hos::HOSValue* inputs) {
    const hxArray* array = inputs[0].array();
    hos::HOSInterfacePtr object = requireValidHandle(&array);
    return recordOf(object) ? object : hos::HOSInterfacePtr();
}

ServerPtr<IDispatch> serverOf(const hos::HOSInterfacePtr& object) {
    const COMInstanceRecord* record = recordOf(object);
    return ServerPtr<IDispatch>::borrow(record ? record->dispatch : nullptr);
}

std::optional<std::string> scalarText(const hxArray* array) {
    std::u16string text;
    if (!hoststring::getScalarText(array, text, true)) return std::nullopt;
    return hsys::i18n::to_string(text);
}

harray::unique_array createStruct(const std::vector<std::string>& fields) {
    std::vector<const char*> names;
    names.reserve(fields.size());
    for (const std::string& field : fields)
        names.push_back(field.c_str());
    return harray::unique_array(
        hxCreateStructMatrix(1, 1, static_cast<int>(names.size()), names.data()));
}

namespace {

void giveFirst(hos::HOSValue value, std::uint32_t* outputCount, hos::HOSValue* outputs) {
    *outputCount = std::max(*outputCount, 1u);
    outputs[0] = value;
}

} // namespace

void giveOutput(harray::unique_array value, std::uint32_t* outputCount, hos::HOSValue* outputs) {
    giveFirst(hos::HOSValue::ofPointer(value.release()), outputCount, outputs);
}

void giveOutput(bool value, std::uint32_t* outputCount, hos::HOSValue* outputs) {
    giveFirst(hos::HOSValue::ofInteger(value), outputCount, outputs);
}

} // namespace axlink2
