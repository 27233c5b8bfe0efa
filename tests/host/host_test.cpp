// Classes made of lambdas, and short ways to arrays.
#include "tests/host/host_test.h"

#include <algorithm>
#include <cstring>

namespace host_test {

HostTest::HostTest() {
    velmar::setWarningWriter([this](const std::string& identifier, const std::u16string& text) {
        warnings.push_back(identifier + ": " + hsys::i18n::to_string(text));
    });
}

HostTest::~HostTest() { velmar::setWarningWriter({}); }

unique_array zeros(std::size_t rows, std::size_t columns, hxClassID type) {
    const std::size_t extents[] = {rows, columns};
    return unique_array(hxCreateNumericArray(2, extents, type, hxREAL));
}

unique_array number(double value, hxClassID type) {
    unique_array source(hxCreateDoubleScalar(value));
    if (type == hxDOUBLE_CLASS) return source;
    // Through the host's own conversion to the scalar type of that class.
    const unique_array sample = zeros(1, 1, type);
    const std::string word = std::string(hxGetClassName(sample.get())) + " scalar";
    hos::HOSTypeConversion* conversion =
        hos::HOSTypeRepository::getConversion(name("any"), name(word.c_str()));
    hos::HOSValue word64;
    conversion->convertFromHost(&word64, source.get());
    hxArray* result = nullptr;
    conversion->convertToHost(&result, word64);
    return unique_array(result);
}

unique_array row(const std::vector<double>& values) {
    unique_array array = zeros(1, values.size());
    std::ranges::copy(values, static_cast<double*>(hxGetWritableData(array.get())));
    return array;
}

unique_array text(const char* utf8) { return unique_array(hxCreateString(utf8)); }

unique_array string(const char16_t* content) { return hoststring::createStringArray(content); }

std::string textOf(const hxArray* array) {
    std::u16string content;
    return hoststring::getScalarText(array, content, true) ? hsys::i18n::to_string(content)
                                                           : "<no text>";
}

namespace {

using Spec = std::shared_ptr<ClassSpec>;
using Stored = std::map<std::string, unique_array>;

class TestMethod final : public hos::HOSMethodInfo {
  public:
    TestMethod(MethodSpec spec, hos::id owner)
        : spec_(std::move(spec)), signature_(hos::HOSMethodSignature::createMethodSignature()) {
        for (const char* type : spec_.inputs)
            signature_->addInput(std::strcmp(type, "class") ? name(type) : owner);
        for (const char* type : spec_.outputs)
            signature_->addOutput(name(type));
        signature_->setOptionalInputCount(spec_.optional);
        if (spec_.variableInput) signature_->setVariableInput();
        if (spec_.variableOutput) signature_->setVariableOutput();
    }

    const char* getName() const override { return spec_.name.c_str(); }
    hos::MemberAccess getMemberAccess() const override { return spec_.access; }
    hos::HOSMethodSignature* getSignature() const override { return signature_.get(); }
    void invoke(const hos::HOSClient*, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override {
        if (spec_.body) spec_.body({*outputCount, outputs, inputCount, inputs});
    }

  private:
    MethodSpec spec_;
    hos::HOSMethodSignaturePtr signature_;
};

class TestProperty final : public hos::HOSPropInfo {
  public:
    explicit TestProperty(PropertySpec spec) : spec_(std::move(spec)) {}

    const char* getName() const override { return spec_.name.c_str(); }
    hos::HOSValue* getDefaultValue(hos::HOSValue* out) const override { return out; }
    hos::HOSDataTypePtr* getDataType(hos::HOSDataTypePtr* out) const override {
        *out = hos::HOSDataTypePtr(name(spec_.type));
        return out;
    }
    hos::MemberAccess getGetAccess() const override { return spec_.get || spec_.stored ? 0 : 2; }
    hos::MemberAccess getSetAccess() const override { return spec_.set || spec_.stored ? 0 : 2; }
    hos::HOSValue* getValue(hos::HOSValue* out, hos::HOSInterface* object) override {
        if (spec_.stored) {
            const hxArray* kept = storedBy(object)[spec_.name].get();
            *out = hos::HOSValue::ofPointer(kept ? hxCreateSharedDataCopy(kept) : nullptr);
        } else {
            *out = spec_.get();
        }
        return out;
    }
    void setValue(hos::HOSInterface* object, hos::HOSValue value) override {
        if (spec_.stored)
            storedBy(object)[spec_.name].reset(hxCreateSharedDataCopy(value.array()));
        else
            spec_.set(value);
    }
    void destroyValue(hos::HOSInterface*, hos::HOSValue value) override {
        hos::HOSDataTypePtr(name(spec_.type))->releaseValue(value);
    }

