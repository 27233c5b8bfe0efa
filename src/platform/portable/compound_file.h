// The bytes of a compound file and the tree that they stand for.
#pragma once

#include "platform/portable/storage_tree.h"

#include <span>

namespace platform {

// Reads a compound file, whoever made it. STG_E_FILEALREADYEXISTS when the bytes are none,
// STG_E_DOCFILECORRUPT when they are damaged, nested too deep, or say more than they hold.
HRESULT parseCompoundFile(std::span<const std::byte> file, StorageEntry& root);

// Makes the compound file. STG_E_MEDIUMFULL when the streams are larger than one can hold. Both
// raise std::bad_alloc.
HRESULT makeCompoundFile(const StorageEntry& root, Bytes& file);

} // namespace platform
