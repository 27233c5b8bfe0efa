// Filling, trimming, reading and clearing the arguments of one call.
#include "dispatch/call_arguments.h"

#include "platform/holders.h"

namespace axlink2 {

COMCallArguments::COMCallArguments(const std::vector<COMArgInfo>& arguments)
    : arguments_(arguments), firstUsed_(arguments.size()), nextOutput_(arguments.size()),
      variants_(arguments.size()), backing_(arguments.size()) {}

COMCallArguments::~COMCallArguments() {
    for (std::size_t slot = firstUsed_; slot < slots(); ++slot)
        clearSlot(slot);
}

void COMCallArguments::clearSlot(std::size_t slot) {
    VARIANT& owner = variants_[slot].vt & VT_BYREF ? backing_[slot] : variants_[slot];
    if (platform::ownsContent(owner.vt)) VariantClear(&owner);
    variants_[slot].vt = owner.vt = VT_EMPTY;
}

void COMCallArguments::fill(std::int32_t inputCount, const hos::HOSValue* inputs) {
    std::int32_t given = 0;
    for (const COMArgInfo& argument : arguments_) {
        if (!argument.input) {
            fillOutput(argument);
            continue;
        }
        if (++given >= inputCount) return;
        --firstUsed_;
        VARIANT& passed = variants_[firstUsed_];
        VARIANT& behind = backing_[firstUsed_];
        argument.converter->toVariant(inputs[given], &passed, &behind, argument.byReference);
        // At once, as a later conversion may raise and every filled slot is cleared then.
        argument.converter->retainForPut(argument.byReference ? &behind : &passed);
        if (argument.output) ++outputCount_;
    }
}

void COMCallArguments::fillOutput(const COMArgInfo& argument) {
    --firstUsed_;
    backing_[firstUsed_].vt = argument.converter->vartype;
    makeByRefVariant(&variants_[firstUsed_], &backing_[firstUsed_]);
    ++outputCount_;
}

void COMCallArguments::trimOutputs(std::size_t wanted) {
    for (std::size_t slot = slots(); slot-- > firstUsed_;) {
        if (!arguments_[slots() - 1 - slot].output) continue;
        if (wanted > 0)
            --wanted;
        else
            clearSlot(slot);
    }
}

COMCallArguments::Output COMCallArguments::takeOutput() {
    while (nextOutput_ > 0) {
        const std::size_t slot = --nextOutput_;
        const COMArgInfo& argument = arguments_[slots() - 1 - slot];
        if (!argument.output) continue;
        VARIANT& passed = variants_[slot];
        return {passed.vt & VT_BYREF ? &backing_[slot] : &passed, argument.converter};
    }
    return {};
}

DISPPARAMS COMCallArguments::params() {
    DISPPARAMS params{};
    params.cArgs = count();
    params.rgvarg = params.cArgs ? &variants_[firstUsed_] : nullptr;
    return params;
}

} // namespace axlink2
