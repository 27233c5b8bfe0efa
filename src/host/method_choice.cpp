// Choosing among the methods of one name by the inputs.
#include "host/embedding.h"
#include "host/host_messages.h"
#include "host/method_group.h"
#include "host/signature.h"

#include <algorithm>

namespace velmar {

MethodPlan::MethodPlan(hos::HOSMethodInfo& described) : method(&described) {
    const auto* signature = dynamic_cast<const hos::Signature*>(described.getSignature());
    if (!signature) return; // without one of the host's signatures nothing fits
    for (hos::id type : signature->inputs)
        inputs.push_back(&typeEntry(type));
    for (hos::id type : signature->outputs)
        outputs.push_back(&typeEntry(type));
    variableInput = signature->variableInput && !inputs.empty();
    variableOutput = signature->variableOutput && !outputs.empty();
    const std::size_t absent =
        std::max(signature->optionalInputs, std::size_t{variableInput ? 1u : 0u});
    required = inputs.size() - std::min(absent, inputs.size());
    callable = described.getMemberAccess() == 0;
    precedence = described.getPrecedence();
}

bool MethodGroup::isCallable() const {
    return std::ranges::any_of(plans_, [](const MethodPlan& plan) { return plan.callable; });
}

namespace {

using Fits = boost::container::small_vector<Fit, 8>;

// Whether a program may call the method with these inputs; if so, how closely each fits.
bool measure(const MethodPlan& plan, Inputs inputs, Fits* fits) {
    if (!plan.callable || !plan.takes(inputs.size())) return false;
    if (fits) fits->clear();
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        const Fit fit = plan.input(i).fit(harray::detail::reading(inputs[i]));
        if (fit == Fit::None) return false;
        if (fits) fits->push_back(fit);
    }
    return true;
}

} // namespace

const MethodPlan* MethodGroup::closest(hos::Precedence precedence, Inputs inputs,
                                       std::size_t wanted) const {
    const MethodPlan* best = nullptr;
    bool bestIsExact = false;
    Fits bestFits;
    Fits fits;
    for (const MethodPlan& plan : plans_) {
        if (plan.precedence != precedence) continue;
        const bool isExact = inputs.size() >= plan.inputs.size();
        if (!plan.gives(wanted) || (best && bestIsExact && !isExact)) continue;
        if (!measure(plan, inputs, &fits)) continue;
        if (!best || (isExact && !bestIsExact) ||
            std::ranges::lexicographical_compare(fits, bestFits)) {
            best = &plan;
            bestIsExact = isExact;
            bestFits.swap(fits);
        }
    }
    return best;
}

const MethodPlan& MethodGroup::choose(Inputs inputs, int outputCount) const {
    if (plans_.size() == 1 && measure(plans_.front(), inputs, nullptr)) return plans_.front();
    const auto wanted = static_cast<std::size_t>(std::max(outputCount, 0));
    for (const auto precedence :
         {hos::Precedence::First, hos::Precedence::Usual, hos::Precedence::Last}) {
        if (const MethodPlan* plan = closest(precedence, inputs, wanted)) return *plan;
        if (const MethodPlan* plan = closest(precedence, inputs, 0))
            return *plan; // says that it gives less
    }
    std::string candidates;
    for (const MethodPlan& plan : plans_)
        if (plan.callable) candidates += "\n  " + signatureText(*plan.method);
    fail(keys::NoMatchingSignature, name_.str(), candidates);
}

} // namespace velmar
