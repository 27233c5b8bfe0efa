// The fixed methods: their declared signatures, and those that work already.
#include "builtins/builtin_tables.h"
#include "support/server_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

class Thing : public kit::DispatchObject {
  public:
    Thing() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition() {
        static const auto made =
            kit::ClassBuilder<Thing>("Thing", kit::guid("3D1F0C11-7C0B-4C55-8B85-2C7F9E0AA051"),
                                     kit::guid("3D1F0C11-7C0B-4C55-8B85-2C7F9E0AA052"))
                .build();
        return *made;
    }
};

// The types that a built-in declares, and whether the host lists it.
std::string steps(const hos::HOSMethodInfo& method) {
    hos::Enumeration<hos::id> inputs;
    hos::Enumeration<hos::id> outputs;
    std::string text = method.getName();
    const auto append = [&](const char* before, const std::vector<std::string>& names) {
        text += before;
        for (const std::string& name : names)
            text += " " + name;
    };
    append(":", namesOf(std::move(*method.getSignature()->getInputs(&inputs))));
    append(" ->", namesOf(std::move(*method.getSignature()->getOutputs(&outputs))));
    if (!method.isVisible()) text += " hidden";
    return text;
}

struct BuiltinMembers : ServerTest {
    Array object = start<Thing>("Test.Thing");
    hos::HOSClass* owner = hoGetArrayElement(object.get(), 0)->getClass();

    std::vector<std::string> listing(std::span<const MakeMethod> builtins) {
        std::vector<std::string> lines;
        for (const MakeMethod make : builtins) {
            const std::unique_ptr<hos::HOSMethodInfo> method(make(owner));
            lines.push_back(steps(*method));
        }
        return lines;
    }
};

TEST_F(BuiltinMembers, DeclareTheirSignaturesInOrder) {
    using Lines = std::vector<std::string>;
    EXPECT_EQ(listing(everyClassBuiltins()),
              (Lines{"release: COM.Test_Thing ->",
                     "delete: COM.Test_Thing any ->",
                     "events: COM.Test_Thing -> any",
                     "invoke: COM.Test_Thing asciiString any -> any",
                     "addproperty: COM.Test_Thing asciiString ->",
                     "deleteproperty: COM.Test_Thing asciiString ->",
                     "get: handle scalar -> struct",
                     "get: handle scalar any -> any",
                     "get: handle vector asciiString -> cell",
                     "get: handle scalar asciiString any -> cell",
                     "set: handle scalar -> struct",
                     "set: handle scalar any any -> any",
                     "set: handle vector asciiString any -> any",
                     "getHeader: any -> unicodeString",
                     "getPropertyGroups: any -> any",
                     "methods: COM.Test_Thing any -> any hidden",
                     "isprop: COM.Test_Thing any -> logical scalar hidden",
                     "setappdata: COM.Test_Thing asciiString any -> hidden",
                     "getappdata: COM.Test_Thing asciiString -> any hidden",
                     "rmappdata: COM.Test_Thing asciiString -> hidden",
                     "isappdata: COM.Test_Thing asciiString -> logical scalar hidden"}));
    EXPECT_EQ(
        listing(coclassBuiltins()),
        (Lines{"Test_Thing: asciiString unicodeString asciiString -> COM.Test_Thing",
               "save: COM.Test_Thing unicodeString ->", "load: COM.Test_Thing unicodeString ->",
               "move: COM.Test_Thing double logical scalar -> double",
               "send: COM.Test_Thing -> any", "propedit: COM.Test_Thing ->",
               "interfaces: COM.Test_Thing -> cell"}));
    EXPECT_EQ(listing(interfaceBuiltins()),
              (Lines{"saveobj: COM.Test_Thing -> any", "loadobj: COM.Test_Thing -> any"}));
}

TEST_F(BuiltinMembers, ConstructAServerForAnObjectThatTheHostHasMade) {
    hos::HOSInterfacePtr made;
    owner->newInstance(&made);
    hos::id classId;
    const Array array(hoCreateHOSMatrix(1, 1, *owner->getID(&classId)));
    hoSetArrayElement(array.get(), 0, made);
    const int before = kit::liveObjects();
    const auto construct = [&](const char* word, const char16_t* machine, const char* wanted) {
        const std::u16string text = machine;
        hos::HOSValue inputs[] = {hos::HOSValue::ofPointer(word), hos::HOSValue::ofPointer(&text),
                                  hos::HOSValue::ofPointer(wanted)};
        hos::HOSValue output = hos::HOSValue::ofPointer(array.get());
        std::uint32_t count = 1;
        method(object, "Test_Thing")->invoke(nullptr, &count, &output, 3, inputs);
    };
    construct("Server", u"", "IDispatch");
    construct("server", u"", "idispatch");
    EXPECT_EQ(kit::liveObjects(), before);
    EXPECT_EQ(errorOf([&] { construct("server", u"", "IUnknown"); }),
              "VELMAR:COM:unsupported64bit");
    EXPECT_EQ(errorOf([&] { construct("server", u"elsewhere", "IDispatch"); }),
              "VELMAR:COM:servercreationfailed");
    EXPECT_EQ(kit::liveObjects(), before);
    construct("server", u"", "IDispatch");
    EXPECT_EQ(kit::liveObjects(), before + 1);
}

} // namespace
