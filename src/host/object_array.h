// Arrays of objects.
#pragma once

#include "host/array.h"
#include "host/interface.h"

// An array of that class whose elements are null. The caller owns it.
hxArray* hoCreateHOSMatrix(std::size_t rows, std::size_t columns, hos::id classId);

// Element `index` as a strong handle; null outside the array and for what is no object array.
hos::HOSInterfacePtr hoGetArrayElement(const hxArray* array, std::size_t index);

// Stores a strong handle.
void hoSetArrayElement(hxArray* array, std::size_t index, const hos::HOSInterfacePtr& object);

bool hoIsHOS(const hxArray* array);

// Whether a value where an object is expected says that there is none: an empty object array, a
// 0-by-0 double, or null, which reads as one.
bool hoMeansNoObject(const hxArray* array);

// The class that an object array was made for; the empty id for anything else.
hos::id hoGetClassID(const hxArray* array);
