// Filling, trimming, reading and clearing the arguments of one call.
#include "dispatch/call_arguments.h"

#include "dispatch/untyped_argument.h"

namespace axlink2 {

void COMCallArguments::makeMoreSlots() {
    moreVariants_ = std::make_unique<VARIANT[]>(slots_);
    moreBacking_ = std::make_unique<Backing[]>(slots_);
    variants_ = moreVariants_.get();
    backing_ = moreBacking_.get();
}

void COMCallArguments::clearSlot(std::size_t slot) {
    VARIANT& owner = valueOf(slot);
    if (platform::ownsContent(owner.vt)) platform::clearVariant(owner);
    owner.vt = VT_EMPTY;
    backing_[slot].passedType = VT_EMPTY;
}

// Content that is claimed for the address that was lent is none.
bool COMCallArguments::isReplaced(std::size_t slot) const {
    const VARIANT& passed = variants_[slot];
    const Backing& behind = backing_[slot];
    if (!(behind.passedType & VT_BYREF) || (passed.vt & VT_BYREF) ||
        argumentOf(slot).converter->vartype != VT_VARIANT)
        return false;
    const bool isLoan = passed.byref == &behind.value || passed.byref == &behind.value.byref;
    return !isLoan || !platform::ownsContent(passed.vt);
}

void COMCallArguments::takeReplacedSlots() {
    lendsVariants_ = false;
    for (std::size_t slot = firstUsed_; slot < slots_; ++slot) {
        if (!isReplaced(slot)) continue;
        Backing& behind = backing_[slot];
        if (platform::ownsContent(behind.value.vt)) platform::clearVariant(behind.value);
        behind = {};
    }
}

void COMCallArguments::fill(std::int32_t inputCount, const hos::HOSValue* inputs) {
    const hos::HOSValue* input = inputs;
    const hos::HOSValue* const end = inputs + inputCount;
    for (const COMArgInfo& argument : arguments_) {
        if (!argument.input) {
            fillOutput(argument);
            continue;
        }
        if (argument.variable) return fillVariable(input + 1, end);
        if (++input >= end) return;
        const std::size_t slot = takeSlot();
        VARIANT& passed = variants_[slot];
        Backing& behind = backing_[slot];
        argument.converter->toVariant(*input, &passed, &behind.value, argument.byReference);
        // At once, as a later conversion may raise and every filled slot is cleared then. What owns
        // nothing has no reference to add.
        if (VARIANT& filled = argument.byReference ? behind.value : passed;
            platform::ownsContent(filled.vt))
            argument.converter->retainForPut(&filled);
        behind.passedType = passed.vt;
        noteLoan(argument, behind.passedType);
        if (argument.output) ++outputCount_;
    }
}

void COMCallArguments::fillVariable(const hos::HOSValue* input, const hos::HOSValue* end) {
    holders_ = std::make_unique<ReferenceHolders>();
    for (; input < end; ++input) {
        const std::size_t slot = takeSlot();
        untypedToVariant(variants_[slot], input->array(), *holders_);
        backing_[slot].passedType = variants_[slot].vt;
    }
}

void COMCallArguments::fillOutput(const COMArgInfo& argument) {
    const std::size_t slot = takeSlot();
    VARIANT& passed = variants_[slot];
    Backing& behind = backing_[slot];
    // No view is of a VT_HRESULT: that of a code is of a VT_ERROR.
    const VARTYPE vt = argument.converter->vartype;
    behind.value.vt = vt == VT_HRESULT ? VARTYPE{VT_ERROR} : vt;
    makeByRefVariant(&passed, &behind.value);
    behind.passedType = passed.vt;
    noteLoan(argument, behind.passedType);
    ++outputCount_;
}

void COMCallArguments::trimOutputs(std::size_t wanted) {
    for (std::size_t slot = slots_; slot-- > firstUsed_;) {
        if (!argumentOf(slot).output) continue;
        if (wanted > 0)
            --wanted;
        else
            clearSlot(slot);
    }
}

COMCallArguments::Output COMCallArguments::takeOutput() {
    while (nextOutput_ > 0) {
        const std::size_t slot = --nextOutput_;
        const COMArgInfo& argument = argumentOf(slot);
        if (!argument.output) continue;
        while (firstUsed_ > slot) // behind an input that wasn't given: empty
            takeSlot();
        return {&valueOf(slot), argument.converter};
    }
    return {};
}

} // namespace axlink2
