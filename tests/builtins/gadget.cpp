// The members of the gadget.
#include "builtins/gadget.h"

namespace axlink2::test {

const kit::ClassDefinition& Gadget::definition() {
    static const auto made =
        kit::ClassBuilder<Gadget>("Gadget", kit::guid("5E1B7A40-93D4-4C0B-9B56-0A3E2C7D1001"),
                                  kit::guid("5E1B7A40-93D4-4C0B-9B56-0A3E2C7D1002"))
            .enumeration<Shade>("Shade", {{"dark", 0}, {"bright", 1}, {"gloomy", 0}})
            .property("Name", &Gadget::name, &Gadget::setName)
            .property("NameSpace", &Gadget::nameSpace)
            .property("Width", &Gadget::width, &Gadget::setWidth)
            .property("Shade", &Gadget::shade, &Gadget::setShade)
            .property("Count", &Gadget::count)
            .property("Bad", &Gadget::bad)
            .property("Secret", &Gadget::secret, &Gadget::setSecret)
            .hidden()
            .property("Item", &Gadget::item, &Gadget::setItem, {"index"})
            .raw({.name = "WriteOnly", .kind = INVOKE_PROPERTYPUT, .params = {{"value", VT_R8}}},
                 [](Gadget&, kit::Call&) { return S_OK; })
            .method("Reset", &Gadget::reset)
            .method("Add", &Gadget::add, {"a", "b"})
            .method("Both", &Gadget::both, {"other"})
            .method("Hidden", &Gadget::hidden, {"x"})
            .hidden()
            .method("NewGadget", &Gadget::newGadget)
            .build();
    return *made;
}

} // namespace axlink2::test
