// The registry's keys and values in memory.
#pragma once

#include "platform/fold_case.h"
#include "platform/portable/registry.h"
#include "platform/registry_changes.h"

#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace platform {

struct RegistryKey {
    std::map<OleString, RegistryKey, LessNoCase> keys;
    // The default value has the empty name.
    std::map<OleString, RegistryValue, LessNoCase> values;
};

// The one registry of the process. What find answers is valid while the lock is held.
class RegistryTree {
  public:
    static RegistryTree& instance();

    [[nodiscard]] std::unique_lock<std::mutex> lock() { return std::unique_lock(mutex_); }

    // The keys that a path names: none, one, or for the merged classes root the user's and then
    // the machine's.
    std::vector<const RegistryKey*> find(const RegistryPath& path) const;

    void apply(const std::vector<RegistryChange>& changes);
    void clear();

  private:
    const RegistryKey* findPlain(const RegistryPath& path) const;
    RegistryPath writablePath(const RegistryPath& path) const;
    RegistryKey& make(const RegistryPath& path);
    void remove(const RegistryPath& path);

    std::mutex mutex_;
    RegistryKey root_;
};

} // namespace platform
