// Layout of the SAFEARRAYs made here, shared by the files that create them and that use them.
#pragma once

#include "platform/portable/safearray.h"

#include <optional>

// Data in the same allocation as the descriptor, as SafeArrayCreateVector makes it.
inline constexpr USHORT FADF_CREATEVECTOR = 0x2000;

// In front of each descriptor that says so: the interface id, or the kind in the last four bytes.
union SafeArrayHeader {
    GUID iid;
    struct {
        DWORD unused[3];
        DWORD vt;
    } kind;
};
static_assert(sizeof(SafeArrayHeader) == 16);

inline SafeArrayHeader& headerOf(SAFEARRAY* array) {
    return reinterpret_cast<SafeArrayHeader*>(array)[-1];
}

// Number of elements, and of bytes: nothing when that is more than an address can tell.
std::optional<std::size_t> elementCount(const SAFEARRAY& array) noexcept;
std::optional<std::size_t> dataBytes(const SAFEARRAY& array) noexcept;
