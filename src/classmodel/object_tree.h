// The links between objects: who was returned from whom.
#pragma once

#include "classmodel/instance_record.h"

namespace axlink2 {

// Links an object to the one that it was returned from.
void linkToOwner(const hos::HOSInterfacePtr& object, const hos::HOSInterfacePtr& owner);

// Takes an object out of the tree. Its children stay and move up to its parents, whose children
// they become; they themselves have no parents afterwards. Needs no memory, as it is part of an
// end.
void detachFromTree(COMInstanceRecord& record) noexcept;

// Ends everything that hangs together with the object, in both directions, but not the object.
void deleteTree(COMInstanceRecord& record, const hos::HOSClient* client);

} // namespace axlink2
