// The life of an object, and its dynamic properties.
#include "host/live_object.h"

#include "host/host_messages.h"
#include "host/live_object_extras.h"
#include "host/message_ids.h"

#include <algorithm>

namespace velmar {
namespace {

std::size_t liveObjects = 0;

// The face of a dynamic property, which can take the property off its object.
class DynamicPropertyFace final : public hos::Face {
  public:
    DynamicPropertyFace(LiveObject& owner, hos::HOSPropInfo* property)
        : Face(hos::FaceKind::Property, property), owner_(owner),
          property_(static_cast<hos::HOSGenericProp*>(property)) {}

    // The face is detached before its object goes, so the owner is there.
    void destroy(const hos::HOSClient*) override {
        if (!isDeleted()) owner_.removeDynamicProperty(property_);
    }

  private:
    LiveObject& owner_;
    const hos::HOSGenericProp* property_;
};

// Runs what mustn't raise while an object ends; an error becomes a warning.
template <class Step>
void reportingErrors(const LiveClass& owner, Step&& step) noexcept {
    try {
        step();
    } catch (...) {
        try {
            warn(keys::EndFailed, owner.classId().str(),
                 describeError(std::current_exception()).text);
        } catch (...) {
            // A warning that can't be written has nobody left to tell.
        }
    }
}

} // namespace

hos::HOSInterface& requireAlive(const hos::HOSInterfacePtr& handle) {
    hos::HOSInterface* object = handle;
    if (!object || object->isDeleted()) hmsgcore::raise(VELMAR::class_::InvalidHandle());
    return *object;
}

std::size_t LiveObject::liveCount() { return liveObjects; }

std::size_t liveObjectCount() { return LiveObject::liveCount(); }

LiveObject::LiveObject(LiveClass& owner) : class_(owner) {
    data_ = owner.getClassInfo()->createInstanceData();
    ++liveObjects;
}

LiveObject::~LiveObject() = default;

LiveObject::Extras& LiveObject::extras() {
    if (!extras_) extras_ = std::make_unique<Extras>();
    return *extras_;
}

hos::HOSInterfacePtr LiveObject::weakHandle() {
    return hos::HOSInterfacePtr(hos::HOSInterfacePtr(this), hos::HOSReferenceType::Weak);
}

void LiveObject::destroy(const hos::HOSClient* client) {
    if (state_ == State::Alive && class_.getClassInfo()->isOkToDestroy(client, this)) end();
}

void LiveObject::end() {
    if (state_ != State::Alive) return;
    state_ = State::Ending;
    const hos::HOSInterfacePtr self(this); // the steps below may drop every other handle
    if (extras_) {
        auto listeners = std::exchange(extras_->listeners, {});
        std::vector<hos::id> connected;
        for (const auto& listener : listeners) {
            listener->removed = true;
            if (std::ranges::find(connected, listener->event) == connected.end())
                connected.push_back(listener->event);
        }
        for (hos::id event : connected)
            reportingErrors(class_, [&] { disconnect(event); });
    }
    if (data_)
        reportingErrors(class_, [&] { class_.getClassInfo()->destroyInstanceData(this, data_); });
    data_ = nullptr;
    state_ = State::Ended;
    --liveObjects;
    if (extras_)
        for (DynamicProperty& property : extras_->properties)
            property.detach();
    extras_.reset();
}

hos::HOSIterator* LiveObject::getDynamicProperties(hos::HOSIterator* out) {
    std::vector<hos::HOSInterfacePtr> faces;
    if (extras_)
        for (const DynamicProperty& property : extras_->properties)
            faces.push_back(property.face);
    *out = hos::HOSIterator(std::move(faces));
    return out;
}

hos::HOSInterfacePtr* LiveObject::findDynamicProperty(hos::HOSInterfacePtr* out, hos::id name) {
    *out = hos::HOSInterfacePtr();
    if (extras_)
        for (const DynamicProperty& property : extras_->properties)
            if (property.name == name) *out = property.face;
    return out;
}

hos::HOSInterfacePtr* LiveObject::findProperty(hos::HOSInterfacePtr* out, hos::id name) {
    class_.findClassProperty(out, name);
    return *out ? out : findDynamicProperty(out, name);
}

hos::HOSGenericProp* LiveObject::dynamicProperty(hos::id name) const {
    if (extras_)
        for (const DynamicProperty& property : extras_->properties)
            if (property.name == name) return property.info.get();
    return nullptr;
}

void LiveObject::addDynamicProperty(hos::HOSGenericProp* property) {
    std::unique_ptr<hos::HOSGenericProp> owned(property);
    if (state_ != State::Alive) hmsgcore::raise(VELMAR::class_::InvalidHandle());
    const hos::id name = hos::internal::makeInterned(owned->getName());
    if (class_.property(name) || dynamicProperty(name))
        fail(keys::PropertyExists, name.str(), class_.classId().str());
    hos::HOSInterfacePtr face(new DynamicPropertyFace(*this, owned.get()));
    extras().properties.push_back({std::move(owned), name, std::move(face)});
}

void LiveObject::removeDynamicProperty(const hos::HOSGenericProp* property) {
    if (!extras_) return;
    auto& all = extras_->properties;
    const auto at = std::ranges::find_if(
        all, [&](const DynamicProperty& one) { return one.info.get() == property; });
    if (at == all.end()) return;
    // The object's list is in order again before the property and what it holds go.
    DynamicProperty removed = std::move(*at);
    all.erase(at);
    removed.detach();
}

} // namespace velmar
