// What the live class of an object offers.
#pragma once

#include "host/class.h"
#include "shell/value.h"

#include <string>
#include <vector>

namespace velsh {

// The class of the first object; null when it has ended or there is none.
hos::HOSClass* classOf(const hxArray* object);
// Methods that a program may call, listed or not, in the order of the class; the infos are the
// class's.
std::vector<hos::HOSMethodInfo*> callableMethods(hos::HOSClass& objectClass);
std::vector<hos::HOSPropInfo*> properties(hos::HOSClass& objectClass);
std::vector<hos::HOSEventInfo*> events(hos::HOSClass& objectClass);

} // namespace velsh
