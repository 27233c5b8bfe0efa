// The registry's contents from .reg files: applied only when all of a file is good.
#include "platform/registry_files.h"

#include "platform/portable/registry_tree.h"

#include <cstdlib>

namespace platform {

std::filesystem::path userDataDirectory() {
    const char* data = std::getenv("XDG_DATA_HOME");
    if (data && *data == '/') {
        return data;
    }
    const char* home = std::getenv("HOME");
    return home && *home ? std::filesystem::path(home) / ".local/share" : std::filesystem::path();
}

void loadRegistryFile(const std::filesystem::path& file) {
    const std::vector<RegistryChange> changes = parseRegistryFile(file);
    RegistryTree& tree = RegistryTree::instance();
    const auto lock = tree.lock();
    tree.apply(changes);
}

void clearRegistry() {
    RegistryTree& tree = RegistryTree::instance();
    const auto lock = tree.lock();
    tree.clear();
}

} // namespace platform
