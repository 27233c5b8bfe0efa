// Finding the source interface of a running object through its type library.
#pragma once

#include "comruntime/server_call.h"

#include <optional>

namespace axlink2 {

// The IID of the default source interface of the first coclass that lists the interface; GUID_NULL
// when there is none, or what would tell can't be read.
GUID findSourceInterface(ITypeInfo* interfaceType);

// The library that the type lives in; empty when it can't be had.
ServerPtr<ITypeLib> containingLibrary(ITypeInfo* type);

// How many types a library says that it has; no more than are worth looking at, as a count that
// lies must not cost for ever.
UINT typeCount(ITypeLib* library);

// The type at `index` of a library; empty when it can't be had.
ServerPtr<ITypeInfo> typeAt(ITypeLib* library, UINT index);

// The flags of the interface at `index` of a coclass; none when they can't be had.
std::optional<int> implementationFlags(ITypeInfo* coclass, UINT index);

// The interface at `index` of those that a type implements or inherits; empty when it can't be had.
ServerPtr<ITypeInfo> implementedType(ITypeInfo* type, UINT index);

} // namespace axlink2
