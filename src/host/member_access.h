// Properties of objects by name, through the host's access checks.
#pragma once

#include "host/array.h"
#include "host/interface.h"
#include "host/live_object.h"

namespace velmar {

// The property's value. `name` is the name's id, empty when it was never interned, and `text` its
// text for errors. Raises for an unknown property and for one that can't be read.
harray::unique_array readProperty(hos::HOSInterface& object, hos::id name, const char* text);

// Converts `value` to the property's type and writes it. Raises likewise, and when the value can't
// be converted.
void writeProperty(hos::HOSInterface& object, hos::id name, const char* text, const hxArray* value);

} // namespace velmar
