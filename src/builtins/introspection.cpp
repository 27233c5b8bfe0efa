// What a program can ask an object about itself.
#include "builtins/introspection.h"

#include "builtins/call_support.h"
#include "builtins/fold_name.h"
#include "builtins/host_call.h"
#include "builtins/property_lookup.h"
#include "classmodel/class_description.h"
#include "conversion/arg_converter.h"
#include "host/object_array.h"
#include "host/output.h"

namespace axlink2 {
namespace {

bool hasPropertyInAnyCase(hos::HOSClass& owner, const std::string& name) {
    const auto wanted = tryFoldName(name);
    if (!wanted) return false;
    hos::HOSIterator properties;
    owner.getProperties(&properties);
    while (properties.hasMoreElements())
        if (tryFoldName(hos::hosiToProp(properties.nextElement())->getName()) == wanted)
            return true;
    return false;
}

bool isProperty(std::int32_t inputCount, const hos::HOSValue* inputs) {
    const auto name = inputCount == 2 ? scalarText(inputs[1].array()) : std::nullopt;
    if (!name) return false;
    const hos::HOSInterfacePtr object = hoGetArrayElement(inputs[0].array(), 0);
    if (!object) return false;
    return findProperty(*object, *name) || hasPropertyInAnyCase(*object->getClass(), *name);
}

using Events = std::vector<std::unique_ptr<COMEventDescriptor>>;

// "void Tick(int32 scalar Count)".
std::string eventSignatureText(const COMEventDescriptor& event) {
    std::string text = "void " + event.name + "(";
    for (std::size_t i = 0; i < event.parameterNames.size(); ++i) {
        if (i > 0) text += ", ";
        text += event.converters[i]->getDataType().getID().str() + " " + event.parameterNames[i];
    }
    return text + ")";
}

void printEvents(const Events& events) {
    for (const auto& event : events)
        hrtPuts(("\t" + event->name + " = " + eventSignatureText(*event) + "\n").c_str());
}

harray::unique_array structOfEvents(const Events& events) {
    std::vector<std::string> names;
    for (const auto& event : events)
        names.push_back(event->name);
    harray::unique_array result = createStruct(names);
    for (std::size_t i = 0; i < events.size(); ++i)
        hxSetFieldByNumber(result.get(), 0, static_cast<int>(i),
                           hxCreateString(eventSignatureText(*events[i]).c_str()));
    return result;
}

} // namespace

void COMMehtodsMethodInfo::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                                  hos::HOSValue* outputs, std::int32_t inputCount,
                                  hos::HOSValue* inputs) {
    const harray::unique_array function = harray::create(u"methods");
    std::vector<const hxArray*> arguments{function.get()};
    for (std::int32_t i = 0; i < inputCount; ++i)
        arguments.push_back(inputs[i].array());
    // Past any overload for the object's class, this one included.
    auto results = callHost("builtin", *outputCount, arguments);
    for (std::uint32_t i = 0; i < *outputCount; ++i)
        outputs[i] = hos::HOSValue::ofPointer(results[i].release());
}

void COMIspropMethodInfo::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                                 hos::HOSValue* outputs, std::int32_t inputCount,
                                 hos::HOSValue* inputs) {
    giveOutput(isProperty(inputCount, inputs), outputCount, outputs);
}

void COMEventsMethodInfo::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                                 hos::HOSValue* outputs, std::int32_t, hos::HOSValue* inputs) {
    const hos::HOSInterfacePtr object = firstObject(inputs);
    const auto* info = static_cast<COMBaseClassInfo*>(object->getClass()->getClassInfo());
    if (*outputCount == 0)
        printEvents(info->eventDescriptors);
    else if (!info->eventDescriptors.empty())
        giveOutput(structOfEvents(info->eventDescriptors), outputCount, outputs);
}

} // namespace axlink2
