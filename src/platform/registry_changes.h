// What a .reg file says, line by line, before it is brought in.
#pragma once

#include "platform/com.h"
#include "platform/text.h"

#include <filesystem>
#include <optional>
#include <variant>
#include <vector>

namespace platform {

struct RegistryValue {
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
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

// The parts of a path between backslashes; empty ones are left out.
RegistryPath splitRegistryPath(OleView path);

// The changes that a .reg file asks for, in its order. Raises RegistryFileError.
std::vector<RegistryChange> parseRegistryFile(const std::filesystem::path& file);

// Where the user's data is kept, by the system's own custom; empty when the user has no such place.
std::filesystem::path userDataDirectory();

} // namespace platform
