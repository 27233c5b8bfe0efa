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

std::string joined(const std::vector<hos::id>& types, const std::vector<hos::id>& labels,
                   std::size_t optional, bool variable) {
    std::string text;
    const std::size_t required = types.size() - std::min(optional, types.size());
    for (std::size_t i = 0; i < types.size(); ++i) {
        if (i == required) text += '[';
        if (i > 0) text += ", ";
        text += types[i].isEmpty() ? "?" : types[i].c_str();
        if (i < labels.size() && !labels[i].isEmpty()) text.append(" ").append(labels[i].c_str());
    }
    if (variable) text += "...";
    if (required < types.size()) text += ']';
    return text;
}

std::string textOf(const hos::HOSMethodInfo& method, bool withLabels) {
    const auto* signature = dynamic_cast<const hos::Signature*>(method.getSignature());
    if (!signature) return method.getName();
    const std::vector<hos::id> none;
    std::string text;
    if (!signature->outputs.empty()) {
        const bool several = signature->outputs.size() > 1 || signature->variableOutput;
        const std::string names =
            joined(signature->outputs, withLabels ? signature->outputLabels : none, 0,
                   signature->variableOutput);
        text = (several ? "[" + names + "]" : names) + " = ";
    }
    return text + method.getName() + "(" +
           joined(signature->inputs, withLabels ? signature->inputLabels : none,
                  signature->optionalInputs, signature->variableInput) +
           ")";
}

} // namespace

std::string signatureText(const hos::HOSMethodInfo& method) { return textOf(method, false); }

std::string labelledSignatureText(const hos::HOSMethodInfo& method) { return textOf(method, true); }

} // namespace velmar
