// The ends of objects and of trees of them.
#include "builtins/builtin_fixture.h"
#include "classmodel/instance_record.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

// A server, an object that came from it, and one that came from that.
struct ObjectEnd : BuiltinTest {
    Array s = start<Gadget>("Test.Gadget");
    Array m = ask(1, s, "NewGadget");
    Array c = ask(1, m, "NewGadget");

    static hos::HOSInterfacePtr objectOf(const Array& h) { return hoGetArrayElement(h.get(), 0); }
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
    const Array name = text("x");
    const std::vector<std::pair<const char*, std::vector<const hxArray*>>> rows = {
        {"delete", {}},
        {"release", {}},
        {"propedit", {}},
        {"addproperty", {name.get()}},
        {"deleteproperty", {name.get()}},
        {"setappdata", {name.get(), name.get()}},
        {"getappdata", {}},
        {"rmappdata", {name.get()}},
        {"isappdata", {name.get()}}};
    for (const auto& [member, inputs] : rows)
        for (const Array& array : {emptyArrayOf(s), row({&s})})
            EXPECT_EQ(errorOf([&] { call(array, member, 0, inputs); }), invalidHandle) << member;
    EXPECT_EQ(plain(ask(1, s, "move").get()), "[](1x4)");
}

TEST_F(ObjectEnd, ObjectsOfInterfacesSaveTheirClassNameAndNothingElse) {
    EXPECT_EQ(plain(ask(0, m, "saveobj").get()),
              "(Name='" + std::string(objectOf(m)->getClass()->getName()) + "')");
    EXPECT_EQ(errorIn(m, "loadobj"), "VELMAR:COM:loadobjnotsupported");
    for (const char* name : {"save", "move", "interfaces"})
        EXPECT_FALSE(velmar::hasMethod(m.get(), name)) << name;
    EXPECT_FALSE(velmar::hasMethod(s.get(), "saveobj"));
}

} // namespace
