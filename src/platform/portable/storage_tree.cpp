// Names and copies of the entries of a compound file.
#include "platform/portable/storage_tree.h"

namespace platform {

bool isElementName(OleView name) {
    constexpr OleView refused(OLESTR("/\\:!\0"), 5);
    return !name.empty() && name.size() <= 31 && name.find_first_of(refused) == OleView::npos;
}

namespace {

Element copyOf(const std::shared_ptr<StreamEntry>& stream) {
    auto copy = std::make_shared<StreamEntry>();
    copy->bytes = stream->bytes;
    return copy;
}

Element copyOf(const std::shared_ptr<StorageEntry>& storage) { return platform::copyOf(*storage); }

} // namespace

std::shared_ptr<StorageEntry> copyOf(const StorageEntry& storage) {
    auto copy = std::make_shared<StorageEntry>();
    copy->clsid = storage.clsid;
    for (const auto& [name, element] : storage.elements)
        copy->elements.emplace(name,
                               std::visit([](auto& entry) { return copyOf(entry); }, element));
    return copy;
}

} // namespace platform
