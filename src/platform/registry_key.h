// Reading keys of the class registry.
#pragma once

#include "platform/com.h"
#include "platform/holders.h"
#include "platform/text.h"

#include <optional>

namespace platform {

struct RegistryKeyTraits : PointerTraits<HKEY> {
    static void close(HKEY key) noexcept {
        if (key) RegCloseKey(key);
    }
};

using RegistryKey = Holder<RegistryKeyTraits>;

// Both raise std::bad_alloc.
//
// A key below an open one or a root; empty when it can't be opened for reading.
RegistryKey openKey(HKEY parent, const OleString& path);

// The text of a value, up to its first zero; an empty `name` is the default value. None when there
// is no such value, or it is no text.
std::optional<OleString> readText(const RegistryKey& key, const OLECHAR* name);

} // namespace platform
