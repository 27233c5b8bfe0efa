// Declaring a built-in method to the host.
#include "builtins/builtin_method.h"

#include "comruntime/interned.h"

namespace axlink2 {
namespace {

hos::id typeId(hos::HOSClass* owner, const char* type) {
    if (*type) return internedId(type);
    hos::id classId;
    return *owner->getID(&classId);
}

void declare(hos::HOSMethodSignature& signature, hos::HOSClass* owner, const SignatureStep& step) {
    switch (step.kind) {
    case SignatureStep::Input:
        if (step.label)
            signature.addInput(typeId(owner, step.type), internedId(step.label));
        else
            signature.addInput(typeId(owner, step.type));
        break;
    case SignatureStep::Output:
        signature.addOutput(typeId(owner, step.type));
        break;
    case SignatureStep::OptionalInputs:
        signature.setOptionalInputCount(step.count);
        break;
    case SignatureStep::VariableInput:
        signature.setVariableInput();
        break;
    case SignatureStep::VariableOutput:
        signature.setVariableOutput();
        break;
    }
}

} // namespace

COMBuiltinMethodInfo::COMBuiltinMethodInfo(hos::HOSClass* owner,
                                           const BuiltinDeclaration& declaration)
    : name(declaration.name ? declaration.name : owner->getName()), ownerClass(owner),
      precedence(declaration.precedence),
      signature(hos::HOSMethodSignature::createMethodSignature()) {
    for (const SignatureStep& step : declaration.steps)
        declare(*signature, owner, step);
}

} // namespace axlink2
