// The registry's keys and values in memory, and the changes that a .reg file makes to them.
#pragma once

#include "platform/portable/fold_case.h"
#include "platform/portable/registry.h"

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <variant>
#include <vector>

namespace platform {

struct RegistryValue {
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
};

struct RegistryKey {
    std::map<OleString, RegistryKey, LessNoCase> keys;
    // The default value has the empty name.
    std::map<OleString, RegistryValue, LessNoCase> values;
};

// The names from a root key ("HKEY_LOCAL_MACHINE", ...) down.
using RegistryPath = std::vector<OleString>;

// One line's effect: a key made or removed, or a value of a key set (or, without data, removed).
struct KeyChange {
    RegistryPath path;
    bool remove = false;
};
struct ValueChange {
    OleString name;
    std::optional<RegistryValue> value;
};
// A value's key is that of the last KeyChange before it.
using RegistryChange = std::variant<KeyChange, ValueChange>;

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

// The parts of a path between backslashes; empty ones are left out.
RegistryPath splitRegistryPath(OleView path);

} // namespace platform
