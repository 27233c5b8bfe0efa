// One side of the links between objects.
#pragma once

#include "host/interface.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace axlink2 {

// Tells one link from all others; both of its sides have it.
using LinkKey = std::uint64_t;

struct ObjectLink {
    LinkKey key;
    hos::HOSInterfacePtr object; // weak; null when the object, or the link, has gone
};

// Links to other objects in the order in which they were made. However many there are, one is added
// and taken away in next to no time. Those that have gone may stay among them, as null.
class ObjectLinks {
  public:
    // Adds a link and gives its key, or adds the other side of the link of that key, which is
    // younger than those before it.
    LinkKey add(const hos::HOSInterfacePtr& object);
    void add(const hos::HOSInterfacePtr& object, LinkKey key);
    // Takes the link of that key away, if it is there.
    void erase(LinkKey key);
    void clear() { *this = {}; }

    // None, and none that has gone.
    bool empty() const { return links_.empty(); }
    std::size_t size() const { return links_.size(); }
    const ObjectLink& operator[](std::size_t index) const { return links_[index]; }
    auto begin() const { return links_.begin(); }
    auto end() const { return links_.end(); }

  private:
    void sweep();

    std::vector<ObjectLink> links_; // by ascending key
    std::size_t erased_ = 0;        // null ones among them, those left by objects not counted
};

} // namespace axlink2
