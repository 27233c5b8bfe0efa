// Listeners of events: connected with the first, run in order, disconnected with the last.
#include "host/host_messages.h"
#include "host/live_object_extras.h"
#include "host/message_ids.h"
#include "host/object_array.h"

#include <algorithm>

namespace velmar {

bool LiveObject::isListenedTo(hos::id event) const {
    return extras_ && std::ranges::any_of(extras_->listeners, [&](const auto& listener) {
               return listener->event == event;
           });
}

void LiveObject::disconnect(hos::id event) {
    if (hos::HOSEventInfo* info = class_.event(event)) info->removeListener(weakHandle());
}

void LiveObject::addListener(std::shared_ptr<ListenerRecord> listener) {
    const hos::id event = listener->event;
    hos::HOSEventInfo* info = class_.event(event);
    if (!info) fail(keys::UndefinedEvent, event.str(), class_.classId().str());
    if (info->getListenAccess() != 0) fail(keys::EventAccess, event.str(), class_.classId().str());
    const hos::HOSInterfacePtr self(this);
    if (state_ == State::Alive && !isListenedTo(event)) info->addListener(weakHandle());
    // Connecting runs foreign code, in which the object may have ended.
    if (state_ != State::Alive) hmsgcore::raise(VELMAR::class_::InvalidHandle());
    try {
        extras().listeners.push_back(std::move(listener));
    } catch (...) {
        if (!isListenedTo(event)) disconnect(event);
        throw;
    }
}

void LiveObject::removeListener(ListenerRecord& listener) {
    if (listener.removed || !extras_) return;
    listener.removed = true;
    const hos::HOSInterfacePtr self(this);
    const auto kept = listener.shared_from_this();
    std::erase(extras_->listeners, kept);
    if (!isListenedTo(kept->event)) disconnect(kept->event);
}

void LiveObject::notifyListeners(const hos::HOSClient*, const hos::id& eventName,
                                 hos::HOSEventData* data) {
    if (state_ != State::Alive || !isListenedTo(eventName)) return;
    const hos::HOSInterfacePtr self(this);
    const auto snapshot = extras_->listeners;
    const harray::unique_array source(hoCreateHOSMatrix(1, 1, class_.classId()));
    hoSetArrayElement(source.get(), 0, self);
    if (data) data->incrementNotifyCount();
    struct Ending {
        hos::HOSEventData* data;
        ~Ending() {
            if (data) data->decrementNotifyCount();
        }
    } ending{data};
    const harray::detail::ProgramRuns running;
    const hxArray& event = harray::detail::reading(data ? data->getEventData() : nullptr);
    for (const auto& listener : snapshot) {
        if (listener->event != eventName || !listener->isEnabled()) continue;
        try {
            listener->callback(source.get(), &event);
        } catch (...) {
            warn(keys::ListenerFailed, eventName.str(), class_.classId().str(),
                 describeError(std::current_exception()).text);
        }
    }
}

void ListenerRecord::remove() {
    if (hos::HOSInterface* object = source) static_cast<LiveObject*>(object)->removeListener(*this);
    removed = true;
}

std::shared_ptr<Listener> addListener(const hos::HOSInterfacePtr& object, const std::string& event,
                                      Callback callback) {
    hos::HOSInterface& source = requireAlive(object);
    if (!source.getClass()) hmsgcore::raise(VELMAR::class_::InvalidHandle());
    auto listener = std::make_shared<ListenerRecord>(
        object, hos::internal::makeInterned(std::string(event)), std::move(callback));
    // Only live objects have a class.
    static_cast<LiveObject&>(source).addListener(listener);
    return listener;
}

} // namespace velmar

namespace hos {

HOSInterface* HOSEventData::getSourceWeak() const {
    HOSInterfacePtr source;
    getSource(&source);
    return source;
}

} // namespace hos
