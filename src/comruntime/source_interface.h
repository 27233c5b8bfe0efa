// Finding the source interface of a running object through its type library.
#pragma once

#include "comruntime/server_call.h"

#include <functional>
#include <optional>

namespace axlink2 {

// The IID of the default source interface of the first coclass that lists the interface; GUID_NULL
// when there is none, or what would tell can't be read.
GUID findSourceInterface(ITypeInfo* interfaceType);

// The library that the type lives in; empty when it can't be had.
ServerPtr<ITypeLib> containingLibrary(ITypeInfo* type);

// Shows the coclasses of the library that the interface lives in, each with its attributes and the
// interface's IID, until `visit` has seen enough and answers true. What can't be read is left out.
using CoclassVisitor =
    std::function<bool(ITypeInfo* coclass, const TYPEATTR& attributes, const GUID& iid)>;
void visitCoclasses(ITypeInfo* interfaceType, const CoclassVisitor& visit);

// The flags of the interface at `index` of a coclass; none when they can't be had.
std::optional<int> implementationFlags(ITypeInfo* coclass, UINT index);

// The interface at `index` of those that a type implements or inherits; empty when it can't be had.
ServerPtr<ITypeInfo> implementedType(ITypeInfo* type, UINT index);

} // namespace axlink2
