// What a generated class has after population.
#include "classmodel/class_description.h"
#include "dispatch/method_info.h"
#include "host/text.h"
#include "support/server_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

class Shape : public Served<Shape> {
  public:
    static constexpr const char* className = "Shape";
    static void declare(Builder& builder) {
        builder.method("Later", &Shape::nothing)
            .dispid(50)
            .method("get", &Shape::nothing)
            .dispid(-9)
            .property("Size", &Shape::size)
            .dispid(10)
            .property("release", &Shape::size)
            .dispid(11)
            .put("WriteOnly", &Shape::setSize)
            .dispid(12)
            .property("Item", &Shape::item, std::vector<std::string>{"index"})
            .dispid(13)
            .source("DShapeEvents", guidOf("DShapeEvents"))
            .event("Moved");
    }
    void nothing() {}
    LONG size() { return 1; }
    void setSize(LONG) {}
    LONG item(LONG index) { return index; }
};

// A method with the types that it declares, "*" for its own class, and whether the host lists it.
std::string described(const hos::HOSMethodInfo& method, const std::string& own) {
    hos::Enumeration<hos::id> inputs;
    hos::Enumeration<hos::id> outputs;
    std::string line = method.getName();
    const auto append = [&](const char* before, const std::vector<std::string>& types) {
        line += before;
        for (const std::string& type : types)
            line += " " + (type == own ? "*" : type);
    };
    append(":", namesOf(std::move(*method.getSignature()->getInputs(&inputs))));
    append(" ->", namesOf(std::move(*method.getSignature()->getOutputs(&outputs))));
    return method.isVisible() ? line : line + " hidden";
}

using Lines = std::vector<std::string>;

Lines methodsOf(hos::HOSClass* owner) {
    hos::id classId;
    const std::string own = owner->getID(&classId)->str();
    Lines lines;
    hos::HOSIterator methods;
    owner->getMethods(&methods);
    while (methods.hasMoreElements())
        lines.push_back(described(*hos::hosiToMethod(methods.nextElement()), own));
    return lines;
}

Lines propertiesOf(hos::HOSClass* owner) {
    Lines names;
    hos::HOSIterator properties;
    owner->getProperties(&properties);
    while (properties.hasMoreElements())
        names.push_back(hos::hosiToProp(properties.nextElement())->getName());
    return names;
}

const Lines everyClass = {"release: * ->",
                          "delete: * any ->",
                          "events: * -> any",
                          "invoke: * asciiString any -> any",
                          "addproperty: * asciiString ->",
                          "deleteproperty: * asciiString ->",
                          "get: handle scalar -> struct",
                          "get: handle scalar any -> any",
                          "get: handle vector asciiString -> cell",
                          "get: handle scalar asciiString any -> cell",
                          "set: handle scalar -> struct",
                          "set: handle scalar any any -> any",
                          "set: handle vector asciiString any -> any",
                          "getHeader: any -> unicodeString",
                          "getPropertyGroups: any -> any",
                          "methods: * any -> any hidden",
                          "isprop: * any -> logical scalar hidden",
                          "setappdata: * asciiString any -> hidden",
                          "getappdata: * asciiString -> any hidden",
                          "rmappdata: * asciiString -> hidden",
                          "isappdata: * asciiString -> logical scalar hidden"};

using Population = ServerTest;

