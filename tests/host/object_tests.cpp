// Objects: their life, properties and listeners.
#include "host/host_messages.h"
#include "tests/host/host_test.h"

#include <optional>

using namespace host_test;

namespace {

using Log = std::vector<std::string>;

void send(const hos::HOSInterfacePtr& object, const char* event, double value = 0) {
    host_test::send(object, event, number(value).get());
}

// An object with two events, and what its listeners heard.
class Listeners : public HostTest {
  protected:
    // Makes a new object of a class of its own, with the spec's callbacks.
    void begin() {
        spec.events = {"Moved", "Closed"};
        shape.emplace(spec);
        object = shape->makeObject();
    }
    std::shared_ptr<velmar::Listener> listen(std::string entry, const char* event = "Moved") {
        return velmar::addListener(
            object, event, [this, entry](const hxArray* source, const hxArray* data) {
                EXPECT_TRUE(hoIsHOS(source));
                heard.push_back(entry + std::to_string(static_cast<int>(hxGetScalar(data))));
            });
    }
    void listen(const std::function<void()>& action) {
        velmar::addListener(object, "Moved",
                            [action](const hxArray*, const hxArray*) { action(); });
    }
    std::string refusal() {
        return errorOf([&] { velmar::addListener(object, "Moved", {}); });
    }
    void expectWarning(const char* part) {
        ASSERT_EQ(warnings.size(), 1u);
        EXPECT_NE(warnings[0].find(part), std::string::npos) << warnings[0];
    }

    ClassSpec spec;
    std::optional<TestClass> shape;
    hos::HOSInterfacePtr object;
    Log heard;
};

} // namespace

class Objects : public HostTest {};

// However long a chain of things that hold each other is, its end takes no stack.
TEST_F(Objects, EndInChainsOfAnyLength) {
    constexpr int links = 200000;
    TestClass shape({.events = {"Moved"}});
    const auto arrayOf = [&](const hos::HOSInterfacePtr& object) {
        unique_array array(hoCreateHOSMatrix(1, 1, shape.id()));
        hoSetArrayElement(array.get(), 0, object);
        return array;
    };
    const auto held = [](unique_array array) {
        return std::make_shared<unique_array>(std::move(array));
    };
    const std::function<unique_array(unique_array)> ways[] = {
        [&](unique_array inner) { // as an added property
            const hos::HOSInterfacePtr object = shape.makeObject();
            auto* property =
                hos::HOSGenericProp::createNewDynamicProp(name("Next"), name("any"), hos::id());
            property->setValue(object, hos::HOSValue::ofPointer(inner.get()));
            object->addDynamicProperty(property);
            return arrayOf(object);
        },
        [&](unique_array inner) { // by a listener
            const hos::HOSInterfacePtr object = shape.makeObject();
            velmar::addListener(object, "Moved",
                                [kept = held(std::move(inner))](const hxArray*, const hxArray*) {});
            return arrayOf(object);
        },
        [&](unique_array inner) { // by a function
            return velmar::createFunctionHandle(
                "f",
                [kept = held(std::move(inner))](int, unique_array*, int, const hxArray* const*) {});
        },
        [&](unique_array inner) { // in a cell
            unique_array cell(hxCreateCellMatrix(1, 1));
            hxSetCell(cell.get(), 0, inner.release());
            return cell;
        },
    };
    for (const auto& link : ways) {
        unique_array chain = arrayOf(shape.makeObject());
        for (int i = 0; i < links; ++i)
            chain = link(std::move(chain));
    }
}

TEST_F(Objects, PopulateTheirClassOnceAndEndWithTheirLastStrongHandle) {
    TestClass shape({});
    EXPECT_TRUE(shape.log().empty());
    hos::HOSInterfacePtr object = shape.makeObject();
    const unique_array array(hoCreateHOSMatrix(1, 1, shape.id()));
    hoSetArrayElement(array.get(), 0, object);
    const hos::HOSInterfacePtr weak(object, hos::HOSReferenceType::Weak);
    object = {};
    ASSERT_TRUE(weak);
    EXPECT_NE(weak->getInstanceData(shape.id()), nullptr);
    EXPECT_EQ(weak->getInstanceData(name("Test.Other")), nullptr);
    hoSetArrayElement(array.get(), 0, shape.makeObject());
    EXPECT_FALSE(weak);
    EXPECT_EQ(shape.log(), (Log{"populate", "create", "create", "destroy"}));
}

