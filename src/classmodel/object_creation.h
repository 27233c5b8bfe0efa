// Finding generated classes and making their objects.
#pragma once

#include "classmodel/instance_record.h"
#include "host/array.h"
#include "host/class.h"

#include <memory>
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

// The same with a server for the class to be populated from, should this be its first object. The
// class forgets it again: nobody keeps the server alive for it.
NewObject makeObjectFrom(hos::HOSClass* owner, IDispatch* server);

// Adds a class to a namespace, unless it has one of that name already, and gives the live class.
hos::HOSClass* addClass(const char* namespaceName, std::unique_ptr<COMBaseClassInfo> info);

// A 1-by-1 object array that holds the object.
harray::unique_array objectArray(const NewObject& made);

} // namespace axlink2
