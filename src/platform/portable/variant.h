// VARIANT: making, clearing, copying, and conversion to another kind.
// Records (VT_RECORD) are not offered: they are DISP_E_BADVARTYPE.
#pragma once

#include "platform/portable/unknown.h"

STDAPI_(void) VariantInit(VARIANTARG* variant);

// Releases what the VARIANT owns and sets VT_EMPTY; what VT_BYREF refers to is left alone. A locked
// array gives DISP_E_ARRAYISLOCKED, an impossible kind DISP_E_BADVARTYPE; both change nothing.
STDAPI VariantClear(VARIANTARG* variant);

// Clears the destination and gives it an own copy: text and arrays are duplicated, objects get a
// reference, VT_BYREF stays one. A null BSTR is copied as empty text.
STDAPI VariantCopy(VARIANTARG* destination, const VARIANTARG* source);

// The same, following VT_BYREF (one level inside VT_BYREF | VT_VARIANT too), so that the copy
// stands alone. Null references give E_INVALIDARG.
STDAPI VariantCopyInd(VARIANT* destination, const VARIANTARG* source);

inline constexpr USHORT VARIANT_NOVALUEPROP = 0x01; // objects aren't asked for their value
inline constexpr USHORT VARIANT_ALPHABOOL = 0x02;   // BOOL as "True" and "False"
inline constexpr USHORT VARIANT_NOUSEROVERRIDE = 0x04;
inline constexpr USHORT VARIANT_LOCALBOOL = 0x10; // as VARIANT_ALPHABOOL

// Converts to `vt` (any automation type), following VT_BYREF; an object is asked for its default
// property. Rounds halves to even, then checks the range. DISP_E_OVERFLOW, DISP_E_TYPEMISMATCH and
// DISP_E_BADVARTYPE leave the destination as it was; it may be the source.
STDAPI VariantChangeType(VARIANTARG* destination, const VARIANTARG* source, USHORT flags,
                         VARTYPE vt);

// As VariantChangeType. Texts have the form of US English, whatever `locale` says.
STDAPI VariantChangeTypeEx(VARIANTARG* destination, const VARIANTARG* source, LCID locale,
                           USHORT flags, VARTYPE vt);
