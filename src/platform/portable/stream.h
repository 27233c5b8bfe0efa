// Streams over memory: those of storages, and those of their own.
#pragma once

#include "platform/portable/persistence.h"
#include "platform/portable/storage_tree.h"

namespace platform {

// A stream at its start. Its calls answer STG_E_REVERTED once the lifetime is over.
ComPtr<IStream> makeStream(std::shared_ptr<StreamEntry> entry, OleView name, DWORD mode,
                           std::shared_ptr<Lifetime> lifetime);

} // namespace platform
