// The user's own .reg files, brought in one after the other.
#include "platform/registry_files.h"

#include "platform/registry_changes.h"

#include <algorithm>

namespace platform {

void loadUserRegistryFiles() {
    const std::filesystem::path data = userDataDirectory();
    if (data.empty()) {
        return;
    }
    std::vector<std::filesystem::path> files;
    std::error_code ignored;
    for (const auto& entry :
         std::filesystem::directory_iterator(data / "axlink2" / "classes", ignored)) {
        if (entry.path().extension() == ".reg") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    std::for_each(files.begin(), files.end(), loadRegistryFile);
}

} // namespace platform
