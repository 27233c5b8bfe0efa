// Objects: their life, properties and listeners.
#include "host/host_messages.h"
#include "tests/host/host_test.h"

using namespace host_test;

namespace {

using Log = std::vector<std::string>;

// An event with a structure, as a module sends it.
class Event final : public hos::HOSEventData {
  public:
    Event(hos::id event, hos::HOSInterfacePtr source, hxArray* data)
        : event_(event), source_(std::move(source)), data_(data) {}
    hos::id* getEventName(hos::id* out) const override {
        *out = event_;
        return out;
    }
    hos::HOSInterfacePtr* getSource(hos::HOSInterfacePtr* out) const override {
        *out = source_;
        return out;
    }
    hos::HOSEventData* clone() const override { return new Event(*this); }
    hxArray* getEventData() const override { return data_; }

  private:
    hos::id event_;
    hos::HOSInterfacePtr source_;
    hxArray* data_;
};

void send(const hos::HOSInterfacePtr& object, const char* event, double value = 0) {
    const unique_array data = number(value);
    Event sent(name(event), object, data.get());
    object->notifyListeners(hos::HOSGetPublicClient(), name(event), &sent);
    EXPECT_TRUE(sent.isOkToDestroy());
}

velmar::Callback logging(Log& log, std::string entry) {
    return [&log, entry = std::move(entry)](const hxArray* source, const hxArray* event) {
        EXPECT_TRUE(hoIsHOS(source));
        log.push_back(entry + std::to_string(static_cast<int>(hxGetScalar(event))));
    };
}

ClassSpec withEvents() {
    ClassSpec spec;
    spec.events = {"Moved", "Closed"};
    return spec;
}

} // namespace

class Objects : public HostTest {};

