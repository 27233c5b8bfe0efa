// SAFEARRAY: creation, shape, locks, elements, copies.
#pragma once

#include "platform/portable/unknown.h"

// New zeroed arrays for SafeArrayDestroy; null when the element kind, the shape or memory forbid
// it.
STDAPI_(SAFEARRAY*) SafeArrayCreate(VARTYPE vt, UINT dims, SAFEARRAYBOUND* bounds);
STDAPI_(SAFEARRAY*) SafeArrayCreateEx(VARTYPE vt, UINT dims, SAFEARRAYBOUND* bounds, PVOID extra);
STDAPI_(SAFEARRAY*) SafeArrayCreateVector(VARTYPE vt, LONG lowerBound, ULONG elements);
STDAPI_(SAFEARRAY*)
SafeArrayCreateVectorEx(VARTYPE vt, LONG lowerBound, ULONG elements, PVOID extra);

// The steps of the above: a descriptor without data, then its data.
STDAPI SafeArrayAllocDescriptor(UINT dims, SAFEARRAY** array);
STDAPI SafeArrayAllocDescriptorEx(VARTYPE vt, UINT dims, SAFEARRAY** array);
STDAPI SafeArrayAllocData(SAFEARRAY* array);

// Release elements, data and descriptor; DISP_E_ARRAYISLOCKED while a lock is held. Null is fine
// for SafeArrayDestroy and SafeArrayDestroyDescriptor.
STDAPI SafeArrayDestroy(SAFEARRAY* array);
STDAPI SafeArrayDestroyData(SAFEARRAY* array);
STDAPI SafeArrayDestroyDescriptor(SAFEARRAY* array);

// Resizes the last dimension; elements that stay keep their values.
STDAPI SafeArrayRedim(SAFEARRAY* array, SAFEARRAYBOUND* bound);

// Shape. Dimensions count from 1; an unknown one is DISP_E_BADINDEX.
STDAPI_(UINT) SafeArrayGetDim(SAFEARRAY* array);
STDAPI_(UINT) SafeArrayGetElemsize(SAFEARRAY* array);
STDAPI SafeArrayGetLBound(SAFEARRAY* array, UINT dim, LONG* bound);
STDAPI SafeArrayGetUBound(SAFEARRAY* array, UINT dim, LONG* bound);
STDAPI SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* vt);
STDAPI SafeArrayGetIID(SAFEARRAY* array, GUID* iid);

// Locks; SafeArrayAccessData also gives the data's address.
STDAPI SafeArrayLock(SAFEARRAY* array);
STDAPI SafeArrayUnlock(SAFEARRAY* array);
STDAPI SafeArrayAccessData(SAFEARRAY* array, void** data);
STDAPI SafeArrayUnaccessData(SAFEARRAY* array);

// One element, `indices` first dimension first. GetElement fills *element with a copy that is the
// caller's; PutElement stores a copy of `element`: the text or object itself, not its address.
STDAPI SafeArrayGetElement(SAFEARRAY* array, LONG* indices, void* element);
STDAPI SafeArrayPutElement(SAFEARRAY* array, LONG* indices, void* element);
STDAPI SafeArrayPtrOfIndex(SAFEARRAY* array, LONG* indices, void** address);

// An own copy, text and references included; CopyData wants two arrays of one shape.
STDAPI SafeArrayCopy(SAFEARRAY* source, SAFEARRAY** copy);
STDAPI SafeArrayCopyData(SAFEARRAY* source, SAFEARRAY* target);

// Bytes of a BSTR as a VT_UI1 vector, and back.
STDAPI VectorFromBstr(BSTR bstr, SAFEARRAY** vector);
STDAPI BstrFromVector(SAFEARRAY* vector, BSTR* bstr);
