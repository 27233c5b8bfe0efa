// A small class of the host, for member chains and events without any server.
#include "shell/widget_class.h"

#include "host/class.h"
#include "host/embedding.h"
#include "host/object_array.h"

#include <functional>

namespace velsh::test {

namespace {

struct Widget {
    Value name, child;
};

hos::id idOf(const char* name) { return hos::internal::makeInterned(name); }
hos::id widgetClass() { return idOf("Test.Widget"); }

Widget& widgetOf(hos::HOSInterface* object) {
    return *static_cast<Widget*>(object->getInstanceData(widgetClass()));
}

hxArray* newWidget(Value name) {
    hos::HOSInterfacePtr object;
    hos::HOSClass* widgets = hos::HOSClass::getClass(widgetClass());
    widgets->newInstance(&object);
    widgets->prepareInstance(object);
    widgets->completeInstance(object);
    widgetOf(object).name = std::move(name);
    hxArray* array = hoCreateHOSMatrix(1, 1, widgetClass());
    hoSetArrayElement(array, 0, object);
    return array;
}

class TickData : public hos::HOSEventData {
  public:
    TickData(hos::HOSInterfacePtr source, double count) : source_(source), data_(number(0)) {
        data_ = Value(hxCreateStructMatrix(1, 1, 0, nullptr));
        hxSetField(data_.writable(), 0, "Count", hxCreateDoubleScalar(count));
    }
    hos::id* getEventName(hos::id* out) const override { return *out = idOf("Ticked"), out; }
    hos::HOSInterfacePtr* getSource(hos::HOSInterfacePtr* out) const override {
        return *out = source_, out;
    }
    HOSEventData* clone() const override { return new TickData(*this); }
    hxArray* getEventData() const override { return const_cast<hxArray*>(data_.get()); }

  private:
    hos::HOSInterfacePtr source_;
    Value data_;
};

using Body =
    std::function<void(hos::HOSInterfacePtr, hos::HOSValue* outputs, const hos::HOSValue* inputs)>;

class Method : public hos::HOSMethodInfo {
  public:
    Method(const char* name, int inputs, int outputs, Body body)
        : name_(name), outputs_(outputs), body_(std::move(body)) {
        signature_->addInput(widgetClass());
        for (int i = 0; i < inputs; ++i)
            signature_->addInput(idOf("double scalar"));
        for (int i = 0; i < outputs; ++i)
            signature_->addOutput(idOf("any"));
    }
    const char* getName() const override { return name_; }
    hos::HOSMethodSignature* getSignature() const override { return signature_.get(); }
    void invoke(const hos::HOSClient*, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t, hos::HOSValue* inputs) override {
        body_(hoGetArrayElement(inputs[0].array(), 0), outputs, inputs + 1);
        *outputCount = static_cast<std::uint32_t>(outputs_);
    }

  private:
    const char* name_;
    int outputs_;
    Body body_;
    hos::HOSMethodSignaturePtr signature_ = hos::HOSMethodSignature::createMethodSignature();
};

class Property : public hos::HOSPropInfo {
  public:
    Property(const char* name, Value Widget::*field) : name_(name), field_(field) {}
    const char* getName() const override { return name_; }
    hos::HOSValue* getDefaultValue(hos::HOSValue* out) const override {
        return *out = hos::HOSValue(), out;
    }
    hos::HOSDataTypePtr* getDataType(hos::HOSDataTypePtr* out) const override {
        return *out = hos::HOSDataTypePtr(idOf("any")), out;
    }
    // Without a field the property is Size, which can only be read.
    hos::MemberAccess getSetAccess() const override { return field_ ? 0 : 2; }
    hos::HOSValue* getValue(hos::HOSValue* out, hos::HOSInterface* object) override {
        Value value = field_ ? widgetOf(object).*field_ : doubleRow({3, 4});
        return *out = hos::HOSValue::ofPointer(value.take().release()), out;
    }
    void setValue(hos::HOSInterface* object, hos::HOSValue value) override {
        widgetOf(object).*field_ = copyOf(value.array());
    }
    void destroyValue(hos::HOSInterface*, hos::HOSValue value) override {
        harray::destroyArray(value.array());
    }

