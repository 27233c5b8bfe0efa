// What stands in a compound file: a tree of storages and streams, in memory.
#pragma once

#include "platform/fold_case.h"
#include "platform/holders.h"

#include <cstddef>
#include <map>
#include <memory>
#include <variant>
#include <vector>

namespace platform {

using Bytes = std::vector<std::byte>;

// How long an open storage or stream may be used: until it is told to end, or what it was opened
// in ends.
class Lifetime {
  public:
    explicit Lifetime(std::shared_ptr<const Lifetime> parent = nullptr)
        : parent_(std::move(parent)) {}
    void end() { isOver_ = true; }
    bool isOver() const { return isOver_ || (parent_ && parent_->isOver()); }

  private:
    std::shared_ptr<const Lifetime> parent_;
    bool isOver_ = false;
};

// An entry that can be open once at a time.
struct OpenableEntry {
    std::weak_ptr<Lifetime> openedFor;

    bool isOpen() const {
        const auto lifetime = openedFor.lock();
        return lifetime && !lifetime->isOver();
    }
    // Whoever has it open finds it reverted.
    void close() const {
        if (const auto lifetime = openedFor.lock()) lifetime->end();
    }
};

struct StreamEntry : OpenableEntry {
    Bytes bytes;
};

// The order of a compound file's directory: by length, then without regard to case.
struct NameOrder {
    using is_transparent = void;
    bool operator()(OleView a, OleView b) const noexcept {
        return a.size() != b.size() ? a.size() < b.size() : compareNoCase(a, b) < 0;
    }
};

struct StorageEntry;
using Element = std::variant<std::shared_ptr<StreamEntry>, std::shared_ptr<StorageEntry>>;

struct StorageEntry : OpenableEntry {
    CLSID clsid{};
    std::map<OleString, Element, NameOrder> elements;
};

// How deep storages may stand in each other: trees are walked by calls that call themselves.
inline constexpr int maximumDepth = 256;

// How large a stream may become, and all streams of a file together.
inline constexpr std::size_t maximumSize = 0x7FFF0000;

// A name of an element: 1 to 31 units, none of / \ : ! and zero.
bool isElementName(OleView name);

// The tree that an element owns, without who has it open.
std::shared_ptr<StorageEntry> copyOf(const StorageEntry& storage);

} // namespace platform
