// From a description in plain data to a type library.
#pragma once

#include "platform/holders.h"
#include "servers/kit/type_spec.h"

namespace kit {

// A library in memory, version 1.0, that says what `spec` says. Raises ComFailure for what the
// system refuses, std::out_of_range for a name that is no type of the library.
platform::ComPtr<ITypeLib> makeTypeLibrary(const LibrarySpec& spec);

} // namespace kit
