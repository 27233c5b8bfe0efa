// Reading a VARIANT as one type, and the VARIANT field of each scalar type.
#pragma once

#include "platform/holders.h"

#include <cstdint>

namespace axlink2 {

// Where a C++ type lives in a VARIANT.
template <class T>
struct VariantField;

#define AXLINK2_VARIANT_FIELD(T, VT, FIELD)                                                        \
    template <>                                                                                    \
    struct VariantField<T> {                                                                       \
        static constexpr VARTYPE vt = VT;                                                          \
        static T get(const VARIANT& v) { return static_cast<T>(v.FIELD); }                         \
        static void set(VARIANT& v, T value) {                                                     \
            v.vt = VT;                                                                             \
            v.FIELD = static_cast<decltype(v.FIELD)>(value);                                       \
        }                                                                                          \
    }

AXLINK2_VARIANT_FIELD(signed char, VT_I1, cVal);
AXLINK2_VARIANT_FIELD(unsigned char, VT_UI1, bVal);
AXLINK2_VARIANT_FIELD(std::int16_t, VT_I2, iVal);
AXLINK2_VARIANT_FIELD(std::uint16_t, VT_UI2, uiVal);
AXLINK2_VARIANT_FIELD(std::int32_t, VT_I4, lVal);
AXLINK2_VARIANT_FIELD(std::uint32_t, VT_UI4, ulVal);
AXLINK2_VARIANT_FIELD(std::int64_t, VT_I8, llVal);
AXLINK2_VARIANT_FIELD(std::uint64_t, VT_UI8, ullVal);
AXLINK2_VARIANT_FIELD(float, VT_R4, fltVal);
AXLINK2_VARIANT_FIELD(double, VT_R8, dblVal);

#undef AXLINK2_VARIANT_FIELD

// Reads a VARIANT as type `target`, changing a copy of it when it is of another type. The VARIANT
// stays as it is. Raises `_com_error` when the copy or the change fails.
class ReadAs {
  public:
    ReadAs(const VARIANT& v, VARTYPE target) : value_(&v), changed_(v.vt != target) {
        if (changed_) change(v, target);
    }
    ReadAs(const ReadAs&) = delete;
    ReadAs& operator=(const ReadAs&) = delete;
    ~ReadAs() {
        if (changed_ && platform::ownsContent(copy_.vt)) platform::clearVariant(copy_);
    }

    const VARIANT& operator*() const { return *value_; }
    const VARIANT* operator->() const { return value_; }
    bool wasChanged() const { return changed_; }

  private:
    void change(const VARIANT& v, VARTYPE target);

    const VARIANT* value_;
    const bool changed_;
    VARIANT copy_;
};

// The 32 bits of a code: those of a VT_ERROR, a VT_HRESULT or an integer of that width, also behind
// references; anything else changed to VT_I4. Raises as `ReadAs`.
LONG codeOf(const VARIANT& v);

} // namespace axlink2
