// Listeners as objects of the host.
#include "host/embedding.h"
#include "host/object_array.h"
#include "shell/function_handles.h"

#include <memory>
#include <vector>

namespace velsh {

namespace {

using ListenerPtr = std::shared_ptr<velmar::Listener>;

constexpr const char* packageName = "velsh";
constexpr const char* className = "Listener";

hos::id listenerClass() { return hos::internal::makeInterned("velsh.Listener"); }

std::vector<std::weak_ptr<velmar::Listener>>& allListeners() {
    static auto* listeners = new std::vector<std::weak_ptr<velmar::Listener>>;
    return *listeners;
}

class ListenerPackage : public hos::HOSNamespaceInfo {
  public:
    const char* getName() const override { return packageName; }
    void namespaceNotification(int, const char*) override {}
    void setPackage(hos::HOSPackage*) override {}
};

ListenerPtr* listenerOf(hos::HOSInterface* object) {
    if (!object || object->isDeleted()) return nullptr;
    return static_cast<ListenerPtr*>(object->getInstanceData(listenerClass()));
}

// Whether the listener runs. That of an object that has gone doesn't.
class EnabledProperty : public hos::HOSPropInfo {
  public:
    const char* getName() const override { return "Enabled"; }
    hos::HOSValue* getDefaultValue(hos::HOSValue* out) const override {
        *out = hos::HOSValue();
        return out;
    }
    hos::HOSDataTypePtr* getDataType(hos::HOSDataTypePtr* out) const override {
        *out = hos::HOSDataTypePtr(hos::internal::makeInterned("logical scalar"));
        return out;
    }
    hos::HOSValue* getValue(hos::HOSValue* out, hos::HOSInterface* object) override {
        *out = hos::HOSValue::ofInteger((*listenerOf(object))->isEnabled());
        return out;
    }
    void setValue(hos::HOSInterface* object, hos::HOSValue value) override {
        (*listenerOf(object))->setEnabled(value.integer() != 0);
    }
    void destroyValue(hos::HOSInterface*, hos::HOSValue) override {}
};

// An object's data is the listener that it stands for.
class ListenerClass : public hos::HOSClassInfo {
  public:
    const char* getName() const override { return className; }
    void populateClass(hos::HOSClass* target, void*) override {
        target->addProperty(new EnabledProperty);
    }
    void* createInstanceData() override { return new ListenerPtr; }
    void destroyInstanceData(hos::HOSInterface*, void* data) override {
        delete static_cast<ListenerPtr*>(data);
    }
};

hos::HOSClass* makeListenerClass() {
    hos::HOSPackage::addNamespace(new ListenerPackage);
    hos::HOSPackage::getNamespace(hos::internal::makeInterned(packageName))
        ->addClass(new ListenerClass, 0, 0);
    return hos::HOSClass::getClass(listenerClass());
}

Value makeListenerObject(ListenerPtr listener) {
    static hos::HOSClass* const listeners = makeListenerClass();
    hos::HOSInterfacePtr object;
    listeners->newInstance(&object);
    listeners->prepareInstance(object);
    listeners->completeInstance(object);
    *listenerOf(object) = std::move(listener);
    Value array(hoCreateHOSMatrix(1, 1, listenerClass()));
    hoSetArrayElement(array.writable(), 0, object);
    return array;
}

} // namespace

Value addListener(const hxArray* object, const std::string& event, const hxArray* handle) {
    if (!isFunction(handle)) raiseWrongType("A listener needs a function handle", handle);
    if (!isObject(object) || countOf(object) != 1)
        raiseWrongType("Events are listened to on one object", object);
    auto callback = [function = copyOf(handle)](const hxArray* source, const hxArray* data) {
        callHandle(function.get(), 0, {copyOf(source), copyOf(data)});
    };
    ListenerPtr listener =
        velmar::addListener(hoGetArrayElement(object, 0), event, std::move(callback));
    std::erase_if(allListeners(), [](const auto& other) { return other.expired(); });
    allListeners().push_back(listener);
    return makeListenerObject(std::move(listener));
}

bool isListener(const hxArray* array) {
    return isObject(array) && hoGetClassID(array) == listenerClass();
}

void removeListener(const hxArray* array) {
    for (std::size_t i = 0; i < countOf(array); ++i) {
        hos::HOSInterfacePtr object = hoGetArrayElement(array, i);
        ListenerPtr* data = listenerOf(object);
        if (!data) continue;
        if (ListenerPtr listener = *data) listener->remove();
        object->destroy(hos::HOSGetPublicClient());
    }
}

void removeAllListeners() {
    // Removing one may end objects, and with them others of the list.
    const auto listeners = std::exchange(allListeners(), {});
    for (const auto& weak : listeners)
        if (ListenerPtr listener = weak.lock()) listener->remove();
}

} // namespace velsh
