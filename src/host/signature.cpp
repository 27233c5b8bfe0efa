// Method signatures, as the host keeps them and as text.
#include "host/signature.h"

#include "host/embedding.h"

#include <algorithm>

namespace hos {

HOSMethodSignaturePtr HOSMethodSignature::createMethodSignature() {
    return std::make_unique<Signature>();
}

Enumeration<id>* Signature::getInputs(Enumeration<id>* out) const {
    *out = Enumeration<id>(inputs);
    return out;
}

Enumeration<id>* Signature::getOutputs(Enumeration<id>* out) const {
    *out = Enumeration<id>(outputs);
    return out;
}

} // namespace hos

namespace velmar {
namespace {

std::string joined(const std::vector<hos::id>& types, std::size_t optional, bool variable,
                   const char* separator) {
    std::string text;
    const std::size_t required = types.size() - std::min(optional, types.size());
    for (std::size_t i = 0; i < types.size(); ++i) {
        if (i == required) text += '[';
        if (i > 0) text += separator;
        text += types[i].isEmpty() ? "?" : types[i].c_str();
    }
    if (variable) text += "...";
    if (required < types.size()) text += ']';
    return text;
}

} // namespace

std::string signatureText(const hos::HOSMethodInfo& method) {
    const auto* signature = dynamic_cast<const hos::Signature*>(method.getSignature());
    if (!signature) return method.getName();
    std::string text;
    if (!signature->outputs.empty()) {
        const bool several = signature->outputs.size() > 1 || signature->variableOutput;
        const std::string names = joined(signature->outputs, 0, signature->variableOutput, ", ");
        text = (several ? "[" + names + "]" : names) + " = ";
    }
    return text + method.getName() + "(" +
           joined(signature->inputs, signature->optionalInputs, signature->variableInput, ", ") +
           ")";
}

} // namespace velmar
