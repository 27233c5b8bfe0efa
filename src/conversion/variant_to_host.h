// Any VARIANT or SAFEARRAY as a host array. Conversion in this direction doesn't fail: what can't
// be converted is a NaN, with a warning at most.
#pragma once

#include "host/array.h"
#include "host/interface.h"
#include "platform/com.h"

namespace axlink2 {

struct VariantConversionContext {
    bool warn = false;               // whether falling back to a NaN warns
    hos::HOSInterfacePtr owner = {}; // the object that the value came from; may be null
    int depth = 0;                   // of arrays in arrays
    int* referencesLeft = nullptr;   // to arrays in arrays that are followed; null outside arrays
};

// `*out` becomes a new array that the caller owns. A by-reference `*v` is replaced by a copy of
// what it refers to, and dates and decimals by their text; `*v` stays the caller's, an interface
// in it too: the new object has a reference of its own. Gives 1 for a real conversion, 0 for a
// fallback; a null `v` leaves `*out` alone.
int variantToHost(VARIANT* v, hxArray** out, const VariantConversionContext& context);

// The same for a VARIANT that is neither by-reference nor an array.
int variantScalarToHost(VARIANT* v, hxArray** out, const VariantConversionContext& context);

// A numeric array of one dimension, as a row, or of two. Warnings "VELMAR:COM:invalidargumenttype"
// and "VELMAR:COM:unsupported_safearray_type". The array stays the caller's.
int safeArrayToNumeric(SAFEARRAY* array, VARTYPE elementType, hxArray** out,
                       const VariantConversionContext& context);

// Whether an array of such elements becomes a cell: texts, VARIANTs, interfaces.
bool becomesCell(VARTYPE elementType);

// An array of texts, VARIANTs or interfaces as a cell of the same dimensions; `declared` is what it
// holds when it doesn't say so itself. The context says how many references it may follow.
void safeArrayToCell(SAFEARRAY* array, VARTYPE declared, hxArray** out,
                     const VariantConversionContext& context);

// A bare IUnknown as an object, which it is when it offers IDispatch; a NaN otherwise.
int unknownToHost(const VARIANT& v, hxArray** out, const VariantConversionContext& context);

// Whether `variantToHost` replaces what stands in `v`.
bool isChangedByConversion(const VARIANT& v);

// `*out` becomes a NaN. Gives 0.
int fallBackToNaN(hxArray** out);

} // namespace axlink2
