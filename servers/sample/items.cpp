// The members of collections and of objects without a description.
#include "servers/sample/items.h"

#include "servers/sample/identities.h"

namespace sample {

Items::Items() : DispatchObject(definition()) {
    for (const OLECHAR* name : {OLESTR("first"), OLESTR("second"), OLESTR("third")})
        add(name);
}

const kit::ClassDefinition& Items::definition() {
    static const auto made = [] {
        auto base = kit::ClassBuilder<Items>::interface_("ISampleCollection", collectionInterface);
        base.property("Item", &Items::item, {"index"})
            .dispid(DISPID_VALUE)
            .property("Count", &Items::count);
        return kit::ClassBuilder<Items>("Items", itemsClass, itemsInterface, "ISampleItems")
            .inherits(base)
            .method("Add", &Items::add, {"name"})
            .build(&library());
    }();
    return *made;
}

platform::ComPtr<IDispatch> Items::item(LONG index) const {
    if (index < 1 || index > count()) throw kit::ComFailure{DISP_E_BADINDEX};
    return children_[static_cast<std::size_t>(index - 1)];
}

platform::ComPtr<IDispatch> Items::add(platform::OleView name) {
    return children_.emplace_back(kit::createDispatch<Child>(platform::OleString(name)));
}

const kit::ClassDefinition& Bare::definition() {
    static const auto made = kit::ClassBuilder<Bare>("Bare", bareClass, bareInterface)
                                 .property("Name", &Bare::name, &Bare::setName)
                                 .method("Twice", &Bare::twice, {"x"})
                                 .withoutTypeInfo()
                                 .build();
    return *made;
}

} // namespace sample
