// Interned ids from plain text.
#pragma once

#include "host/interned.h"

#include <string_view>

namespace axlink2 {

// The id of `name`, interned now if need be; the empty id for an empty text.
hos::id internedId(std::string_view name);

// The id of `name` if anybody has interned it; the empty id otherwise, and for an empty text.
hos::id knownId(const char* name);

} // namespace axlink2
