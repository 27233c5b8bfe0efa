// The widget's declaration.
#include "widget.h"

namespace server_tests {

const kit::ClassDefinition& Widget::definition() {
    static const auto made = [] {
        using Builder = kit::ClassBuilder<Widget>;
        auto base = Builder::interface_("IWidgetBase", widgetBase);
        base.property("Weight", &Widget::weight);
        auto extra = Builder::interface_("IWidgetExtra", widgetExtra);

        auto odd = [](Widget&, kit::Call& call) -> HRESULT {
            if (call.result) kit::putValue(*call.result, static_cast<LONG>(call.params.cArgs));
            return S_FALSE;
        };
        const kit::FunctionSpec oddSpec{
            .name = "Odd",
            .dispid = 0x60020000,
            .result = kit::pointerTo(VT_VARIANT),
            .params = {{"numbers", kit::fixedArrayOf(VT_I4, {{3, 0}, {2, 1}})},
                       {"where", kit::pointerTo(kit::userType("Point"))},
                       {"size", kit::userType("Length"), PARAMFLAG_FIN | PARAMFLAG_FOPT}},
            .optionalCount = 0};

        return Builder("Widget", widgetClass, widgetInterface)
            .enumeration<Shade>("Shade", {{"dark", -5}, {"light", 7}, {"wide", 1LL << 40, VT_I8}})
            .type({.name = "Point", .kind = TKIND_RECORD, .fields = {{"x", VT_R8}, {"y", VT_R8}}})
            .type({.name = "Length", .kind = TKIND_ALIAS, .target = VT_R8})
            .inherits(base)
            .implements(extra)
            .method("Add", &Widget::add, {"a", "b"})
            .direct()
            .method("Narrow", &Widget::narrow, {"value"})
            .method("Divide", &Widget::divide, {"a", "b", "quotient", "note"})
            .method("Twice", &Widget::twice, {"text"})
            .method("Pad", &Widget::pad, {"text", "count"})
            .method("Invert", &Widget::invert, {"shade"})
            .method("Reversed", &Widget::reversed, {"texts"})
            .method("Total", &Widget::total, {"values"})
            .method("IsObject", &Widget::isObject, {"object"})
            .hidden()
            .method("KindOf", &Widget::kindOf, {"value"})
            .restricted()
            .method("Code", &Widget::code, {"value"})
            .property("Name", &Widget::name, &Widget::setName)
            .dispid(DISPID_VALUE)
            .property("Partner", &Widget::partner)
            .putRef("Partner", &Widget::setPartner)
            .property("Cell", &Widget::cell, &Widget::setCell, {"row", "column"})
            .raw(oddSpec, odd)
            .property("Lie", &Widget::weight)
            .declare(VT_UINT_PTR)
            .unknownByName()
            .variable("Tag", &Widget::tag_)
            .variable("Count", &Widget::count_)
            .readOnly()
            .source("IWidgetEvents", widgetEvents)
            .event("Moved", {{"x", VT_R8}, {"who", kit::pointerTo(VT_DISPATCH)}})
            .event("Closed")
            .build();
    }();
    return *made;
}

} // namespace server_tests
