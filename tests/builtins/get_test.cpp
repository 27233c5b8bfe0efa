// Reading properties by name.
#include "builtins/builtin_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

using Get = GadgetTest;

TEST_F(Get, GivesAllReadablePropertiesWithAnErrorsTextInPlaceOfAValue) {
    ask(0, h, "addproperty", text("Tag"));
    hxSetProperty(h.get(), 0, "Tag", scalar(9).get());
    const std::string all = get(h);
    EXPECT_TRUE(all.starts_with("(Name='first' NameSpace='space' Width=10 Shade='bright' Count=7 "
                                "Bad='"))
        << all;
    EXPECT_NE(all.find("Not now."), std::string::npos) << all;
    EXPECT_TRUE(all.ends_with("' Tag=9)")) << all;
}

TEST_F(Get, SurvivesAPropertyThatEndsWhileAnotherIsRead) {
    for (const char* name : {"Tag", "Later"})
        ask(0, h, "addproperty", text(name));
    Gadget::onCount = [&] { ask(0, h, "deleteproperty", text("Tag")); };
    EXPECT_NE(errorIn(h, "get"), "");
    Gadget::onCount = nullptr;
    EXPECT_TRUE(get(h).ends_with("' Later=[](0x0))"));
}

TEST_F(Get, KeepsTextsOfTheSystemWithoutTheirLineEnds) {
    Gadget::onCount = [] { throw kit::ComFailure{E_OUTOFMEMORY}; };
    const Array values = ask(1, h, "get");
    Gadget::onCount = nullptr;
    const std::string text = plain(hxGetField(values.get(), 0, "Count"));
    EXPECT_GT(text.size(), 20u);
    EXPECT_EQ(text.find_first_of("\r\n"), std::string::npos) << text;
}

TEST_F(Get, ShowsTheStructWhenNoOutputIsWanted) {
    std::size_t outputs = 1;
    const std::string shown = printed([&] { outputs = call(h, "get", 0).size(); });
    EXPECT_EQ(outputs, 0u);
    EXPECT_LT(shown.find("Name"), shown.find("Width"));
    EXPECT_NE(shown.find("first"), std::string::npos) << shown;
}

TEST_F(Get, PassesOnErrorsThatAreNotTheServers) {
    destroy(h);
    EXPECT_EQ(errorIn(h, "get"), invalidHandle);
    EXPECT_EQ(errorIn(h, "get", text("Width")), invalidHandle);
    const auto byName = describedErrorOf([&] { get(h, text("Secret")); });
    EXPECT_EQ(byName.identifier, "VELMAR:UndefinedFunction");
    EXPECT_NE(byName.text.find("deleted"), std::string::npos) << byName.text;
    const Array plainOne = start<PlainServer>("Test.Plain");
    destroy(plainOne);
    EXPECT_EQ(errorIn(plainOne, "get"), invalidHandle); // also without any property to read
    const Array nothing(hoCreateHOSMatrix(1, 1, hoGetClassID(h.get())));
    for (const char* name : {"get", "set", "send", "interfaces"})
        EXPECT_EQ(errorIn(nothing, name), invalidHandle) << name;
}

TEST_F(Get, MatchesNamesInAnyCaseAndByTheirBeginning) {
    const std::string longName(1024, 'a');
    struct Row {
        std::vector<std::string> properties;
        std::string asked;
        std::string found; // or the error
    };
    const Row rows[] = {
        {{}, "NAME", "'first'"},
        {{}, "name", "'first'"},
        {{}, "names", "'space'"},
        {{}, "nam", ambiguous},
        {{}, "", ambiguous},
        {{}, "w", "10"},
        {{}, "co", "7"},
        {{"nam"}, "NAM", "'nam'"},
        {{"Ab", "Abc", "Abd"}, "ab", "'Ab'"},
        {{"Abc", "Abd", "Ab"}, "ab", "'Ab'"},
        {{"Tag", "TAG"}, "tag", "'Tag'"}, // of two exact ones the first
        {{"NAME"}, "NAME", "'first'"},
        {{"Abc", "Abd"}, "ab", ambiguous},
        {{"Abc", "Abd"}, "ABD", "'Abd'"},
        {{longName + "x"}, std::string(1024, 'A') + "y", "'" + longName + "x'"},
        {{"Gr\u00F6\u00DFe"}, "Gr\u00F6\u00DFe", "VELMAR:internal"},
        {{}, "\xC3\xA9", "VELMAR:internal"},
        {{}, "bad", "VELMAR:COM:E12"},
        {{}, "WriteOnly", "VELMAR:COM:E2147614723"}, // the server's own answer
        {{}, "width ", unknownName},
        {{}, "Widths", unknownName},
        {{}, "Secret", "5"}, // hidden: the server alone knows it, by its whole name
        {{}, "secret", "5"},
        {{}, "Secre", unknownName},
    };
    for (const Row& row : rows) {
        const Array object = startRegistered("Test.Gadget");
        for (const std::string& property : row.properties) {
            ask(0, object, "addproperty", text(property));
            hxSetProperty(object.get(), 0, property.c_str(), text(property).get());
        }
        std::string found;
        const std::string error = errorOf([&] { found = get(object, text(row.asked)); });
        EXPECT_EQ(error.empty() ? found : error, row.found) << row.asked;
    }
}

