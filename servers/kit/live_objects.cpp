// A list through all live objects.
#include "servers/kit/live_objects.h"

#include <mutex>

namespace kit {

namespace {

std::mutex guard;
LiveObject* first = nullptr;
int count = 0;

} // namespace

LiveObject::LiveObject(std::string_view name) : name_(name) {
    const std::lock_guard lock(guard);
    next_ = first;
    if (first) first->previous_ = this;
    first = this;
    ++count;
}

LiveObject::~LiveObject() {
    const std::lock_guard lock(guard);
    (previous_ ? previous_->next_ : first) = next_;
    if (next_) next_->previous_ = previous_;
    --count;
}

int liveObjects() {
    const std::lock_guard lock(guard);
    return count;
}

std::vector<std::string> liveObjectNames() {
    const std::lock_guard lock(guard);
    std::vector<std::string> names;
    for (const LiveObject* object = first; object; object = object->next_)
        names.emplace_back(object->name_);
    return names;
}

} // namespace kit
