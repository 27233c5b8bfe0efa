// What a generated class has after population.
#include "classmodel/class_description.h"
#include "dispatch/method_info.h"
#include "host/text.h"
#include "support/server_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

class Shape : public kit::DispatchObject {
  public:
    Shape() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition() {
        static const auto made =
            kit::ClassBuilder<Shape>("Shape", kit::guid("3D1F0C11-7C0B-4C55-8B85-2C7F9E0AA001"),
                                     kit::guid("3D1F0C11-7C0B-4C55-8B85-2C7F9E0AA002"))
                .method("Later", &Shape::nothing)
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
                .source("DShapeEvents", kit::guid("3D1F0C11-7C0B-4C55-8B85-2C7F9E0AA003"))
                .event("Moved")
                .build();
        return *made;
    }
    void nothing() {}
    LONG size() { return 1; }
    void setSize(LONG) {}
    LONG item(LONG index) { return index; }
};

class Bare : public kit::DispatchObject {
  public:
    Bare() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition() {
        static const auto made =
            kit::ClassBuilder<Bare>("Bare", kit::guid("3D1F0C11-7C0B-4C55-8B85-2C7F9E0AA011"),
                                    kit::guid("3D1F0C11-7C0B-4C55-8B85-2C7F9E0AA012"))
                .withoutTypeInfo()
                .build();
        return *made;
    }
};

std::vector<std::string> methodNames(hos::HOSClass* owner) {
    hos::HOSIterator methods;
    owner->getMethods(&methods);
    std::vector<std::string> names;
    while (methods.hasMoreElements())
        names.push_back(hos::hosiToMethod(methods.nextElement())->getName());
    return names;
}

std::vector<std::string> propertyNames(hos::HOSClass* owner) {
    hos::HOSIterator properties;
    owner->getProperties(&properties);
    std::vector<std::string> names;
    while (properties.hasMoreElements())
        names.push_back(hos::hosiToProp(properties.nextElement())->getName());
    return names;
}

const std::vector<std::string> everyClass = {"release",    "delete",      "events",
                                             "invoke",     "addproperty", "deleteproperty",
                                             "get",        "get",         "get",
                                             "get",        "set",         "set",
                                             "set",        "getHeader",   "getPropertyGroups",
                                             "methods",    "isprop",      "setappdata",
                                             "getappdata", "rmappdata",   "isappdata"};

struct Population : ServerTest {
    static hos::HOSClass* classOf(const Array& object) {
        return hoGetArrayElement(object.get(), 0)->getClass();
    }
};

TEST_F(Population, AddsBuiltinsThenMembersByDispidThenWhatTheKindOfClassHas) {
    const Array object = start<Shape>("Test.Shape");
    hos::HOSClass* owner = classOf(object);
    auto expected = everyClass;
    for (const char* name : {"get", "Item", "Later", "Test_Shape", "save", "load", "move", "send",
                             "propedit", "interfaces"})
        expected.push_back(name);
    EXPECT_EQ(methodNames(owner), expected);
    EXPECT_EQ(propertyNames(owner), (std::vector<std::string>{"Size", "release"}));

    hos::Enumeration<hos::id> superclasses;
    EXPECT_EQ(namesOf(std::move(*owner->getSuperclassIDs(&superclasses))),
              (std::vector<std::string>{"velmar.internal.axlink.COMInterfaceMethods",
                                        "velmar.mixin.CustomDisplay"}));
    const auto* info = dynamic_cast<COMCoclassClassInfo*>(owner->getClassInfo());
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->sourceIID, kit::guid("3D1F0C11-7C0B-4C55-8B85-2C7F9E0AA003"));
    EXPECT_EQ(info->classId, Shape::definition().parts().coclass.clsid);
    EXPECT_EQ(info->server, nullptr);
    for (const bool answer :
         {info->classTrait1(), info->classTrait2(), info->classTrait3(), info->classTrait4(),
          info->classTrait5(), info->classTrait6(), info->isHandleCompatible()})
        EXPECT_TRUE(answer);
}

TEST_F(Population, OfAServerWithoutTypeInformationStopsBehindTheBuiltins) {
    const Array object = start<Bare>("Test.Bare");
    EXPECT_EQ(methodNames(classOf(object)), everyClass);
    EXPECT_TRUE(propertyNames(classOf(object)).empty());
}

TEST_F(Population, HappensOnceForAllObjectsOfAClass) {
    const Array first = start<Shape>("Test.Once");
    const std::size_t members = methodNames(classOf(first)).size();
    const Array second = startRegistered("Test.Once");
    EXPECT_EQ(classOf(first), classOf(second));
    EXPECT_EQ(methodNames(classOf(second)).size(), members);
}

TEST_F(Population, OfAnInterfaceClassGivesItItsOwnMembers) {
    const auto server = kit::createDispatch<Shape>();
    hos::HOSInterfacePtr handle;
    hos::HOSPackage* package = hos::HOSPackage::getNamespace(internedId("Interface"));
    ASSERT_NE(package, nullptr);
    auto* info = new COMInterfaceClassInfo("Test_IShape", server.get());
    package->addClass(info, 0, 2);
    package->findClass(&handle, "Test_IShape", 0);
    auto names = methodNames(hos::hosiToClass(handle));
    EXPECT_EQ(std::vector<std::string>(names.end() - 2, names.end()),
              (std::vector<std::string>{"saveobj", "loadobj"}));
    EXPECT_EQ(std::count(names.begin(), names.end(), "save"), 0);
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

} // namespace