TEST_F(Objects, DestroyedThemselvesKeepTheirHandlesButNotTheirData) {
    TestClass shape({{}, {{"Size", "double scalar", [] { return hos::HOSValue(); }, {}}}});
    const unique_array array = shape.makeArray();
    const hos::HOSInterfacePtr object = hoGetArrayElement(array.get(), 0);
    const hos::HOSInterfacePtr weak(object, hos::HOSReferenceType::Weak);
    object->destroy(hos::HOSGetPublicClient());
    object->destroy(hos::HOSGetPublicClient());
    EXPECT_TRUE(object->isDeleted());
    EXPECT_FALSE(weak);
    EXPECT_EQ(object->getInstanceData(shape.id()), nullptr);
    EXPECT_EQ(shape.log(), (Log{"populate", "create", "destroy"}));
    const std::string invalid = "VELMAR:class:InvalidHandle";
    EXPECT_EQ(errorOf([&] { velmar::callMember(array.get(), "Size", 1, {}); }), invalid);
    EXPECT_EQ(errorOf([&] { velmar::addListener(object, "Moved", {}); }), invalid);
    const unique_array empty(hoCreateHOSMatrix(1, 1, shape.id()));
    EXPECT_EQ(errorOf([&] { hxGetPropertyShared(empty.get(), 0, "Size"); }), invalid);
}

TEST_F(Objects, PropertiesConvertBothWaysAndKeepTheirAccess) {
    double stored = 1.5;
    const TestClass shape(
        {{},
         {{"Size", "double scalar", [&] { return hos::HOSValue::ofDouble(stored); },
           [&](hos::HOSValue value) { stored = value.number(); }},
          {.name = "Any", .stored = true},
          {"Fixed", "int8 scalar", [] { return hos::HOSValue::ofInteger(-5); }, {}},
          {"Hole", "any", {}, [](hos::HOSValue) {}}}});
    const unique_array object = shape.makeArray();
    const auto get = [&](const char* property) {
        return unique_array(hxGetPropertyShared(object.get(), 0, property));
    };
    const auto set = [&](const char* property, unique_array value) {
        hxSetProperty(object.get(), 0, property, value.get());
    };
    set("Size", number(3, hxINT32_CLASS));
    EXPECT_EQ(hxGetScalar(get("Size").get()), 3);
    EXPECT_EQ(hxGetNumberOfElements(get("Any").get()), 0u);
    set("Any", row({1, 2, 3}));
    EXPECT_EQ(hxGetNumberOfElements(get("Any").get()), 3u);
    EXPECT_EQ(hxGetScalar(get("Fixed").get()), -5);

    const std::pair<std::function<void()>, const char*> failures[] = {
        {[&] { set("Size", text("big")); }, "VELMAR:array:WrongConversion"},
        {[&] { set("Fixed", number(1)); }, "VELMAR:class:ReadOnlyProperty"},
        {[&] { get("Hole"); }, "VELMAR:class:WriteOnlyProperty"},
        {[&] { get("size"); }, "VELMAR:UndefinedFunction"},
        {[&] { hxGetPropertyShared(object.get(), 1, "Size"); }, "VELMAR:badsubscript"},
        {[&] { velmar::callMember(object.get(), "Size", 1, {object.get()}); },
         "VELMAR:class:PropertyInputs"},
        {[&] { velmar::setMember(shape.makeArray(2).get(), "Size", nullptr); },
         "VELMAR:class:NotOneObject"},
        {[] { velmar::callMember(number(1).get(), "Size", 1, {}); }, "VELMAR:class:NotAnObject"}};
    for (const auto& [action, error] : failures)
        EXPECT_EQ(errorOf(action), error);
}

TEST_F(Objects, DynamicPropertiesBelongToOneObject) {
    const TestClass shape({{}, {{.name = "Size"}}});
    const unique_array array = shape.makeArray();
    const hos::HOSInterfacePtr object = hoGetArrayElement(array.get(), 0);
    const auto add = [&](const char* property) {
        object->addDynamicProperty(
            hos::HOSGenericProp::createNewDynamicProp(name(property), name("any"), {}));
    };
    add("Tag");
    for (const char* taken : {"Tag", "Size"})
        EXPECT_EQ(errorOf([&] { add(taken); }), "VELMAR:class:PropertyExists");
    velmar::setMember(array.get(), "Tag", text("mine").get());
    EXPECT_EQ(textOf(velmar::callMember(array.get(), "Tag", 1, {})[0].get()), "mine");
    EXPECT_FALSE(velmar::hasProperty(shape.makeArray().get(), "Tag"));

    hos::HOSInterfacePtr face;
    object->findProperty(&face, name("Tag"));
    ASSERT_NE(hos::hosiToProp(face), nullptr);
    EXPECT_STREQ(hos::hosiToProp(face)->getName(), "Tag");
    EXPECT_EQ(hos::hosiToMethod(face), nullptr);
    face->destroy(hos::HOSGetPublicClient());
    EXPECT_TRUE(face->isDeleted());
    EXPECT_EQ(hos::hosiToProp(face), nullptr);
    EXPECT_FALSE(velmar::hasProperty(array.get(), "Tag"));

    add("Late");
    EXPECT_EQ(hxGetNumberOfElements(velmar::callMember(array.get(), "Late", 1, {})[0].get()), 0u);
    object->findDynamicProperty(&face, name("Late"));
    object->destroy(hos::HOSGetPublicClient());
    EXPECT_TRUE(face->isDeleted());
    face->destroy(hos::HOSGetPublicClient());
}

