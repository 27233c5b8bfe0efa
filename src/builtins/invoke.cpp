// Calling a member by a name that is held as text.
#include "builtins/invoke.h"

#include "builtins/call_support.h"
#include "builtins/host_call.h"
#include "comruntime/interned.h"
#include "dispatch/call_by_name.h"
#include "dispatch/method_info.h"
#include "host/output.h"

#include <boost/algorithm/string/join.hpp>

namespace axlink2 {
namespace {

using harray::unique_array;
using Methods = std::vector<hos::HOSMethodInfo*>;

std::vector<std::string> typeNames(hos::Enumeration<hos::id>& types) {
    std::vector<std::string> names;
    while (types.hasMoreElements())
        names.push_back(types.nextElement().str());
    return names;
}

// "double scalar Add(COM.X, double scalar)": outputs, name, inputs.
std::string methodSignatureText(const hos::HOSMethodInfo& method) {
    const hos::HOSMethodSignature& signature = *method.getSignature();
    hos::Enumeration<hos::id> types;
    const auto outputs = typeNames(*signature.getOutputs(&types));
    const auto inputs = typeNames(*signature.getInputs(&types));
    std::string text = outputs.empty() ? "void" : boost::algorithm::join(outputs, ", ");
    if (outputs.size() > 1) text = "[" + text + "]";
    text += std::string(" ") + method.getName();
    if (!inputs.empty()) text += "(" + boost::algorithm::join(inputs, ", ") + ")";
    return text;
}

// The visible methods that come from a server.
void appendServerMethods(Methods& list, hos::HOSClass& owner) {
    hos::HOSIterator methods;
    owner.getMethods(&methods);
    while (methods.hasMoreElements()) {
        hos::HOSMethodInfo* method = hos::hosiToMethod(methods.nextElement());
        if (dynamic_cast<COMIDispMethodInfo*>(method) && method->isVisible())
            list.push_back(method);
    }
}

Methods serverMethods(hos::HOSClass& owner) {
    Methods list;
    appendServerMethods(list, owner);
    hos::Enumeration<hos::id> superclasses;
    owner.getSuperclassIDs(&superclasses);
    while (superclasses.hasMoreElements())
        if (hos::HOSClass* superclass = hos::HOSClass::getClass(superclasses.nextElement()))
            appendServerMethods(list, *superclass);
    return list;
}

void printMethods(const Methods& methods) {
    for (const hos::HOSMethodInfo* method : methods)
        hrtPrintf("\t%s = %s\n", method->getName(), methodSignatureText(*method).c_str());
}

unique_array structOfMethods(const Methods& methods) {
    std::vector<std::string> names;
    for (const hos::HOSMethodInfo* method : methods)
        names.emplace_back(method->getName());
    unique_array result = createStruct(names);
    for (std::size_t i = 0; i < methods.size(); ++i)
        hxSetFieldByNumber(result.get(), 0, static_cast<int>(i),
                           hxCreateString(methodSignatureText(*methods[i]).c_str()));
    return result;
}

bool hasMethod(hos::HOSClass& owner, const char* name) {
    hos::HOSIterator methods;
    return owner.findMethods(&methods, knownId(name))->hasMoreElements();
}

// As if the program had written the call: the host converts and chooses among overloads.
void callMethod(const char* name, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, const hos::HOSValue* inputs) {
    std::vector<const hxArray*> arguments{inputs[0].array()};
    for (std::int32_t i = 2; i < inputCount; ++i)
        arguments.push_back(inputs[i].array());
    auto results = callHost(name, *outputCount, arguments);
    if (*outputCount == 0 && results[0]) *outputCount = 1;
    for (std::uint32_t i = 0; i < *outputCount; ++i)
        outputs[i] = hos::HOSValue::ofPointer(results[i].release());
}

} // namespace

void COMInvokeMethodInfo::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                                 hos::HOSValue* outputs, std::int32_t inputCount,
                                 hos::HOSValue* inputs) {
    if (inputCount == 1) {
        const Methods methods = serverMethods(*ownerClass);
        if (*outputCount == 0) return printMethods(methods);
        return giveOutput(structOfMethods(methods), outputCount, outputs);
    }
    const auto* name = inputs[1].pointer<const char>();
    if (hasMethod(*ownerClass, name))
        callMethod(name, outputCount, outputs, inputCount, inputs);
    else
        callByName(firstObject(inputs), name, DISPATCH_METHOD, outputCount, outputs, inputCount - 2,
                   inputs + 2);
}

} // namespace axlink2