TEST_F(Objects, PopulateTheirClassOnceAndEndWithTheirLastStrongHandle) {
    TestClass shape({});
    EXPECT_TRUE(shape.log().empty());
    hos::HOSInterfacePtr object = shape.makeObject();
    const unique_array array(hoCreateHOSMatrix(1, 1, shape.id()));
    hoSetArrayElement(array.get(), 0, object);
    const hos::HOSInterfacePtr weak(object, hos::HOSReferenceType::Weak);
    object = {};
    ASSERT_TRUE(weak);
    EXPECT_EQ(*static_cast<int*>(weak->getInstanceData(shape.id())), 7);
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
    std::u16string label;
    unique_array any;
    const TestClass shape(
        {{},
         {{"Size", "double scalar", [&] { return hos::HOSValue::ofDouble(stored); },
           [&](hos::HOSValue value) { stored = value.number(); }},
          {"Label", "unicodeString",
           [&] { return hos::HOSValue::ofPointer(new std::u16string(label)); },
           [&](hos::HOSValue value) { label = *value.text(); }},
          {"Any", "any",
           [&] {
               return hos::HOSValue::ofPointer(any ? hxCreateSharedDataCopy(any.get()) : nullptr);
           },
           [&](hos::HOSValue value) { any.reset(hxCreateSharedDataCopy(value.array())); }},
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
    set("Label", string(u"text"));
    EXPECT_EQ(textOf(get("Label").get()), "text");
    EXPECT_EQ(hxGetNumberOfElements(get("Any").get()), 0u);
    set("Any", row({1, 2, 3}));
    EXPECT_EQ(hxGetNumberOfElements(get("Any").get()), 3u);
    EXPECT_EQ(hxGetScalar(get("Fixed").get()), -5);

    EXPECT_EQ(errorOf([&] { set("Size", text("big")); }), "VELMAR:array:WrongConversion");
    EXPECT_EQ(errorOf([&] { set("Fixed", number(1)); }), "VELMAR:class:ReadOnlyProperty");
    EXPECT_EQ(errorOf([&] { get("Hole"); }), "VELMAR:class:WriteOnlyProperty");
    EXPECT_EQ(errorOf([&] { get("size"); }), "VELMAR:UndefinedFunction");
    EXPECT_EQ(errorOf([&] { hxGetPropertyShared(object.get(), 1, "Size"); }),
              "VELMAR:badsubscript");
    EXPECT_EQ(errorOf([&] { velmar::callMember(object.get(), "Size", 1, {object.get()}); }),
              "VELMAR:class:PropertyInputs");
    EXPECT_EQ(errorOf([&] { velmar::setMember(shape.makeArray(2).get(), "Size", nullptr); }),
              "VELMAR:class:NotOneObject");
    EXPECT_EQ(errorOf([] { velmar::callMember(number(1).get(), "Size", 1, {}); }),
              "VELMAR:class:NotAnObject");
}

TEST_F(Objects, DynamicPropertiesBelongToOneObject) {
    const TestClass shape({{}, {{"Size", "any", {}, {}}}});
    const hos::HOSInterfacePtr object = shape.makeObject();
    const unique_array array(hoCreateHOSMatrix(1, 1, shape.id()));
    hoSetArrayElement(array.get(), 0, object);
    const auto add = [&](const char* property) {
        object->addDynamicProperty(
            hos::HOSGenericProp::createNewDynamicProp(name(property), name("any"), {}));
    };
    add("Tag");
    EXPECT_EQ(errorOf([&] { add("Tag"); }), "VELMAR:class:PropertyExists");
    EXPECT_EQ(errorOf([&] { add("Size"); }), "VELMAR:class:PropertyExists");
    EXPECT_EQ(hxGetNumberOfElements(unique_array(hxGetPropertyShared(array.get(), 0, "Tag")).get()),
              0u);
    velmar::setMember(array.get(), "Tag", text("mine").get());
    EXPECT_EQ(textOf(velmar::callMember(array.get(), "Tag", 1, {})[0].get()), "mine");
    EXPECT_TRUE(velmar::hasProperty(array.get(), "Tag"));
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
    object->findDynamicProperty(&face, name("Late"));
    object->destroy(hos::HOSGetPublicClient());
    EXPECT_TRUE(face->isDeleted());
    face->destroy(hos::HOSGetPublicClient());
}

TEST_F(Objects, ListenersConnectWithTheFirstAndDisconnectWithTheLast) {
    TestClass shape(withEvents());
    const hos::HOSInterfacePtr object = shape.makeObject();
    Log heard;
    const auto first = velmar::addListener(object, "Moved", logging(heard, "a"));
    const auto second = velmar::addListener(object, "Moved", logging(heard, "b"));
    const auto other = velmar::addListener(object, "Closed", logging(heard, "c"));
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
    EXPECT_EQ(shape.log(),
              (Log{"populate", "create", "connect Moved", "connect Closed", "disconnect Moved"}));
    EXPECT_FALSE(first->isEnabled());
    EXPECT_TRUE(other->isEnabled());
    EXPECT_EQ(errorOf([&] { velmar::addListener(object, "None", {}); }),
              "VELMAR:class:UndefinedEvent");
}

TEST_F(Objects, AListenerThatCannotBeConnectedIsNotAdded) {
    ClassSpec spec = withEvents();
    bool refuse = true;
    spec.onConnect = [&] {
        if (refuse) velmar::raiseError("Test:refused", "no");
    };
    TestClass shape(spec);
    const hos::HOSInterfacePtr object = shape.makeObject();
    Log heard;
    EXPECT_EQ(errorOf([&] { velmar::addListener(object, "Moved", logging(heard, "a")); }),
              "Test:refused");
    refuse = false;
    velmar::addListener(object, "Moved", logging(heard, "b"));
    send(object, "Moved");
    EXPECT_EQ(heard, Log{"b0"});
}

TEST_F(Objects, AnObjectThatEndsTakesNoMoreListeners) {
    ClassSpec spec = withEvents();
    hos::HOSInterfacePtr object;
    Log refused;
    const auto tryToListen = [&] {
        refused.push_back(errorOf([&] { velmar::addListener(object, "Moved", {}); }));
    };
    spec.onConnect = [&] { object->destroy(hos::HOSGetPublicClient()); };
    spec.onDisconnect = [&](hos::HOSInterfacePtr) { tryToListen(); };
    TestClass shape(spec);
    object = shape.makeObject();
    tryToListen(); // it ends while the event is connected
    spec.onConnect = {};
    TestClass other(spec);
    object = other.makeObject();
    velmar::addListener(object, "Moved", {});
    object->destroy(hos::HOSGetPublicClient()); // a listener is tried while the event disconnects
    EXPECT_EQ(refused, Log(2, "VELMAR:class:InvalidHandle"));
}

TEST_F(Objects, AFailingListenerIsAWarningAndTheNextOneRuns) {
    TestClass shape(withEvents());
    const hos::HOSInterfacePtr object = shape.makeObject();
    Log heard;
    std::shared_ptr<velmar::Listener> late;
    velmar::addListener(object, "Moved", [](const hxArray*, const hxArray*) {
        velmar::raiseError("Test:oops", "went wrong");
    });
    velmar::addListener(object, "Moved", [&](const hxArray*, const hxArray*) {
        // Neither the one added now nor the one removed now runs for this event.
        velmar::addListener(object, "Moved", logging(heard, "new"));
        late->remove();
    });
    late = velmar::addListener(object, "Moved", logging(heard, "removed"));
    velmar::addListener(object, "Moved", logging(heard, "last"));
    send(object, "Moved");
    EXPECT_EQ(heard, Log{"last0"});
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_NE(warnings[0].find("went wrong"), std::string::npos) << warnings[0];
}

TEST_F(Objects, EndingRemovesListenersFirstWhileTheDataIsThere) {
    ClassSpec spec = withEvents();
    hos::id owner;
    spec.onDisconnect = [&owner](hos::HOSInterfacePtr source) {
        ASSERT_TRUE(source);
        EXPECT_NE(source->getInstanceData(owner), nullptr);
    };
    TestClass shape(spec);
    owner = shape.id();
    hos::HOSInterfacePtr object = shape.makeObject();
    Log heard;
    const auto kept = velmar::addListener(object, "Moved", logging(heard, "a"));
    velmar::addListener(object, "Moved", logging(heard, "b"));
    velmar::addListener(object, "Closed", logging(heard, "c"));
    object = {};
    EXPECT_EQ(shape.log(), (Log{"populate", "create", "connect Moved", "connect Closed",
                                "disconnect Moved", "disconnect Closed", "destroy"}));
    kept->remove();
    EXPECT_TRUE(heard.empty());
}

TEST_F(Objects, AListenerMayEndItsObject) {
    TestClass shape(withEvents());
    hos::HOSInterfacePtr object = shape.makeObject();
    Log heard;
    velmar::addListener(object, "Moved", [&](const hxArray*, const hxArray*) {
        object->destroy(hos::HOSGetPublicClient());
        object = {};
    });
    velmar::addListener(object, "Moved", logging(heard, "after"));
    send(hos::HOSInterfacePtr(object), "Moved");
    EXPECT_TRUE(heard.empty());
    EXPECT_EQ(shape.log().back(), "destroy");
}

TEST_F(Objects, ErrorsWhileAnObjectEndsAreWarnings) {
    ClassSpec spec = withEvents();
    spec.onDisconnect = [](hos::HOSInterfacePtr) { velmar::raiseError("Test:stuck", "stuck"); };
    TestClass shape(spec);
    hos::HOSInterfacePtr object = shape.makeObject();
    velmar::addListener(object, "Moved", [](const hxArray*, const hxArray*) {});
    object = {};
    EXPECT_EQ(shape.log().back(), "destroy");
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_NE(warnings[0].find("stuck"), std::string::npos);
}

TEST_F(Objects, ClassesAreFoundByTheirNamesAndClosedAfterPopulation) {
    TestClass shape({});
    hos::HOSPackage* package = hos::HOSPackage::getNamespace(name("Test"));
    EXPECT_EQ(hos::HOSClass::getClass(shape.id()), &shape.live());
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
