// VARIANTs and host arrays of every kind, drawn from an input.
#pragma once

#include "fuzz/byte_source.h"
#include "host/array.h"
#include "platform/holders.h"

#include <deque>
#include <functional>

namespace fuzz {

// Gives a new object with one reference, which may be null.
using MakeObject = std::function<IDispatch*()>;

// VARIANTs as a hostile server may hand them out: well made ones, and by-reference ones to what
// isn't: arrays that lie about themselves, VARIANTs that lead back to themselves, null pointers.
// What is referred to lives as long as this does.
class VariantWorld {
  public:
    // All three outlive it.
    VariantWorld(ByteSource& source, MakeObject makeObject);
    VariantWorld(const VariantWorld&) = delete;
    VariantWorld& operator=(const VariantWorld&) = delete;
    ~VariantWorld();

    // Fills an empty VARIANT; what it owns goes with `VariantClear`.
    void fill(VARIANT& v, unsigned depth = 0);
    // A VARIANT of this world's own, filled with what `VariantClear` could not free.
    VARIANT& hostile();
    // A by-reference VARIANT to something in this world.
    void refer(VARIANT& v, unsigned depth);

  private:
    void fillArray(VARIANT& v, unsigned depth);
    SAFEARRAY* newLyingArray();

    ByteSource& source_;
    MakeObject makeObject_;
    std::deque<VARIANT> cells_;
    std::deque<VARIANT> hostile_;
    std::deque<SAFEARRAY*> lyingArrays_;
    unsigned left_; // how many more VARIANTs it makes
};

// Any array of the host.
harray::unique_array hostValue(ByteSource& source, const MakeObject& makeObject,
                               unsigned depth = 0);

} // namespace fuzz
