// Links are sought by their keys, and swept when half of them have gone.
#include "classmodel/object_links.h"

#include <algorithm>

namespace axlink2 {

LinkKey ObjectLinks::add(const hos::HOSInterfacePtr& object) {
    // Objects are linked on the interpreter's thread alone.
    static LinkKey lastKey = 0;
    add(object, ++lastKey);
    return lastKey;
}

void ObjectLinks::add(const hos::HOSInterfacePtr& object, LinkKey key) {
    if (links_.size() == links_.capacity()) {
        // Objects that have ended leave their links behind.
        sweep();
        links_.reserve(std::max<std::size_t>(1, 2 * links_.size()));
    }
    links_.push_back({key, hos::HOSInterfacePtr(object, hos::HOSReferenceType::Weak)});
}

void ObjectLinks::erase(LinkKey key) {
    const auto found = std::ranges::lower_bound(links_, key, {}, &ObjectLink::key);
    if (found == links_.end() || found->key != key) return;
    if (found + 1 == links_.end()) {
        links_.pop_back();
        return;
    }
    found->object = {};
    if (++erased_ > links_.size() / 2) sweep();
}

void ObjectLinks::sweep() {
    std::erase_if(links_, [](const ObjectLink& link) { return !link.object; });
    erased_ = 0;
}

} // namespace axlink2
