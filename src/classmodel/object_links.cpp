// Links are sought by their keys, and swept when there are twice as many as had been left.
#include "classmodel/object_links.h"

#include <algorithm>

namespace axlink2 {
namespace {

// Objects are linked on the interpreter's thread alone.
LinkKey nextKey() noexcept {
    static LinkKey last = 0;
    return ++last;
}

} // namespace

LinkKey ChildLinks::add(const hos::HOSInterfacePtr& object) {
    if (links_.size() >= sweepAt_) {
        // Objects that have ended leave their links behind.
        std::erase_if(links_, [](const auto& link) { return !link.second; });
        sweepAt_ = std::max<std::size_t>(8, 2 * links_.size());
    }
    const LinkKey key = nextKey();
    links_.try_emplace(links_.end(), key, object, hos::HOSReferenceType::Weak);
    return key;
}

void ChildLinks::take(ChildLinks&& others) noexcept {
    while (!others.links_.empty()) {
        auto link = others.links_.extract(others.links_.begin());
        link.key() = nextKey();
        links_.insert(links_.end(), std::move(link));
    }
}

std::pair<LinkKey, hos::HOSInterfacePtr> ChildLinks::takeFirst() {
    auto link = links_.extract(links_.begin());
    return {link.key(), std::move(link.mapped())};
}

} // namespace axlink2
