// Registry reads.
#include "comruntime/registry_key.h"

#include <vector>

namespace axlink2 {

RegistryKey openKey(HKEY parent, const platform::OleString& path) {
    RegistryKey key;
    if (RegOpenKeyExW(parent, path.c_str(), 0, KEY_READ, key.put())) (void)key.detach();
    return key;
}

std::optional<platform::OleString> readValue(const RegistryKey& key, const OLECHAR* name) {
    DWORD size = 0; // in bytes
    if (RegQueryValueExW(key.get(), name, nullptr, nullptr, nullptr, &size)) return std::nullopt;
    // A character for every byte: more than enough, and the text is always terminated.
    std::vector<OLECHAR> buffer(size + 1);
    if (size > 0 && RegQueryValueExW(key.get(), name, nullptr, nullptr,
                                     reinterpret_cast<BYTE*>(buffer.data()), &size))
        return std::nullopt;
    return platform::OleString(buffer.data());
}

} // namespace axlink2
