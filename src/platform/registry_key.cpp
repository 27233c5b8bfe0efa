// Registry reads.
#include "platform/registry_key.h"

#include <vector>

namespace platform {

RegistryKey openKey(HKEY parent, const OleString& path) {
    RegistryKey key;
    if (RegOpenKeyExW(parent, path.c_str(), 0, KEY_READ, key.put())) (void)key.detach();
    return key;
}

std::optional<OleString> readText(const RegistryKey& key, const OLECHAR* name) {
    DWORD type = REG_NONE;
    DWORD size = 0; // in bytes
    if (RegQueryValueExW(key.get(), name, nullptr, &type, nullptr, &size)) return std::nullopt;
    if (type != REG_SZ && type != REG_EXPAND_SZ) return std::nullopt;
    // A character for every byte: more than enough, and the text is always terminated.
    std::vector<OLECHAR> buffer(size + 1);
    if (size > 0 && RegQueryValueExW(key.get(), name, nullptr, nullptr,
                                     reinterpret_cast<BYTE*>(buffer.data()), &size))
        return std::nullopt;
    return OleString(buffer.data());
}

} // namespace platform
