// The properties of objects and classes, by name and as lists.
#pragma once

#include "host/class.h"

#include <string>
#include <vector>

namespace axlink2 {

// The class's or added property of that exact name; null when there is none.
hos::HOSPropInfo* findProperty(hos::HOSInterface& object, const std::string& name);

// Raises "VELMAR:COM:AmbiguousPropertyException" with the name unless the class itself has the
// property.
void requireClassProperty(hos::HOSClass& owner, const char* name);

// The properties that a program sees and may read, in their order: a class's, and those that were
// added to an object. They stay the host's; an added one ends when a program deletes it.
std::vector<hos::HOSPropInfo*> readableProperties(hos::HOSClass& owner);
std::vector<hos::HOSPropInfo*> readableAddedProperties(hos::HOSInterface& object);

// The same of those that it may write, the class's before the added ones.
std::vector<hos::HOSPropInfo*> writableProperties(hos::HOSInterface& object);

// Their names, which outlive them.
std::vector<std::string> namesOf(const std::vector<hos::HOSPropInfo*>& properties);

} // namespace axlink2
