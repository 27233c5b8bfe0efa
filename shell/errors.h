// Errors as values of a program.
#pragma once

#include "host/embedding.h"
#include "shell/value.h"

namespace velsh {

// A struct with the fields "message" and "identifier".
Value errorStruct(const velmar::ErrorText& error);
// Raises what such a struct says.
[[noreturn]] void rethrowStruct(const hxArray* error);

} // namespace velsh
