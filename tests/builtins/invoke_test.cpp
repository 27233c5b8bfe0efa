// Calling members by name, and asking objects what they can do.
#include "builtins/builtin_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

using Invoke = GadgetTest;

constexpr const char* signatures[][2] = {
    {"Item", "unicodeString Item(COM.Test_Gadget, int32 scalar)"},
    {"Reset", "void Reset(COM.Test_Gadget)"},
    {"Add", "double scalar Add(COM.Test_Gadget, double scalar, double scalar)"},
    {"Both", "[double scalar, int32 scalar] Both(COM.Test_Gadget)"},
    {"NewGadget", "handle NewGadget(COM.Test_Gadget)"},
};

TEST_F(Invoke, ListsTheServersMethodsWithTheirSignatures) {
    std::string fields;
    std::string lines;
    for (const auto& [name, signature] : signatures) {
        fields += std::string(fields.empty() ? "" : " ") + name + "='" + signature + "'";
        lines += std::string("\t") + name + " = " + signature + "\n";
    }
    EXPECT_EQ(plain(ask(1, h, "invoke").get()), "(" + fields + ")");
    EXPECT_EQ(printed([&] { EXPECT_TRUE(call(h, "invoke", 0).empty()); }), lines);
    EXPECT_EQ(plain(ask(1, start<UntypedServer>("Test.Bare"), "invoke").get()), "()");
}

TEST_F(Invoke, CallsDeclaredMethodsAsAProgramWould) {
    EXPECT_EQ(plain(ask(0, h, "invoke", text("Add"), scalar(1), scalar(2)).get()), "3");
    const Array name = text("Both");
    const auto both = call(h, "invoke", 2, {name.get()});
    EXPECT_EQ(plain(both[0].get()), "1.5");
    EXPECT_EQ(hxGetClassID(both[1].get()), hxINT32_CLASS); // as declared, through its converter
    EXPECT_EQ(call(h, "invoke", 0, {text("Reset").get()}).size(), 0u);
    EXPECT_EQ(get(h, text("Width")), "0");
    EXPECT_NE(errorIn(h, "invoke", text("Add"), scalar(1)), "");
    // A built-in is a method of the class too.
    EXPECT_EQ(plain(ask(1, h, "invoke", text("get"), text("Count")).get()), "7");
    EXPECT_EQ(plain(ask(1, h, "invoke", text("invoke"), text("Add"), scalar(1), scalar(1)).get()),
              "2");
}

TEST_F(Invoke, AsksTheServerForAnyOtherName) {
    log.clear();
    EXPECT_EQ(plain(ask(0, h, "invoke", text("Hidden"), scalar(2)).get()), "-2");
    EXPECT_EQ(plain(ask(1, h, "invoke", text("add"), scalar(2), scalar(3)).get()), "5");
    for (const kit::LoggedCall& call : log.calls())
        EXPECT_EQ(call.flags, DISPATCH_METHOD);
    EXPECT_EQ(log.calls().at(1).arguments.at(0).vt, VT_R8);
    const Array bare = start<UntypedServer>("Test.Bare");
    EXPECT_EQ(plain(ask(1, bare, "invoke", text("Twice"), scalar(4)).get()), "8");
    // A property is no method.
    EXPECT_EQ(errorIn(h, "invoke", text("Width")), "VELMAR:COM:E2147614723");
    EXPECT_EQ(errorIn(h, "invoke", text("Nothing")), unknownName);
    EXPECT_EQ(errorIn(emptyArrayOf(h), "invoke", text("Nothing")), invalidHandle);
}

TEST_F(Invoke, HandsMethodsToTheHostsOwnFunction) {
    const std::string listed = plain(ask(1, h, "methods").get());
    EXPECT_NE(listed.find("'Add'"), std::string::npos) << listed;
    EXPECT_NE(listed.find("'invoke'"), std::string::npos);
    for (const char* hidden : {"'isprop'", "'methods'", "'getappdata'"})
        EXPECT_EQ(listed.find(hidden), std::string::npos) << hidden;
    EXPECT_NE(plain(ask(1, h, "methods", text("-full")).get()).find("Add(COM.Test_Gadget"),
              std::string::npos);
    EXPECT_NE(printed([&] { EXPECT_TRUE(call(h, "methods", 0).empty()); }).find("Add\n"),
              std::string::npos);
    EXPECT_EQ(errorOf([&] { call(h, "methods", 2); }), "VELMAR:maxlhs");
    EXPECT_EQ(errorIn(h, "methods", text("-ful")), "VELMAR:UnknownOption");
}

TEST_F(Invoke, KnowsWhatIsAProperty) {
    ask(0, h, "addproperty", text("Tag"));
    struct Row {
        Array name;
        bool answer;
    };
    Row rows[] = {
        {text("Name"), true},       {text("NAME"), true},     {text("nam"), false},
        {text("WriteOnly"), false}, {text("Secret"), false},  {text("Add"), false},
        {text("Tag"), true},        {text("TAG"), false},     {text(""), false},
        {scalar(1), false},         {cell(text("a")), false}, {text("Gr\xC3\xB6sse"), false}};
    for (const Row& row : rows) {
        const Array answer = ask(0, h, "isprop", row.name);
        EXPECT_EQ(hxGetClassID(answer.get()), hxLOGICAL_CLASS);
        EXPECT_EQ(hxGetScalar(answer.get()) != 0, row.answer) << plain(row.name.get());
    }
    EXPECT_EQ(plain(ask(1, h, "isprop").get()), "0");
    EXPECT_EQ(plain(ask(1, emptyArrayOf(h), "isprop", text("Name")).get()), "0");
    EXPECT_EQ(plain(ask(1, h, "isprop", text("Name"), text("Name")).get()), "0");
}

TEST_F(Invoke, ListsNoEventsOfAClassWithoutThem) {
    for (const char* name : {"events", "send"}) {
        EXPECT_EQ(printed([&] { EXPECT_TRUE(call(h, name, 0).empty()); }), "") << name;
        EXPECT_EQ(plain(ask(1, h, name).get()), "[](0x0)") << name;
    }
}

} // namespace
