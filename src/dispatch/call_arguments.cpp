// Filling, trimming, reading and clearing the arguments of one call.
#include "dispatch/call_arguments.h"

#include "platform/holders.h"

namespace axlink2 {

COMCallArguments::COMCallArguments(const std::vector<COMArgInfo>& arguments)
    : arguments_(arguments), firstUsed_(arguments.size()), nextOutput_(arguments.size()) {
    const std::size_t count = slots();
    if (count <= ownSlots) return;
    moreVariants_ = std::make_unique<VARIANT[]>(2 * count);
    moreTypes_ = std::make_unique<VARTYPE[]>(count);
    variants_ = moreVariants_.get();
    backing_ = variants_ + count;
    passedTypes_ = moreTypes_.get();
}

COMCallArguments::~COMCallArguments() {
    for (std::size_t slot = firstUsed_; slot < slots(); ++slot)
        if (VARIANT& owner = valueOf(slot); platform::ownsContent(owner.vt)) VariantClear(&owner);
}

void COMCallArguments::takeSlot() {
    --firstUsed_;
    variants_[firstUsed_] = VARIANT{};
    backing_[firstUsed_] = VARIANT{};
    passedTypes_[firstUsed_] = VT_EMPTY;
}

VARIANT& COMCallArguments::valueOf(std::size_t slot) {
    const VARTYPE passed = passedTypes_[slot];
    if (!(passed & VT_BYREF)) return variants_[slot];
    // A DECIMAL is as large as the VARIANT that holds it, and a server may write all of it.
    if (passed == (VT_BYREF | VT_DECIMAL)) backing_[slot].vt = VT_DECIMAL;
    return backing_[slot];
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
        takeSlot();
        VARIANT& passed = variants_[firstUsed_];
        VARIANT& behind = backing_[firstUsed_];
        argument.converter->toVariant(inputs[given], &passed, &behind, argument.byReference);
        // At once, as a later conversion may raise and every filled slot is cleared then.
        argument.converter->retainForPut(argument.byReference ? &behind : &passed);
        passedTypes_[firstUsed_] = passed.vt;
        if (argument.output) ++outputCount_;
    }
}

void COMCallArguments::fillOutput(const COMArgInfo& argument) {
    takeSlot();
    backing_[firstUsed_].vt = argument.converter->vartype;
    makeByRefVariant(&variants_[firstUsed_], &backing_[firstUsed_]);
    passedTypes_[firstUsed_] = variants_[firstUsed_].vt;
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
        while (firstUsed_ > slot) // behind an input that wasn't given: empty
            takeSlot();
        return {&valueOf(slot), argument.converter};
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