  private:
    PropertySpec spec_;
};

class TestEvent final : public hos::HOSEventInfo {
  public:
    TestEvent(std::string event, Spec spec) : name_(std::move(event)), spec_(std::move(spec)) {}

    const char* getName() const override { return name_.c_str(); }
    hos::id* getEventDataType(hos::id* out) const override {
        *out = name("event.EventData");
        return out;
    }
    void addListener(hos::HOSInterfacePtr) override {
        if (spec_->onConnect) spec_->onConnect();
        spec_->log.push_back("connect " + name_);
    }
    void removeListener(hos::HOSInterfacePtr source) override {
        spec_->log.push_back("disconnect " + name_);
        if (spec_->onDisconnect) spec_->onDisconnect(source);
    }

  private:
    std::string name_;
    Spec spec_;
};

class TestClassInfo final : public hos::HOSClassInfo {
  public:
    TestClassInfo(std::string className, Spec spec)
        : name_(std::move(className)), spec_(std::move(spec)) {}

    const char* getName() const override { return name_.c_str(); }
    void populateClass(hos::HOSClass* target, void*) override {
        spec_->log.push_back("populate");
        hos::id owner;
        target->getID(&owner);
        for (const char* superclass : spec_->superclasses) {
            hos::id other = name(superclass);
            target->addSuperclass(&other, true, nullptr, true);
        }
        for (MethodSpec method : spec_->methods) {
            if (method.name == "own name") method.name = name_;
            target->addMethod(new TestMethod(std::move(method), owner));
        }
        for (const PropertySpec& property : spec_->properties)
            target->addProperty(new TestProperty(property));
        for (const std::string& event : spec_->events)
            target->addEvent(new TestEvent(event, spec_));
    }
    void* createInstanceData() override {
        spec_->log.push_back("create");
        return new Stored;
    }
    void destroyInstanceData(hos::HOSInterface* object, void* data) override {
        EXPECT_FALSE(object->isDeleted());
        EXPECT_EQ(&storedBy(object), data);
        spec_->log.push_back("destroy");
        delete static_cast<Stored*>(data);
    }

  private:
    std::string name_;
    Spec spec_;
};

class TestNamespace final : public hos::HOSNamespaceInfo {
  public:
    const char* getName() const override { return "Test"; }
    void namespaceNotification(int, const char*) override {}
    void setPackage(hos::HOSPackage*) override {}
};

class TestEventData final : public hos::HOSEventData {
  public:
    TestEventData(hos::id event, hos::HOSInterfacePtr source, hxArray* data)
        : event_(event), source_(std::move(source)), data_(data) {}
    hos::id* getEventName(hos::id* out) const override { return *out = event_, out; }
    hos::HOSInterfacePtr* getSource(hos::HOSInterfacePtr* out) const override {
        return *out = source_, out;
    }
    hos::HOSEventData* clone() const override { return new TestEventData(*this); }
    hxArray* getEventData() const override { return data_; }

  private:
    hos::id event_;
    hos::HOSInterfacePtr source_;
    hxArray* data_;
};

} // namespace

Stored& storedBy(hos::HOSInterface* object) {
    hos::id owner;
    object->getClass()->getID(&owner);
    return *static_cast<Stored*>(object->getInstanceData(owner));
}

void send(const hos::HOSInterfacePtr& object, const char* event, hxArray* data) {
    TestEventData sent(name(event), object, data);
    object->notifyListeners(hos::HOSGetPublicClient(), name(event), &sent);
    EXPECT_TRUE(sent.isOkToDestroy());
}

TestClass::TestClass(ClassSpec spec, std::string className)
    : spec_(std::make_shared<ClassSpec>(std::move(spec))) {
    static int number = 0;
    if (className.empty()) className = "Class" + std::to_string(++number);
    hos::HOSPackage::addNamespace(new TestNamespace); // ends all but the first
    hos::HOSPackage* package = hos::HOSPackage::getNamespace(name("Test"));
    package->addClass(new TestClassInfo(className, spec_), 0, 2);
    hos::HOSInterfacePtr handle;
    live_ = hos::HOSClassPtrHelper::getObject(*package->findClass(&handle, className, 0));
}

hos::id TestClass::id() const {
    hos::id own;
    return *live_->getID(&own);
}

hos::HOSInterfacePtr TestClass::makeObject() const {
    hos::HOSInterfacePtr object;
    live_->newInstance(&object);
    live_->prepareInstance(object);
    live_->completeInstance(object);
    return object;
}

unique_array TestClass::makeArray(std::size_t count) const {
    unique_array array(hoCreateHOSMatrix(1, count, id()));
    for (std::size_t i = 0; i < count; ++i)
        hoSetArrayElement(array.get(), i, makeObject());
    return array;
}

} // namespace host_test
