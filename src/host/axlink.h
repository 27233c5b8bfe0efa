// Two settings of the older sibling module, process-wide. Not zero means true; both start false.
#pragma once

namespace axlink {

// A column of N elements goes out as a SAFEARRAY of one dimension.
unsigned char SafeArraySingleDim();
// A cell goes out as a VARIANT that refers to the SAFEARRAY.
unsigned char PassSafeArrayByRef();

void setSafeArraySingleDim(bool on);
void setPassSafeArrayByRef(bool on);

} // namespace axlink
