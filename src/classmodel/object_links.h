// The two sides of the links between objects.
#pragma once

#include "host/interface.h"

#include <boost/container/small_vector.hpp>

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>

namespace axlink2 {

// Tells one link from all others; both of its sides have it.
using LinkKey = std::uint64_t;

// An object that another one was returned from; the handle is weak.
struct ParentLink {
    LinkKey key;
    hos::HOSInterfacePtr object;
};

// What a member returned has one.
using ParentLinks = boost::container::small_vector<ParentLink, 1>;

// The objects that were returned from one, in the order in which they were linked. However many
// there are, one is added and taken away in next to no time. The handles are weak; those of objects
// that have gone may stay among them, as null.
class ChildLinks {
  public:
    // Gives the key of the new link.
    LinkKey add(const hos::HOSInterfacePtr& object);
    // Moves links to the end of these, under new keys. Needs no memory.
    void take(ChildLinks&& others) noexcept;
    // Takes the link of that key away, if it is there.
    void erase(LinkKey key) noexcept { links_.erase(key); }
    void clear() noexcept { *this = {}; }

    // The first one, taken away.
    std::pair<LinkKey, hos::HOSInterfacePtr> takeFirst();

    // None, and none that has gone.
    bool empty() const { return links_.empty(); }
    auto begin() const { return links_.begin(); }
    auto end() const { return links_.end(); }

  private:
    // Of nodes, which can move.
    std::map<LinkKey, hos::HOSInterfacePtr> links_;
    std::size_t sweepAt_ = 8; // how many there are when those that have gone are taken out
};

} // namespace axlink2
