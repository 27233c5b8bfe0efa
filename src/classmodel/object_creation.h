// Finding generated classes and making their objects.
#pragma once

#include "classmodel/instance_record.h"
#include "host/array.h"
#include "host/class.h"

#include <string>

namespace axlink2 {

class COMBaseClassInfo;

// The class of that bare name in a namespace; null when there is none.
hos::HOSClass* findClass(const char* namespaceName, const std::string& className);

// A new object of a generated class, with its record, whose `dispatch` is still null.
struct NewObject {
    hos::HOSClass* owner;
    hos::HOSInterfacePtr object;
    COMInstanceRecord* record;
};
NewObject makeObject(hos::HOSClass* owner);

// Adds a class to a namespace, which takes the description over, and makes its first object. The
// class is populated from `info->server` meanwhile, and forgets it.
NewObject makeFirstObject(const char* namespaceName, COMBaseClassInfo* info);

// A 1-by-1 object array that holds the object.
harray::unique_array objectArray(const NewObject& made);

} // namespace axlink2
