// The numeric classes of the host and the COM types that they become.
#pragma once

#include "host/array.h"
#include "platform/com.h"

#include <cstddef>

namespace axlink2 {

struct NumericClass {
    hxClassID id;
    VARTYPE vartype;
    std::size_t elementSize; // bytes in a SAFEARRAY; the host's logical takes one byte
};

// The row of a host class; null for a class that has none.
const NumericClass* numericClassOf(hxClassID id);

// The row of an element type on the way to the host; null for a type that has no numeric class.
const NumericClass* numericClassOf(VARTYPE vartype);

} // namespace axlink2
