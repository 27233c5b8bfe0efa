// What a class looks like, in tables.
#pragma once

#include "shell/value.h"

#include <string>

namespace velsh {

// Starts the server and gives its class: methods and events with their signatures, properties with
// type and access, enumerations with their constants, and the names of the built-in methods. Raises
// when the server can't be started.
std::string describeServer(const std::string& progId);

// The same of the class of a live object, which isn't asked for values.
std::string describeClass(const hxArray* object);

// The object itself: its properties with their values now, then the names of its methods and
// events. A property that can't be read gives the error's first line in place of a value.
std::string describeObject(const hxArray* object);

} // namespace velsh