  private:
    const char* name_;
    Value Widget::*field_;
};

// Always "glossy", of a type with two constants.
class FinishProperty : public hos::HOSPropInfo {
  public:
    FinishProperty() {
        auto* type = hos::TypedEnumStringType::createCaseInsensitiveInstance(
            hos::HOSDataTypePtr(idOf("int32 scalar")), "Finish", nullptr);
        if (type->hasName("matt")) return;
        type->addValue(0, "glossy", nullptr);
        type->addValue(1, "matt", nullptr);
    }
    const char* getName() const override { return "Finish"; }
    hos::HOSValue* getDefaultValue(hos::HOSValue* out) const override {
        return *out = hos::HOSValue(), out;
    }
    hos::HOSDataTypePtr* getDataType(hos::HOSDataTypePtr* out) const override {
        return *out = hos::HOSDataTypePtr(idOf("Finish")), out;
    }
    hos::MemberAccess getSetAccess() const override { return 2; }
    hos::HOSValue* getValue(hos::HOSValue*, hos::HOSInterface*) override {
        velmar::raiseError("VELMAR:unfinished", "It is wet.\nWait.");
    }
    void setValue(hos::HOSInterface*, hos::HOSValue) override {}
    void destroyValue(hos::HOSInterface*, hos::HOSValue) override {}
};

class Event : public hos::HOSEventInfo {
  public:
    const char* getName() const override { return "Ticked"; }
    hos::id* getEventDataType(hos::id* out) const override {
        return *out = idOf("event.EventData"), out;
    }
    void addListener(hos::HOSInterfacePtr) override {}
    void removeListener(hos::HOSInterfacePtr) override {}
};

void give(hos::HOSValue& output, Value value) {
    output = hos::HOSValue::ofPointer(value.take().release());
}

class WidgetClass : public hos::HOSClassInfo {
  public:
    const char* getName() const override { return "Widget"; }
    void* createInstanceData() override { return new Widget; }
    void destroyInstanceData(hos::HOSInterface*, void* data) override {
        delete static_cast<Widget*>(data);
    }
    void populateClass(hos::HOSClass* target, void*) override {
        target->addProperty(new Property("Name", &Widget::name));
        target->addProperty(new Property("Child", &Widget::child));
        target->addProperty(new Property("Size", nullptr));
        target->addProperty(new FinishProperty);
        target->addEvent(new Event);
        target->addMethod(new Method("Add", 2, 1, [](auto, auto* outputs, auto* inputs) {
            give(outputs[0], number(inputs[0].number() + inputs[1].number()));
        }));
        target->addMethod(new Method("Split", 1, 2, [](auto, auto* outputs, auto* inputs) {
            const double whole = static_cast<double>(static_cast<int>(inputs[0].number()));
            give(outputs[0], number(whole));
            give(outputs[1], number(inputs[0].number() - whole));
        }));
        target->addMethod(new Method("Item", 1, 1, [](auto self, auto* outputs, auto*) {
            outputs[0] = hos::HOSValue::ofPointer(newWidget(widgetOf(self).name));
        }));
        target->addMethod(new Method("Fire", 1, 0, [](auto self, auto*, auto* inputs) {
            TickData data(self, inputs[0].number());
            self->notifyListeners(hos::HOSGetPublicClient(), idOf("Ticked"), &data);
        }));
        target->addMethod(new Method("delete", 0, 0, [](auto self, auto*, auto*) {
            self->destroy(hos::HOSGetPublicClient());
        }));
    }
};

class TestPackage : public hos::HOSNamespaceInfo {
  public:
    const char* getName() const override { return "Test"; }
    void namespaceNotification(int, const char*) override {}
    void setPackage(hos::HOSPackage*) override {}
};

} // namespace

void defineWidgets() {
    hos::HOSPackage::addNamespace(new TestPackage);
    hos::HOSPackage::getNamespace(idOf("Test"))->addClass(new WidgetClass, 0, 0);
    velmar::defineFunction("widget", [](int, auto* outputs, int inputCount, auto* inputs) {
        outputs[0].reset(newWidget(inputCount ? copyOf(inputs[0]) : Value()));
    });
}

} // namespace velsh::test
