// Reading keys of the class registry.
#pragma once

#include "platform/com.h"
#include "platform/holders.h"
#include "platform/text.h"

#include <optional>

namespace axlink2 {

struct RegistryKeyTraits : platform::PointerTraits<HKEY> {
    static void close(HKEY key) noexcept {
        if (key) RegCloseKey(key);
    }
};

using RegistryKey = platform::Holder<RegistryKeyTraits>;

// A key below an open one or a root; empty when it can't be opened for reading.
RegistryKey openKey(HKEY parent, const platform::OleString& path);

// The text of a value, up to its first zero; an empty `name` is the default value. None when there
// is no such value.
std::optional<platform::OleString> readValue(const RegistryKey& key, const OLECHAR* name);

} // namespace axlink2
