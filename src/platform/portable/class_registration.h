// What the registry says of classes.
#pragma once

#include "platform/portable/guid.h"
#include "platform/text.h"

#include <optional>

namespace platform {

// The default text of a key below the classes root; nothing when the key or the text is missing.
std::optional<OleString> readClassText(OleView path);

// The path of a class's key below the classes root.
OleString classKeyPath(REFCLSID clsid);

} // namespace platform
