// The ends of objects and of trees of them.
#include "builtins/builtin_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

// A server, an object that came from it, and one that came from that.
struct ObjectEnd : BuiltinTest {
    Array s = start<Gadget>("Test.Gadget");
    Array m = ask(1, s, "NewGadget");
    Array c = ask(1, m, "NewGadget");

    std::string deleted() {
        std::string names;
        for (const auto& [object, name] : {std::pair{&s, "s"}, {&m, "m"}, {&c, "c"}})
            if (isDeleted(*object)) names += name;
        return names;
    }
};

TEST_F(ObjectEnd, EveryMemberLeavesWhatItsRuleSays) {
    struct Row {
        const char* name;
        std::vector<std::pair<const char*, Array ObjectEnd::*>> calls;
        const char* deleted;
    };
    const Row rows[] = {
        {"the middle", {{"release", &ObjectEnd::m}}, "m"},
        {"the first", {{"release", &ObjectEnd::s}}, "s"},
        {"the last", {{"release", &ObjectEnd::c}}, "c"},
        {"a leaf and all", {{"delete", &ObjectEnd::c}}, "smc"},
        {"the root and all", {{"delete", &ObjectEnd::s}}, "smc"},
        {"what moved up", {{"release", &ObjectEnd::m}, {"delete", &ObjectEnd::s}}, "smc"},
        {"what lost its parent", {{"release", &ObjectEnd::m}, {"delete", &ObjectEnd::c}}, "mc"},
        {"below a released root", {{"release", &ObjectEnd::s}, {"delete", &ObjectEnd::c}}, "smc"},
    };
    for (const Row& row : rows) {
        s = startRegistered("Test.Gadget");
        m = ask(1, s, "NewGadget");
        c = ask(1, m, "NewGadget");
        const int before = kit::liveObjects();
        for (const auto& [member, object] : row.calls)
            ask(0, this->*object, member);
        EXPECT_EQ(deleted(), row.deleted) << row.name;
        EXPECT_EQ(before - kit::liveObjects(), static_cast<int>(deleted().size())) << row.name;
    }
}

TEST_F(ObjectEnd, WorksOnTheFirstOfSeveralObjects) {
    const Array t = startRegistered("Test.Gadget");
    const Array u = startRegistered("Test.Gadget");
    ask(0, row({&t, &u, &s}), "release");
    EXPECT_TRUE(isDeleted(t));
    EXPECT_FALSE(isDeleted(u));
    ask(0, row({&u, &s}), "delete");
    EXPECT_TRUE(isDeleted(u));
    EXPECT_EQ(deleted(), "");
}

TEST_F(ObjectEnd, NeedsALiveObjectAndNothingElse) {
    EXPECT_EQ(errorIn(s, "delete", scalar(1)), "VELMAR:COM:toomanyinargs");
    EXPECT_EQ(deleted(), "");
    ask(0, s, "delete");
    EXPECT_EQ(errorIn(s, "delete", scalar(1)), "VELMAR:COM:toomanyinargs");
    constexpr std::pair<const char*, std::size_t> rows[] = {
        {"delete", 0},      {"release", 0},    {"propedit", 0},
        {"addproperty", 1}, {"rmappdata", 1},  {"deleteproperty", 1},
        {"isappdata", 1},   {"getappdata", 0}, {"setappdata", 2},
    };
    const Array name = text("x");
    for (const auto& [member, count] : rows)
        for (const Array& array : {emptyArrayOf(s), row({&s})}) {
            const std::vector<const hxArray*> inputs(count, name.get());
            const auto act = [&, member = member] { call(array, member, 0, inputs); };
            EXPECT_EQ(errorOf(act), invalidHandle) << member;
        }
    EXPECT_EQ(plain(ask(1, s, "move").get()), "[](1x4)");
}

TEST_F(ObjectEnd, ObjectsOfInterfacesSaveTheirClassNameAndNothingElse) {
    EXPECT_EQ(plain(ask(0, m, "saveobj").get()),
              "(Name='" + std::string(classOf(m)->getName()) + "')");
    EXPECT_EQ(errorIn(m, "loadobj"), "VELMAR:COM:loadobjnotsupported");
    for (const char* name : {"save", "move", "interfaces"})
        EXPECT_FALSE(velmar::hasMethod(m.get(), name)) << name;
    EXPECT_FALSE(velmar::hasMethod(s.get(), "saveobj"));
}

} // namespace
