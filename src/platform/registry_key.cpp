// Registry reads.
#include "platform/registry_key.h"

#include <new>
#include <vector>

namespace platform {
namespace {

// Whether it went well; what isn't there is no error, but exhausted memory is.
bool isDone(LSTATUS status) {
    if (status == ERROR_NOT_ENOUGH_MEMORY || status == ERROR_OUTOFMEMORY) throw std::bad_alloc();
    return status == ERROR_SUCCESS;
}

} // namespace

RegistryKey openKey(HKEY parent, const OleString& path) {
    RegistryKey key;
    if (!isDone(RegOpenKeyExW(parent, path.c_str(), 0, KEY_READ, key.put()))) (void)key.detach();
    return key;
}

std::optional<OleString> readText(const RegistryKey& key, const OLECHAR* name) {
    DWORD type = REG_NONE;
    DWORD size = 0; // in bytes
    if (!isDone(RegQueryValueExW(key.get(), name, nullptr, &type, nullptr, &size)))
        return std::nullopt;
    if (type != REG_SZ && type != REG_EXPAND_SZ) return std::nullopt;
    // A character for every byte: more than enough, and the text is always terminated.
    std::vector<OLECHAR> buffer(size + 1);
    auto* const bytes = reinterpret_cast<BYTE*>(buffer.data());
    if (size > 0 && !isDone(RegQueryValueExW(key.get(), name, nullptr, nullptr, bytes, &size)))
        return std::nullopt;
    return OleString(buffer.data());
}

} // namespace platform
