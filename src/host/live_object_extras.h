// The parts of an object that few objects have.
#pragma once

#include "host/live_object.h"

namespace velmar {

struct LiveObject::DynamicProperty {
    std::unique_ptr<hos::HOSGenericProp> info;
    hos::id name;
    hos::HOSInterfacePtr face;

    // The face's handles become invalid.
    void detach() { static_cast<hos::Face*>(static_cast<hos::HOSInterface*>(face))->detach(); }
};

struct LiveObject::Extras {
    std::vector<DynamicProperty> properties;
    std::vector<std::shared_ptr<ListenerRecord>> listeners; // in the order they were added
};

} // namespace velmar
