// Objects of live classes: their data, dynamic properties and listeners.
#pragma once

#include "host/embedding.h"
#include "host/live_class.h"

#include <memory>
#include <vector>

namespace velmar {

class LiveObject;

// One listener, shared by the object and whoever added it.
class ListenerRecord final : public Listener, public std::enable_shared_from_this<ListenerRecord> {
  public:
    ListenerRecord(const hos::HOSInterfacePtr& source, hos::id event, Callback callback)
        : source(source, hos::HOSReferenceType::Weak), event(event), callback(std::move(callback)) {
    }

    void setEnabled(bool enabled) override { enabled_ = enabled; }
    bool isEnabled() const override { return enabled_ && !removed; }
    void remove() override;

    const hos::HOSInterfacePtr source; // weak
    const hos::id event;
    Callback callback;
    bool removed = false;

  private:
    bool enabled_ = true;
};

class LiveObject final : public hos::HOSInterface {
  public:
    // An object with the data that its class makes for it.
    explicit LiveObject(LiveClass& owner);
    ~LiveObject() override;

    bool isDeleted() const override { return state_ == State::Ended; }
    void notifyListeners(const hos::HOSClient* client, const hos::id& eventName,
                         hos::HOSEventData* data) override;
    void destroy(const hos::HOSClient* client) override;
    hos::HOSIterator* getDynamicProperties(hos::HOSIterator* out) override;
    hos::HOSInterfacePtr* findDynamicProperty(hos::HOSInterfacePtr* out, hos::id name) override;
    hos::HOSInterfacePtr* findProperty(hos::HOSInterfacePtr* out, hos::id name) override;
    hos::HOSClass* getClass() override { return &class_; }
    void* getInstanceData(hos::id classId) override {
        return classId == class_.classId() ? data_ : nullptr;
    }
    void addDynamicProperty(hos::HOSGenericProp* property) override;

    LiveClass& liveClass() const { return class_; }
    // The dynamic property of that name; null without one.
    hos::HOSGenericProp* dynamicProperty(hos::id name) const;
    void removeDynamicProperty(const hos::HOSGenericProp* property);

    // Adds a listener; connects the event when it is its first one.
    void addListener(std::shared_ptr<ListenerRecord> listener);
    void removeListener(ListenerRecord& listener);

    static std::size_t liveCount();

  protected:
    void lastStrongHandleGone() override { end(); }

  private:
    enum class State : unsigned char { Alive, Ending, Ended };
    struct DynamicProperty;
    // What few objects have.
    struct Extras;

    void end();
    bool isListenedTo(hos::id event) const;
    void disconnect(hos::id event);
    hos::HOSInterfacePtr weakHandle();
    Extras& extras();

    LiveClass& class_;
    void* data_ = nullptr;
    State state_ = State::Alive;
    std::unique_ptr<Extras> extras_;
};

// The object of a handle. Raises "VELMAR:class:InvalidHandle" for a null one and an ended object.
hos::HOSInterface& requireAlive(const hos::HOSInterfacePtr& handle);

} // namespace velmar
