// The child's members.
#include "servers/sample/child.h"

#include "servers/sample/identities.h"

namespace sample {

Child::Child(platform::OleString name) : DispatchObject(definition()), name_(std::move(name)) {}

const kit::ClassDefinition& Child::definition() {
    static const auto made =
        kit::ClassBuilder<Child>("Child", childClass, childInterface, "ISampleChild")
            .property("Name", &Child::name, &Child::setName)
            .property("Value", &Child::value, &Child::setValue)
            .method("Increment", &Child::increment, {"by"})
            .build(&library());
    return *made;
}

} // namespace sample
