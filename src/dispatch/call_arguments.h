// The arguments of one call: the working block that `rgvarg` points into.
#pragma once

#include "conversion/arg_converter.h"
#include "conversion/reference_holders.h"
#include "host/value.h"
#include "platform/holders.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace axlink2 {

// What a call must know of one declared parameter.
struct COMArgInfo {
    bool input;
    bool output;
    bool optional;
    bool byReference;
    // The last one of a method that takes any number of arguments: each input from here on is one.
    bool variable;
    ArgVarConverter* converter;
};

// Slots run against the declaration, as `rgvarg` does: the first parameter lies in the last slot,
// and the filled slots are always the top ones. Clears every filled slot at the end.
class COMCallArguments {
  public:
    // Room for all of `arguments`, which must outlive the block, and for `variable` more.
    explicit COMCallArguments(const std::vector<COMArgInfo>& arguments, std::size_t variable = 0)
        : arguments_(arguments), slots_(arguments.size() + variable), firstUsed_(slots_),
          nextOutput_(slots_) {
        if (slots_ > ownSlots) makeMoreSlots();
    }
    COMCallArguments(const COMCallArguments&) = delete;
    COMCallArguments& operator=(const COMCallArguments&) = delete;
    ~COMCallArguments() {
        takeReplaced();
        for (std::size_t slot = firstUsed_; slot < slots_; ++slot)
            if (VARIANT& owner = valueOf(slot); platform::ownsContent(owner.vt))
                platform::clearVariant(owner);
    }

    // Fills slots from `inputs[1]` on, up to the first declared input that wasn't given. Raises
    // what the converters raise.
    void fill(std::int32_t inputCount, const hos::HOSValue* inputs);
    // After the call: a server that was given a VARIANT by reference may have put another one into
    // the slot itself, which then is the value.
    void takeReplaced() {
        if (lendsVariants_) takeReplacedSlots();
    }
    // Clears what came back in [out] parameters behind the first `wanted` ones.
    void trimOutputs(std::size_t wanted);
    // What stands in the slot of the next [out] parameter, in declaration order, and its converter;
    // null when there is none left.
    struct Output {
        VARIANT* value = nullptr;
        ArgVarConverter* converter = nullptr;
    };
    Output takeOutput();

    DISPPARAMS params() {
        return {count() ? &variants_[firstUsed_] : nullptr, nullptr, count(), 0};
    }
    UINT count() const { return static_cast<UINT>(slots_ - firstUsed_); }
    std::size_t outputCount() const { return outputCount_; }

  private:
    // What stands behind a slot.
    struct Backing {
        VARIANT value;      // of a by-reference slot
        VARTYPE passedType; // of the slot, as the server was given it
    };

    void makeMoreSlots();
    // Makes the next slot a used one, empty.
    std::size_t takeSlot() {
        const std::size_t slot = --firstUsed_;
        variants_[slot] = VARIANT{};
        backing_[slot] = Backing{};
        return slot;
    }
    const COMArgInfo& argumentOf(std::size_t slot) const {
        return arguments_[std::min(slots_ - 1 - slot, arguments_.size() - 1)];
    }
    void fillOutput(const COMArgInfo& argument);
    void fillVariable(const hos::HOSValue* input, const hos::HOSValue* end);
    // Where the value of a slot is: in it, or behind it. What the server made of the slot's own
    // type doesn't count.
    VARIANT& valueOf(std::size_t slot) {
        Backing& behind = backing_[slot];
        if (!(behind.passedType & VT_BYREF)) return variants_[slot];
        // A DECIMAL is as large as the VARIANT that holds it, and a server may write all of it.
        if (behind.passedType == (VT_BYREF | VT_DECIMAL)) behind.value.vt = VT_DECIMAL;
        return behind.value;
    }
    void clearSlot(std::size_t slot);
    void noteLoan(const COMArgInfo& argument, VARTYPE passed) {
        lendsVariants_ |= argument.converter->vartype == VT_VARIANT && (passed & VT_BYREF);
    }
    void takeReplacedSlots();
    bool isReplaced(std::size_t slot) const;

    // Most calls have few arguments and need no allocation.
    static constexpr std::size_t ownSlots = 6;

    const std::vector<COMArgInfo>& arguments_;
    const std::size_t slots_;
    std::size_t firstUsed_;
    std::size_t outputCount_ = 0;
    std::size_t nextOutput_; // slot that outputs were collected down to
    bool lendsVariants_ = false;
    VARIANT* variants_ = ownVariants_;
    Backing* backing_ = ownBacking_;

    // Only the used slots are ever written or read.
    VARIANT ownVariants_[ownSlots];
    Backing ownBacking_[ownSlots];
    std::unique_ptr<VARIANT[]> moreVariants_;
    std::unique_ptr<Backing[]> moreBacking_;
    std::unique_ptr<ReferenceHolders> holders_; // behind arguments of any type
};

} // namespace axlink2
