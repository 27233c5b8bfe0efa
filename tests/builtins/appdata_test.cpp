// Added properties, and the application data that lives in one of them.
#include "builtins/builtin_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

using AddedProperty = GadgetTest;
struct AppData : GadgetTest {
    static void expectRefused(const Array& h) {
        EXPECT_EQ(errorIn(h, "getappdata"), "VELMAR:COM:InvalidAppData");
        EXPECT_EQ(errorIn(h, "isappdata", text("x")), "VELMAR:COM:InvalidAppData");
        EXPECT_EQ(errorIn(h, "setappdata", text("x"), scalar(1)), "VELMAR:COM:InvalidAppData");
        EXPECT_EQ(errorIn(h, "rmappdata", text("x")), "VELMAR:COM:InvalidAppData");
    }
    // The array that the property holds.
    static const hxArray* storeOf(const Array& h) {
        hos::HOSInterfacePtr found;
        handle(h)->findDynamicProperty(&found, internedId("AppData"));
        hos::HOSValue value;
        return hos::hosiToProp(found)->getValue(&value, handle(h))->array();
    }
};

TEST_F(AddedProperty, IsReadAndWrittenLikeAnyOther) {
    ask(0, h, "addproperty", text("Tag"));
    EXPECT_EQ(get(h, text("Tag")), "[](0x0)");
    ask(0, h, "set", text("Tag"), scalar(3));
    EXPECT_EQ(plain(ask(1, h, "Tag").get()), "3");
    EXPECT_EQ(plain(ask(1, startRegistered("Test.Gadget"), "isprop", text("Tag")).get()), "0");
    ask(0, h, "deleteproperty", text("Tag"));
    EXPECT_EQ(errorIn(h, "get", text("Tag")), unknownName);
    log.clear();
    ask(0, h, "addproperty", text("Tag"));
    EXPECT_EQ(get(h, text("Tag")), "[](0x0)");
    EXPECT_TRUE(log.calls().empty());
}

TEST_F(AddedProperty, IsRefusedByItsRules) {
    ask(0, h, "addproperty", text("Tag"));
    struct Row {
        const char* member;
        const char* name;
        const char* error;
    };
    constexpr Row rows[] = {
        {"addproperty", "Tag", "VELMAR:COM:propertyexisterror"},
        {"addproperty", "Width", "VELMAR:COM:propertyexisterror"},
        {"addproperty", "", "VELMAR:COM:propertynameerror"},
        {"deleteproperty", "", "VELMAR:COM:propertynameerror"},
        {"deleteproperty", "Width", "VELMAR:COM:invalidruntimeproperty"},
        {"deleteproperty", "tag", "VELMAR:COM:invalidruntimeproperty"},
        {"deleteproperty", "Nothing", "VELMAR:COM:invalidruntimeproperty"},
    };
    for (const Row& row : rows) {
        const auto error = describedErrorOf([&] { ask(0, h, row.member, text(row.name)); });
        EXPECT_EQ(error.identifier, row.error) << row.member << " " << row.name;
        EXPECT_NE(error.text.find(row.name), std::string::npos) << error.text;
    }
    for (const char* member : {"addproperty", "deleteproperty"})
        for (const std::size_t count : {1u, 2u}) {
            std::vector<hos::HOSValue> inputs(count);
            inputs[0] = hos::HOSValue::ofPointer(h.get());
            EXPECT_EQ(errorOf([&] { invokeDirectly(*method(h, member), 0, inputs); }),
                      "VELMAR:COM:invalidnumargs");
        }
}

TEST_F(AppData, IsMadeWhenItIsFirstAskedFor) {
    const Array fresh = startRegistered("Test.Gadget");
    EXPECT_EQ(plain(ask(0, h, "isappdata", text("x")).get()), "0");
    EXPECT_EQ(get(h, text("AppData")), "()");
    EXPECT_EQ(plain(ask(0, fresh, "getappdata").get()), "()");
    EXPECT_EQ(errorIn(startRegistered("Test.Gadget"), "rmappdata", text("x")),
              "VELMAR:HostGraphics:Appdata:InvalidNameAppdata");
}

