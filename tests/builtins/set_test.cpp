// Writing properties by name.
#include "builtins/builtin_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

class Set : public GadgetTest {
  protected:
    template <class... Inputs>
    void set(const Inputs&... inputs) {
        ask(0, h, "set", inputs...);
    }
    template <class... Inputs>
    std::string setError(const Inputs&... inputs) {
        return errorOf([&] { set(inputs...); });
    }
    std::string now() { return get(h, cell(text("Name"), text("Width"), text("Secret"))); }

    // A 1-by-n struct array, each of whose elements is a row of values for the names.
    static Array structs(const std::vector<const char*>& names,
                         const std::vector<std::vector<double>>& elements) {
        Array array(
            hxCreateStructMatrix(1, elements.size(), static_cast<int>(names.size()), names.data()));
        for (std::size_t i = 0; i < elements.size(); ++i)
            for (std::size_t field = 0; field < names.size(); ++field)
                hxSetField(array.get(), i, names[field], scalar(elements[i][field]).release());
        return array;
    }
};

TEST_F(Set, ListsWhatMayBeWrittenWithoutAskingTheServer) {
    ask(0, h, "addproperty", text("Tag"));
    EXPECT_EQ(plain(ask(1, h, "set").get()),
              "(Name={}(0x0) Width={}(0x0) Shade={'dark' 'bright'}(2x1) "
              "Tag={}(0x0))");
    const std::string shown = printed([&] { EXPECT_TRUE(call(h, "set", 0).empty()); });
    EXPECT_NE(shown.find("Shade"), std::string::npos) << shown;
    EXPECT_TRUE(log.calls().empty());
}

TEST_F(Set, GivesThePossibleValuesOfOneProperty) {
    EXPECT_EQ(plain(ask(0, h, "set", text("Shade")).get()), "{'dark' 'bright'}(2x1)");
    EXPECT_EQ(plain(ask(1, h, "set", text("Width")).get()), "{}(0x0)");
    EXPECT_EQ(plain(ask(1, h, "set", text("Count")).get()), "[](0x0)"); // can't be written
    for (const char* name : {"Nothing", "width", "Secret", ""}) {
        const auto error = describedErrorOf([&] { set(text(name)); });
        EXPECT_EQ(error.identifier, "VELMAR:legacy_two_part:noSuchMethodOrField") << name;
        EXPECT_NE(error.text.find("COM.Test_Gadget"), std::string::npos) << error.text;
    }
    EXPECT_EQ(setError(scalar(3)), "VELMAR:class:BadParamValuePairs");
    EXPECT_EQ(setError(cell(text("Width"))), "VELMAR:class:BadParamValuePairs");
}

TEST_F(Set, WritesNamesAndValuesInEveryForm) {
    set(text("Width"), scalar(3));
    EXPECT_EQ(now(), "{'first' 3 5}(1x3)");
    set(text("Name"), text("a"), text("Secret"), scalar(6)); // the second by the server's name
    EXPECT_EQ(now(), "{'a' 3 6}(1x3)");
    set(cell(text("Name"), text("Width")), cell(text("b"), scalar(4)));
    EXPECT_EQ(now(), "{'b' 4 6}(1x3)");
    set(structs({"Width", "Secret"}, {{1, 2}, {5, 7}})); // later elements win
    EXPECT_EQ(now(), "{'b' 5 7}(1x3)");
    set(structs({"Width"}, {{8}}), text("Name"), text("c"), structs({"Secret"}, {{9}}));
    EXPECT_EQ(now(), "{'c' 8 9}(1x3)");
    // As many columns of values as names are enough.
    set(cell(text("Width")), cell({2, 1}, scalar(11)));
    EXPECT_EQ(now(), "{'c' 11 9}(1x3)");
    log.clear();
    set(Array(hxCreateCellMatrix(0, 0)), Array(hxCreateCellMatrix(0, 0)));
    EXPECT_TRUE(log.calls().empty());
}

