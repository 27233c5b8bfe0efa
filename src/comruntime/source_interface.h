// Finding the source interface of a running object through its type library.
#pragma once

#include "platform/com.h"
#include "platform/holders.h"

namespace axlink2 {

// The IID of the default source interface of the first coclass that lists the interface; GUID_NULL
// when there is none, or what would tell can't be read.
GUID findSourceInterface(ITypeInfo* interfaceType);

// The library that the type lives in; empty when it can't be had.
platform::ComPtr<ITypeLib> containingLibrary(ITypeInfo* type);

// The interface at `index` of those that a type implements or inherits; empty when it can't be had.
platform::ComPtr<ITypeInfo> implementedType(ITypeInfo* type, UINT index);

} // namespace axlink2