TEST_F(Listeners, ConnectWithTheFirstAndDisconnectWithTheLast) {
    begin();
    const auto first = listen("a");
    const auto second = listen("b");
    const auto other = listen("c", "Closed");
    send(object, "Moved", 1);
    first->setEnabled(false);
    send(object, "Moved", 2);
    first->setEnabled(true);
    second->remove();
    second->remove();
    send(object, "Moved", 3);
    first->remove();
    send(object, "Moved", 4);
    EXPECT_EQ(heard, (Log{"a1", "b1", "b2", "a3"}));
    EXPECT_EQ(shape->log(),
              (Log{"populate", "create", "connect Moved", "connect Closed", "disconnect Moved"}));
    EXPECT_FALSE(first->isEnabled());
    EXPECT_TRUE(other->isEnabled());
    EXPECT_EQ(errorOf([&] { listen("d", "None"); }), "VELMAR:class:UndefinedEvent");
}

TEST_F(Listeners, ThatCannotBeConnectedAreNotAdded) {
    bool refuse = true;
    spec.onConnect = [&] {
        if (refuse) velmar::raiseError("Test:refused", "no");
    };
    begin();
    EXPECT_EQ(refusal(), "Test:refused");
    refuse = false;
    listen("b");
    send(object, "Moved");
    EXPECT_EQ(heard, Log{"b0"});
}

TEST_F(Listeners, AreNotTakenByAnObjectThatEnds) {
    spec.onConnect = [&] { object->destroy(hos::HOSGetPublicClient()); };
    begin();
    EXPECT_EQ(refusal(), "VELMAR:class:InvalidHandle"); // it ends while the event is connected
    std::string refused;
    spec.onConnect = {};
    spec.onDisconnect = [&](hos::HOSInterfacePtr) { refused = refusal(); };
    begin();
    listen("a");
    object->destroy(hos::HOSGetPublicClient()); // another is tried while the event disconnects
    EXPECT_EQ(refused, "VELMAR:class:InvalidHandle");
}

TEST_F(Listeners, ThatFailAreWarningsAndTheNextOnesRun) {
    begin();
    std::shared_ptr<velmar::Listener> late;
    listen([] { velmar::raiseError("Test:oops", "went wrong"); });
    listen([&] {
        // Neither the one added now nor the one removed now runs for this event.
        listen("new");
        late->remove();
    });
    late = listen("removed");
    listen("last");
    send(object, "Moved");
    EXPECT_EQ(heard, Log{"last0"});
    expectWarning("went wrong");
}

TEST_F(Listeners, AreRemovedBeforeTheDataOfAnObjectThatEnds) {
    spec.onDisconnect = [&](hos::HOSInterfacePtr source) {
        ASSERT_TRUE(source);
        EXPECT_NE(source->getInstanceData(shape->id()), nullptr);
    };
    begin();
    const auto kept = listen("a");
    listen("b");
    listen("c", "Closed");
    object = {};
    EXPECT_EQ(shape->log(), (Log{"populate", "create", "connect Moved", "connect Closed",
                                 "disconnect Moved", "disconnect Closed", "destroy"}));
    kept->remove();
    EXPECT_TRUE(heard.empty());
}

TEST_F(Listeners, MayEndTheirObject) {
    begin();
    listen([&] {
        object->destroy(hos::HOSGetPublicClient());
        object = {};
    });
    listen("after");
    send(hos::HOSInterfacePtr(object), "Moved");
    EXPECT_TRUE(heard.empty());
    EXPECT_EQ(shape->log().back(), "destroy");
}

TEST_F(Listeners, ThatCannotBeDisconnectedAreWarnings) {
    spec.onDisconnect = [](hos::HOSInterfacePtr) { velmar::raiseError("Test:stuck", "stuck"); };
    begin();
    listen("a");
    object = {};
    EXPECT_EQ(shape->log().back(), "destroy");
    expectWarning("stuck");
}

TEST_F(Objects, ClassesAreFoundByTheirNamesAndClosedAfterPopulation) {
    TestClass shape({});
    hos::HOSPackage* package = hos::HOSPackage::getNamespace(name("Test"));
    EXPECT_EQ(hos::HOSClass::getClass(shape.id()), &shape.live());
    EXPECT_EQ(&TestClass({}, shape.id().str().substr(5)).live(), &shape.live()); // the first stays
    EXPECT_EQ(shape.live().getPackage(), package);
    hos::HOSInterfacePtr none = shape.makeObject();
    EXPECT_FALSE(*package->findClass(&none, "Nobody", 0));
    EXPECT_EQ(hos::HOSPackage::getNamespace(name("Nowhere")), nullptr);
    hos::id superclass = name("velmar.mixin.CustomDisplay");
    EXPECT_EQ(errorOf([&] { shape.live().addSuperclass(&superclass, true, nullptr, true); }),
              "VELMAR:class:ClassIsClosed");
    hos::HOSInterfacePtr abstract;
    EXPECT_EQ(errorOf([&] { hos::HOSClass::getClass(superclass)->newInstance(&abstract); }),
              "VELMAR:class:AbstractClass");
}