TEST_F(AppData, KeepsNamedValuesUntilTheyAreRemoved) {
    const auto set = [&](const char* name, Array value) {
        ask(0, h, "setappdata", text(name), value);
    };
    set("x", scalar(1));
    set("y", cell(text("a")));
    set("x", scalar(2));
    EXPECT_EQ(plain(ask(1, h, "getappdata").get()), "(x=2 y={'a'}(1x1))");
    EXPECT_EQ(plain(ask(0, h, "getappdata", text("x")).get()), "2");
    EXPECT_EQ(plain(ask(1, h, "getappdata", text("nothing")).get()), "[](0x0)");
    EXPECT_EQ(plain(ask(1, h, "isappdata", text("x")).get()), "1");
    EXPECT_EQ(plain(ask(1, h, "isappdata", text("X")).get()), "0");
    EXPECT_EQ(errorIn(h, "rmappdata", text("X")), "VELMAR:HostGraphics:Appdata:InvalidNameAppdata");

    // What a program was given doesn't change with the store.
    const Array before = ask(1, h, "getappdata");
    ask(0, h, "rmappdata", text("x"));
    EXPECT_EQ(plain(ask(1, h, "isappdata", text("x")).get()), "0");
    EXPECT_EQ(plain(ask(1, h, "getappdata").get()), "(y={'a'}(1x1))");
    EXPECT_EQ(plain(before.get()), "(x=2 y={'a'}(1x1))");
    EXPECT_EQ(plain(ask(1, startRegistered("Test.Gadget"), "getappdata").get()), "()");
    EXPECT_TRUE(log.calls().empty());
}

TEST_F(AppData, FollowsWhatAProgramDoesToItsProperty) {
    ask(0, h, "setappdata", text("x"), scalar(1));
    ask(0, h, "deleteproperty", text("AppData"));
    EXPECT_EQ(plain(ask(1, h, "getappdata").get()), "()");

    ask(0, h, "set", text("AppData"), scalar(3));
    expectRefused(h);
    ask(0, h, "deleteproperty", text("AppData"));
    ask(0, h, "addproperty", text("AppData")); // without a value
    expectRefused(h);
    ask(0, h, "set", text("AppData"), Array(hxCreateStructMatrix(1, 2, 0, nullptr)));
    expectRefused(h);
}

TEST_F(AppData, IsChangedInPlace) {
    ask(0, h, "setappdata", text("x"), scalar(1));
    const hxArray* const store = storeOf(h);
    const hxArray* const value = hxGetField(store, 0, "x");
    for (int i = 0; i < 100; ++i)
        ask(0, h, "setappdata", text("y" + std::to_string(i)), scalar(i));
    ask(0, h, "rmappdata", text("y50"));
    EXPECT_EQ(storeOf(h), store);
    EXPECT_EQ(hxGetField(store, 0, "x"), value);
    EXPECT_EQ(get_number_of_struct_fields(store), 100);
    EXPECT_EQ(plain(ask(1, h, "getappdata", text("y99")).get()), "99");
    EXPECT_EQ(plain(ask(1, h, "isappdata", text("y50")).get()), "0");
}

// Has a property of the name that the store has otherwise.
class Storing : public Served<Storing> {
  public:
    static constexpr const char* className = "Storing";
    static void declare(Builder& builder) { builder.property("AppData", &Storing::own); }
    LONG own() { return 7; }
};

TEST_F(AppData, IsRefusedWhereTheServerHasAPropertyOfThatName) {
    const Array storing = start<Storing>("Test.Storing");
    expectRefused(storing);
    EXPECT_EQ(get(storing, text("AppData")), "7");
}

TEST_F(AppData, EndsWhatItHoldsWithItsObject) {
    ask(0, h, "setappdata", text("other"), startRegistered("Test.Gadget"));
    ask(0, h, "setappdata", text("self"), row({&h}));
    const int before = kit::liveObjects();
    ask(0, h, "setappdata", text("other"), scalar(1));
    EXPECT_EQ(kit::liveObjects(), before - 1);
    ask(0, h, "delete");
    EXPECT_EQ(kit::liveObjects(), before - 2);
}

} // namespace
