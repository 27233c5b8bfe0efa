// GUIDs, their comparison, and the identifiers of the two root interfaces.
#pragma once

#include "platform/portable/base_types.h"

#include <cstring>

struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};

using IID = GUID;
using CLSID = GUID;
using LPGUID = GUID*;
using LPCGUID = const GUID*;
using REFGUID = const GUID&;
using REFIID = const IID&;
using REFCLSID = const CLSID&;

inline bool operator==(const GUID& a, const GUID& b) noexcept {
    return std::memcmp(&a, &b, sizeof(GUID)) == 0;
}

inline BOOL IsEqualGUID(REFGUID a, REFGUID b) noexcept { return a == b; }
inline BOOL IsEqualIID(REFIID a, REFIID b) noexcept { return a == b; }
inline BOOL IsEqualCLSID(REFCLSID a, REFCLSID b) noexcept { return a == b; }

extern "C" const GUID GUID_NULL;
extern "C" const IID IID_NULL;
extern "C" const CLSID CLSID_NULL;
extern "C" const IID IID_IUnknown;
extern "C" const IID IID_IDispatch;