// Has a name among its own that can't be folded.
class Foreign : public Served<Foreign> {
  public:
    static constexpr const char* className = "Foreign";
    static void declare(Builder& builder) {
        for (const char* name : {"Before", "Gr\u00F6\u00DFe", "Behind"})
            builder.property(name, &Foreign::value);
    }
    LONG value() { return 4; }
};

TEST_F(Get, LooksAtNamesUpToOneThatCannotBeFolded) {
    const Array foreign = start<Foreign>("Test.Foreign");
    EXPECT_EQ(get(foreign, text("BEFORE")), "4");
    for (const char* name : {"Behind", "Bef", "Gr\u00F6\u00DFe", "none"})
        EXPECT_EQ(errorIn(foreign, "get", text(name)), "VELMAR:internal") << name;
    EXPECT_EQ(get(foreign), "(Before=4 Gr\u00F6\u00DFe=4 Behind=4)");
    EXPECT_EQ(get(foreign, cell(text("Gr\u00F6\u00DFe"))), "{4}(1x1)");
    EXPECT_EQ(plain(ask(1, foreign, "isprop", text("BEHIND")).get()), "1");
}

TEST_F(Get, SaysWhyAQueryIsRefused) {
    struct Row {
        Array asked;
        const char* part;
    };
    Row rows[] = {{text("na"), "More than one property of the class Test_Gadget "
                               "begins that way, 'Name' for one."},
                  {scalar(3), "second input"},
                  {Array(hxCreateCharMatrix({u"ab", u"cd"})), "second input"},
                  {cell(text("Name"), scalar(1)), "cell array"},
                  {cell(Array()), "cell array"}};
    for (const Row& row : rows) {
        const auto error = describedErrorOf([&] { get(h, row.asked); });
        EXPECT_EQ(error.identifier, ambiguous);
        EXPECT_NE(error.text.find(row.part), std::string::npos) << error.text;
    }
    EXPECT_TRUE(log.calls().empty());
    EXPECT_EQ(describedErrorOf([&] { get(h, text("\x80")); }).text, "Invalid character error.");
}

TEST_F(Get, ReadsSeveralExactNamesIntoARow) {
    EXPECT_EQ(get(h, cell(text("Width"), text("Name"), text("Secret"))), "{10 'first' 5}(1x3)");
    EXPECT_EQ(get(h, Array(hxCreateCellMatrix(0, 0))), "{}(1x0)");
    ask(0, h, "addproperty", text("Tag"));
    EXPECT_EQ(get(h, cell(text("Tag"))), "{[](0x0)}(1x1)");
    // No part of a name is enough, and what isn't found in this spelling is the server's.
    EXPECT_EQ(errorIn(h, "get", cell(text("Wid"))), unknownName);
    log.clear();
    EXPECT_EQ(get(h, cell(text("WIDTH"))), "{10}(1x1)");
    EXPECT_EQ(log.calls().at(0).flags, DISPATCH_PROPERTYGET);
    EXPECT_EQ(errorIn(h, "get", cell(text(""))), unknownName);
}

TEST_F(Get, ReadsOnePropertyOfEachObjectIntoAColumn) {
    const Array other = startRegistered("Test.Gadget");
    hxSetProperty(other.get(), 0, "Width", scalar(20).get());
    const Array objects = row({&h, &other, &h});
    EXPECT_EQ(get(objects, text("Width")), "{10 20 10}(3x1)");
    EXPECT_EQ(get(emptyArrayOf(h), text("Width")), "{}(0x1)");
    ask(0, h, "addproperty", text("Tag"));
    for (const char* name : {"width", "Wid", "Secret", "Tag", ""}) {
        const auto error = describedErrorOf([&] { get(objects, text(name)); });
        EXPECT_EQ(error.identifier, ambiguous) << name;
        EXPECT_NE(error.text.find("has no property named '" + std::string(name)),
                  std::string::npos);
    }
    ask(0, other, "release");
    EXPECT_EQ(errorIn(objects, "get", text("Width")), invalidHandle);
}

TEST_F(Get, PassesParametersOfAReadToTheServer) {
    ask(0, h, "set", text("Item"), scalar(3), text("three"));
    log.clear();
    EXPECT_EQ(get(h, text("Item"), scalar(3)), "'three'");
    EXPECT_EQ(log.calls().at(0).flags, DISPATCH_PROPERTYGET);
    EXPECT_EQ(log.calls().at(0).arguments.size(), 1u);
    EXPECT_EQ(errorIn(h, "get", text("Nothing"), scalar(3)), unknownName);
}

TEST_F(Get, GivesAnOutputAlsoWhenNoneIsAskedFor) {
    EXPECT_EQ(plain(ask(0, h, "get", text("Width")).get()), "10");
    EXPECT_EQ(plain(ask(0, h, "get", text("Secret")).get()), "5");
    EXPECT_EQ(plain(ask(0, h, "get", cell(text("Width"))).get()), "{10}(1x1)");
    EXPECT_EQ(plain(ask(0, row({&h, &h}), "get", text("Width")).get()), "{10 10}(2x1)");
}

} // namespace