TEST_F(Population, AddsBuiltinsThenMembersByDispidThenWhatTheKindOfClassHas) {
    const Array object = start<Shape>("Test.Shape");
    hos::HOSClass* owner = classOf(object);
    Lines expected = everyClass;
    for (const char* line :
         {"get: * ->", "Item: * int32 scalar -> int32 scalar", "Later: * ->",
          "Test_Shape: asciiString unicodeString asciiString -> *", "save: * unicodeString ->",
          "load: * unicodeString ->", "move: * double logical scalar -> double", "send: * -> any",
          "propedit: * ->", "interfaces: * -> cell"})
        expected.push_back(line);
    EXPECT_EQ(methodsOf(owner), expected);
    EXPECT_EQ(propertiesOf(owner), (Lines{"Size", "release"}));

    hos::Enumeration<hos::id> superclasses;
    EXPECT_EQ(namesOf(std::move(*owner->getSuperclassIDs(&superclasses))),
              (Lines{"velmar.internal.axlink.COMInterfaceMethods", "velmar.mixin.CustomDisplay"}));
    const auto* info = dynamic_cast<COMCoclassClassInfo*>(owner->getClassInfo());
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->sourceIID, guidOf("DShapeEvents"));
    EXPECT_EQ(info->classId, Shape::clsid());
    EXPECT_EQ(info->server, nullptr);
    for (const bool answer :
         {info->classTrait1(), info->classTrait2(), info->classTrait3(), info->classTrait4(),
          info->classTrait5(), info->classTrait6(), info->isHandleCompatible()})
        EXPECT_TRUE(answer);
}

TEST_F(Population, OfAServerWithoutTypeInformationStopsBehindTheBuiltins) {
    const Array first = start<UntypedServer>("Test.Bare");
    const Array second = startRegistered("Test.Bare");
    EXPECT_EQ(classOf(first), classOf(second));
    EXPECT_EQ(methodsOf(classOf(second)), everyClass);
    EXPECT_TRUE(propertiesOf(classOf(second)).empty());
}

TEST_F(Population, OfAnInterfaceClassGivesItItsOwnMembers) {
    const auto server = kit::createDispatch<Shape>();
    hos::HOSInterfacePtr handle;
    hos::HOSPackage* package = hos::HOSPackage::getNamespace(internedId("Interface"));
    ASSERT_NE(package, nullptr);
    auto* info = new COMInterfaceClassInfo("Test_IShape", server.get());
    package->addClass(info, 0, 2);
    package->findClass(&handle, "Test_IShape", 0);
    const Lines methods = methodsOf(hos::hosiToClass(handle));
    EXPECT_EQ(Lines(methods.end() - 2, methods.end()),
              (Lines{"saveobj: * -> any", "loadobj: * -> any"}));
    EXPECT_EQ(methods.size(), everyClass.size() + 5); // and the server's three
    info->server = nullptr;
}

TEST_F(Population, LetsTheHostShowAnObjectByItsClass) {
    const Array object = start<Shape>("Test.Shown");
    EXPECT_EQ(velmar::displayText(object.get()), "\tCOM.Test_Shown\n");
    hos::HOSValue input = hos::HOSValue::ofPointer(object.get());
    hos::HOSValue output = hos::HOSValue::ofInteger(5);
    std::uint32_t count = 0;
    method(object, "getPropertyGroups")->invoke(nullptr, &count, &output, 1, &input);
    EXPECT_EQ(count, 1u);
    EXPECT_TRUE(output.isNull());
    EXPECT_EQ(method(object, "getHeader")->getMemberAccess(), 1);
    EXPECT_TRUE(method(object, "getHeader")->doesMethodOverrideAllSignatures());
}

using BuiltinMembers = ServerTest;

class Starting : public Served<Starting> {
  public:
    static constexpr const char* className = "Starting";
    static inline std::function<void()> whenMade; // once
    Starting() {
        if (whenMade) std::exchange(whenMade, {})();
    }
};

TEST_F(BuiltinMembers, ConstructAServerForAnObjectThatTheHostHasMade) {
    const Array object = start<Starting>("Test.Thing");
    hos::HOSInterfacePtr made;
    classOf(object)->newInstance(&made);
    const Array array(hoCreateHOSMatrix(1, 1, hoGetClassID(object.get())));
    hoSetArrayElement(array.get(), 0, made);
    const int before = kit::liveObjects();
    const auto construct = [&](const char* word, const char16_t* machine, const char* wanted) {
        const std::u16string name = machine;
        hos::HOSValue inputs[] = {hos::HOSValue::ofPointer(word), hos::HOSValue::ofPointer(&name),
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
    // Once more, for an object that ends while its server starts.
    Starting::whenMade = [&] { made->destroy(hos::HOSGetPublicClient()); };
    construct("server", u"", "IDispatch");
    EXPECT_EQ(kit::liveObjects(), before);
}

} // namespace