TEST_F(Set, ConvertsToThePropertysType) {
    set(text("Shade"), text("DARK"));
    EXPECT_EQ(get(h, text("Shade")), "'dark'");
    EXPECT_EQ(setError(text("Shade"), text("red")), "VELMAR:class:InvalidEnumValue");
    EXPECT_NE(setError(text("Width"), text("wide")), "");
    ask(0, h, "addproperty", text("Tag"));
    set(text("Tag"), cell(scalar(1)));
    EXPECT_EQ(get(h, text("Tag")), "{1}(1x1)");
}

TEST_F(Set, WritesInOrderAndKeepsWhatWasWrittenBeforeAnError) {
    set(structs({"Width", "Secret"}, {{1, 2}, {3, 4}}));
    ASSERT_EQ(log.calls().size(), 4u);
    const char* const written[] = {"I4 1", "R8 2", "I4 3", "R8 4"};
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(described(log.calls()[i].arguments.at(0).value.get()), written[i]);
    EXPECT_EQ(setError(cell(text("Width"), scalar(1)), cell(scalar(20), scalar(21))),
              "VELMAR:class:EmptyParamCell");
    EXPECT_EQ(setError(cell(text("Secret"), Array()), cell(scalar(22), scalar(23))),
              "VELMAR:class:EmptyParamCell");
    EXPECT_EQ(setError(cell(text("Secret"), text("Width")), Array(hxCreateCellMatrix(0, 2))),
              "VELMAR:class:BadParamValuePairs");
    EXPECT_EQ(setError(text("Name"), text("x"), text("Nothing"), scalar(1)), unknownName);
    EXPECT_EQ(now(), "{'x' 20 22}(1x3)");
}

TEST_F(Set, LeavesReadOnlyPropertiesToTheServer) {
    log.clear();
    EXPECT_EQ(setError(text("Count"), scalar(1)), "VELMAR:COM:E2147614723");
    EXPECT_EQ(log.calls().size(), 1u);
}

TEST_F(Set, TakesWhatIsNoPairForAWriteWithParameters) {
    log.clear();
    set(text("Item"), scalar(3), text("x"));
    const kit::LoggedCall& call = log.calls().at(0);
    EXPECT_EQ(call.flags, DISPATCH_PROPERTYPUT);
    ASSERT_EQ(call.arguments.size(), 2u);
    EXPECT_EQ(call.arguments[0].vt, VT_BSTR);
    EXPECT_EQ(call.arguments[1].value->dblVal, 3.0);
    EXPECT_EQ(call.named, std::vector<DISPID>{DISPID_PROPERTYPUT});
    EXPECT_EQ(get(h, text("Item"), scalar(3)), "'x'");
    // Four arguments of which the first and the third are texts are pairs.
    EXPECT_EQ(setError(text("Width"), scalar(3), text("Name"), text("y")), "");
    EXPECT_EQ(now(), "{'y' 3 5}(1x3)");
}

TEST_F(Set, SendsAnEmptyNameWhenTheFirstArgumentIsNone) {
    struct Row {
        Array name;
        Array value;
    };
    Row rows[] = {{scalar(5), scalar(3)},
                  {cell(text("Name"), text("Width")), cell(scalar(1))},
                  {cell(text("Name")), scalar(1)},
                  {text(""), scalar(1)}};
    for (const Row& row : rows)
        EXPECT_EQ(setError(row.name, row.value), unknownName);
    EXPECT_TRUE(log.calls().empty());
}

TEST_F(Set, WritesOnePropertyOfEachObject) {
    const Array other = startRegistered("Test.Gadget");
    const Array objects = row({&h, &other});
    ask(0, objects, "set", text("Width"), scalar(30));
    EXPECT_EQ(get(objects, text("Width")), "{30 30}(2x1)");
    log.clear();
    ask(0, emptyArrayOf(h), "set", text("Width"), scalar(1));
    EXPECT_TRUE(log.calls().empty());
    for (const char* name : {"width", "Secret", ""})
        EXPECT_EQ(errorIn(objects, "set", text(name), scalar(1)), ambiguous) << name;
    EXPECT_EQ(errorIn(emptyArrayOf(h), "set", text("Nothing"), scalar(1)), ambiguous);
    // The host looks at the access first here.
    EXPECT_EQ(errorIn(objects, "set", text("Count"), scalar(1)), "VELMAR:class:ReadOnlyProperty");
}

} // namespace
