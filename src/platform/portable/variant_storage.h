// How a VARIANT or an array element keeps its value, by kind: what clearing and copying have to do.
#pragma once

#include "platform/portable/unknown.h"

enum class VariantStorage : std::uint8_t { invalid, plain, text, object, array };

// Kinds without modifiers, VT_EMPTY to VT_UINT.
inline constexpr VariantStorage scalarStorage[VT_VOID] = {
    VariantStorage::plain,   // VT_EMPTY
    VariantStorage::plain,   // VT_NULL
    VariantStorage::plain,   // VT_I2
    VariantStorage::plain,   // VT_I4
    VariantStorage::plain,   // VT_R4
    VariantStorage::plain,   // VT_R8
    VariantStorage::plain,   // VT_CY
    VariantStorage::plain,   // VT_DATE
    VariantStorage::text,    // VT_BSTR
    VariantStorage::object,  // VT_DISPATCH
    VariantStorage::plain,   // VT_ERROR
    VariantStorage::plain,   // VT_BOOL
    VariantStorage::plain,   // VT_VARIANT: meaningful by reference only, and owning nothing
    VariantStorage::object,  // VT_UNKNOWN
    VariantStorage::plain,   // VT_DECIMAL
    VariantStorage::invalid, // 15
    VariantStorage::plain,   // VT_I1
    VariantStorage::plain,   // VT_UI1
    VariantStorage::plain,   // VT_UI2
    VariantStorage::plain,   // VT_UI4
    VariantStorage::plain,   // VT_I8
    VariantStorage::plain,   // VT_UI8
    VariantStorage::plain,   // VT_INT
    VariantStorage::plain,   // VT_UINT
};

// Records and kinds that only type descriptions know are invalid in a VARIANT.
inline VariantStorage storageOf(VARTYPE vt) noexcept {
    if (vt < VT_VOID) [[likely]]
        return scalarStorage[vt];
    const auto base = static_cast<VARTYPE>(vt & VT_TYPEMASK);
    if ((vt & (VT_VECTOR | VT_RESERVED)) || base >= VT_VOID || base <= VT_NULL ||
        scalarStorage[base] == VariantStorage::invalid)
        return VariantStorage::invalid;
    return vt & VT_BYREF ? VariantStorage::plain : VariantStorage::array;
}

// A VARIANT with the value that `source` holds or refers to, owning nothing: valid while `source`
// is, and not to be cleared. E_INVALIDARG for a null reference, for one to what can't be referred
// to, and for a VARIANT that refers to a VARIANT that refers to another.
HRESULT viewThroughReference(const VARIANT& source, VARIANT& view) noexcept;
