// Filling, trimming, reading and clearing the arguments of one call.
#include "dispatch/call_arguments.h"

namespace axlink2 {

void COMCallArguments::makeMoreSlots() {
    moreVariants_ = std::make_unique<VARIANT[]>(2 * slots_);
    moreTypes_ = std::make_unique<VARTYPE[]>(slots_);
    variants_ = moreVariants_.get();
    backing_ = variants_ + slots_;
    passedTypes_ = moreTypes_.get();
}

void COMCallArguments::clearSlot(std::size_t slot) {
    VARIANT& owner = valueOf(slot);
    if (platform::ownsContent(owner.vt)) VariantClear(&owner);
    owner.vt = VT_EMPTY;
    passedTypes_[slot] = VT_EMPTY;
}

void COMCallArguments::fill(std::int32_t inputCount, const hos::HOSValue* inputs) {
    std::int32_t given = 0;
    for (const COMArgInfo& argument : arguments_) {
        if (!argument.input) {
            fillOutput(argument);
            continue;
        }
        if (++given >= inputCount) return;
        const std::size_t slot = takeSlot();
        VARIANT& passed = variants_[slot];
        VARIANT& behind = backing_[slot];
        argument.converter->toVariant(inputs[given], &passed, &behind, argument.byReference);
        // At once, as a later conversion may raise and every filled slot is cleared then.
        argument.converter->retainForPut(argument.byReference ? &behind : &passed);
        passedTypes_[slot] = passed.vt;
        if (argument.output) ++outputCount_;
    }
}

void COMCallArguments::fillOutput(const COMArgInfo& argument) {
    const std::size_t slot = takeSlot();
    backing_[slot].vt = argument.converter->vartype;
    makeByRefVariant(&variants_[slot], &backing_[slot]);
    passedTypes_[slot] = variants_[slot].vt;
    ++outputCount_;
}

void COMCallArguments::trimOutputs(std::size_t wanted) {
    for (std::size_t slot = slots_; slot-- > firstUsed_;) {
        if (!arguments_[slots_ - 1 - slot].output) continue;
        if (wanted > 0)
            --wanted;
        else
            clearSlot(slot);
    }
}

COMCallArguments::Output COMCallArguments::takeOutput() {
    while (nextOutput_ > 0) {
        const std::size_t slot = --nextOutput_;
        const COMArgInfo& argument = arguments_[slots_ - 1 - slot];
        if (!argument.output) continue;
        while (firstUsed_ > slot) // behind an input that wasn't given: empty
            takeSlot();
        return {&valueOf(slot), argument.converter};
    }
    return {};
}

} // namespace axlink2
