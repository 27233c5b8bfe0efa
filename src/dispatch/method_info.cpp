// Method members: what they declare, and the call.
#include "dispatch/method_info.h"

#include "classmodel/instance_record.h"
#include "comruntime/interned.h"
#include "dispatch/invoke_or_throw.h"
#include "dispatch/member_value.h"

namespace axlink2 {
namespace {

// As FUNCDESC says it in place of the number of optional parameters.
constexpr std::int64_t anyNumberOfArguments = -1;

std::vector<COMArgInfo> argumentInfos(const COMMemberSignature& signature) {
    std::vector<COMArgInfo> infos;
    infos.reserve(signature.parameterTypes.size());
    for (std::size_t index = 0; index < signature.parameterTypes.size(); ++index) {
        const std::uint16_t flags = signature.parameterFlags[index];
        infos.push_back({.input = (flags & PARAMFLAG_FIN) != 0,
                         .output = (flags & PARAMFLAG_FOUT) != 0,
                         .optional = (flags & PARAMFLAG_FOPT) != 0,
                         .byReference = signature.byReference[index],
                         .variable = false,
                         .converter = getArgConverter(signature.parameterTypes[index])});
    }
    // What it declares is the array that the arguments would arrive in.
    if (signature.optionalCount == anyNumberOfArguments && !infos.empty() && infos.back().input) {
        infos.back().variable = true;
        infos.back().output = false;
    }
    return infos;
}

} // namespace

COMIDispMethodInfo::COMIDispMethodInfo(hos::HOSClass* owner, DISPID dispid,
                                       const COMMemberEntry& entry)
    : ownerClass(owner), name(entry.name),
      signature(hos::HOSMethodSignature::createMethodSignature()), dispid(dispid),
      resultConverter(getArgConverter(entry.resultType())),
      arguments(argumentInfos(entry.method ? *entry.method : *entry.propertyGet)),
      invokeKind(entry.method ? DISPATCH_METHOD : DISPATCH_PROPERTYGET) {
    declareSignature((entry.method ? *entry.method : *entry.propertyGet).parameterNames);
}

void COMIDispMethodInfo::declareSignature(const std::vector<std::string>& names) {
    const auto labelOf = [&](const COMArgInfo& argument) {
        const auto index = static_cast<std::size_t>(&argument - arguments.data());
        return index < names.size() ? internedId(names[index]) : hos::id();
    };
    hos::id classId;
    signature->addInput(*ownerClass->getID(&classId));
    std::size_t optionalCount = 0;
    for (const COMArgInfo& argument : arguments) {
        if (!argument.input) continue;
        if (argument.variable) {
            signature->addInput(internedId("any"), internedId("varargin"));
            signature->setVariableInput();
        } else {
            signature->addInput(argument.converter->getDataType().getID(), labelOf(argument));
        }
        if (argument.optional) ++optionalCount;
    }
    signature->setOptionalInputCount(optionalCount);

    if (hasResult()) signature->addOutput(resultConverter->getDataType().getID());
    for (const COMArgInfo& argument : arguments)
        if (argument.output)
            signature->addOutput(argument.converter->getDataType().getID(), labelOf(argument));
}

void COMIDispMethodInfo::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                                hos::HOSValue* outputs, std::int32_t inputCount,
                                hos::HOSValue* inputs) {
    const hxArray* objects = inputs[0].array();
    const hos::HOSInterfacePtr handle = requireValidHandle(&objects);
    hos::HOSInterface* const object = handle;
    COMCallArguments call(arguments, takesAnyNumber() ? static_cast<std::size_t>(inputCount) : 0);
    call.fill(inputCount, inputs);
    // A call that asks for nothing still delivers its first output.
    if (*outputCount < 1 && (hasResult() || call.outputCount() > 0)) *outputCount = 1;

    // Only now, as objects among the arguments were counted, for which their servers ran.
    const COMInstanceRecord* record = recordOf(object);
    platform::ScopedVariant result;
    DISPPARAMS params = call.params();
    invokeOrThrow(record ? record->dispatch : nullptr, dispid, invokeKind, params, &result);
    call.takeReplaced();
    if (call.outputCount() > 0) call.trimOutputs(*outputCount - (hasResult() ? 1 : 0));
    std::uint32_t index = 0;
    if (hasResult())
        outputs[index++] = methodValue(*resultConverter, *result.inOut(), object, name.c_str());
    while (index < *outputCount) {
        const auto [value, converter] = call.takeOutput();
        if (!value) return;
        outputs[index++] = methodValue(*converter, *value, object, name.c_str());
    }
}

} // namespace axlink2
