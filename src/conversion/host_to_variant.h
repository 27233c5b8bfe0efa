// Any host value as a VARIANT, and host arrays as SAFEARRAYs, decided by the value alone.
#pragma once

#include "conversion/host_classes.h"
#include "conversion/reference_holders.h"
#include "host/array.h"
#include "platform/com.h"
#include "platform/text.h"

#include <optional>

namespace axlink2 {

// Writes `value` to `base[row + col * rows]`; all three are 0 for a single VARIANT, whose old
// content isn't looked at. The target owns its text, array or reference. With `byRef` it refers to
// `holders`, or to the host array's own data, and both must outlive it. Without holders, which is
// the way of an array's elements, nothing is referred to. With `forceArray` a 1-by-1 value that
// isn't empty becomes an array.
//
// An empty or NaN double is a missing argument. A class without a conversion leaves VT_EMPTY, with
// the warning "VELMAR:COM:invalidargumenttype". Raises that identifier for complex arrays and for
// an empty value of a class that has no by-reference form, "VELMAR:class:InvalidHandle" or
// "VELMAR:COM:invalidmethodname" for an object that has ended or has no server, and what the array
// conversions raise.
void hostToVariant(VARIANT* base, const hxArray* value, bool byRef, int row, int col, int rows,
                   bool forceArray, ReferenceHolders* holders);

// A numeric or logical array with lower bounds of 0 and the host's dimensions. The caller owns it.
// Raises "VELMAR:COM:sparse_array_notsupported" and "VELMAR:COM:invalidargumenttype" (complex).
// Null when there is no memory, and, with a warning, for any other class.
SAFEARRAY* arrayToSafeArray(const hxArray* value);

// The same of a full, real array whose class is that of `row`.
SAFEARRAY* numericToSafeArray(const hxArray* value, const NumericClass& row);

// A cell as an array of VT_VARIANT or VT_BSTR. Raises "VELMAR:COM:cell_invalid_dimensions" for a
// cell, or an element, of more than two dimensions, and "VELMAR:COM:cell_invalid_contents" for a
// char matrix in it, for what is no text in an array of text, and for cells nested too deep.
SAFEARRAY* cellToSafeArray(const hxArray* value, VARTYPE vt);

// The text of a char array of any shape: a row as it stands, several rows each with a line feed
// behind it. None for null and for other classes.
std::optional<platform::OleString> charToWideText(const hxArray* value);

// The same of a char array as a new BSTR; null for an empty one. Raises E_OUTOFMEMORY as
// `_com_error`.
BSTR charToBstr(const hxArray* value);

} // namespace axlink2
