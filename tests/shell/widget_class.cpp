// A small class of the host, for member chains and events without any server.
#include "shell/widget_class.h"

#include "tests/host/host_test.h"

namespace velsh::test {

namespace {

using host_test::Call;

hos::HOSInterfacePtr objectOf(const Call& call) {
    return hoGetArrayElement(call.inputs[0].array(), 0);
}
double numberOf(const Call& call, int input) { return call.inputs[input].number(); }

// Two constants, of which "Finish" never has one.
void defineFinish() {
    auto* type = hos::TypedEnumStringType::createCaseInsensitiveInstance(
        hos::HOSDataTypePtr(host_test::name("int32 scalar")), "Finish", nullptr);
    type->addValue(0, "glossy", nullptr);
    type->addValue(1, "matt", nullptr);
}

const host_test::TestClass& widgetClass();

hxArray* newWidget(const hxArray* name) {
    harray::unique_array array = widgetClass().makeArray();
    const auto object = hoGetArrayElement(array.get(), 0);
    host_test::storedBy(object)["Name"].reset(hxCreateSharedDataCopy(name));
    return array.release();
}

void add(Call call) { call.give(hxCreateDoubleScalar(numberOf(call, 1) + numberOf(call, 2))); }

void split(Call call) {
    const double whole = static_cast<int>(numberOf(call, 1));
    call.give(hxCreateDoubleScalar(whole), hxCreateDoubleScalar(numberOf(call, 1) - whole));
}

void item(Call call) { call.give(newWidget(host_test::storedBy(objectOf(call))["Name"].get())); }

void fire(Call call) {
    const harray::unique_array data(hxCreateStructMatrix(1, 1, 0, nullptr));
    hxSetField(data.get(), 0, "Count", hxCreateDoubleScalar(numberOf(call, 1)));
    host_test::send(objectOf(call), "Ticked", data.get());
    call.give();
}

void end(Call call) {
    objectOf(call)->destroy(hos::HOSGetPublicClient());
    call.give();
}

const host_test::TestClass& widgetClass() {
    static const host_test::TestClass made(
        {.methods = {{"Add", {"class", "double scalar", "double scalar"}, {"any"}, add},
                     {"Split", {"class", "double scalar"}, {"any", "any"}, split},
                     {"Item", {"class", "double scalar"}, {"any"}, item},
                     {"Fire", {"class", "double scalar"}, {}, fire},
                     {"delete", {"class"}, {"any"}, end}},
         .properties = {{.name = "Name", .stored = true},
                        {.name = "Child", .stored = true},
                        {.name = "delete", .stored = true}, // looking at it ends nothing
                        {"Size", "any",
                         [] {
                             return hos::HOSValue::ofPointer(host_test::row({3, 4}).release());
                         }},
                        {"Finish", "Finish",
                         []() -> hos::HOSValue {
                             velmar::raiseError("VELMAR:unfinished", "It is wet.\nWait.");
                         }}},
         .events = {"Ticked"}},
        "Widget");
    return made;
}

} // namespace

void defineWidgets() {
    if (velmar::hasFunction("widget")) return;
    defineFinish();
    velmar::defineFunction("widget", [](int, auto* outputs, int, auto* inputs) {
        outputs[0].reset(newWidget(inputs[0]));
    });
}

} // namespace velsh::test
