// The read-only registry: keys and values that .reg files brought in. Names and results are those
// of the COM platform. HKEY_CLASSES_ROOT is the merged view of Software\Classes of the user and of
// the machine, the user's values first. Keys come back sorted, ignoring case.
#pragma once

#include "platform/portable/base_types.h"
#include "platform/registry_files.h"

struct HKEY__;
using HKEY = HKEY__*;
using LSTATUS = LONG;
using REGSAM = DWORD;

#define HKEY_CLASSES_ROOT (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000000u)))
#define HKEY_CURRENT_USER (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000001u)))
#define HKEY_LOCAL_MACHINE (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000002u)))
#define HKEY_USERS (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000003u)))

#define KEY_QUERY_VALUE 0x0001
#define KEY_ENUMERATE_SUB_KEYS 0x0008
#define KEY_READ 0x20019

#define REG_NONE 0
#define REG_SZ 1
#define REG_EXPAND_SZ 2
#define REG_BINARY 3
#define REG_DWORD 4
#define REG_MULTI_SZ 7
#define REG_QWORD 11

extern "C" {
// An open key sees what files bring in later; once it is gone calls answer ERROR_KEY_DELETED.
LSTATUS RegOpenKeyExW(HKEY key, LPCOLESTR path, DWORD options, REGSAM access, HKEY* opened);
LSTATUS RegOpenKeyW(HKEY key, LPCOLESTR path, HKEY* opened);
LSTATUS RegEnumKeyExW(HKEY key, DWORD index, LPOLESTR name, DWORD* size, DWORD* reserved,
                      LPOLESTR className, DWORD* classSize, FILETIME* written);
// Sizes are in bytes, the terminating zero of a text included.
LSTATUS RegQueryValueExW(HKEY key, LPCOLESTR name, DWORD* reserved, DWORD* type, BYTE* data,
                         DWORD* size);
LSTATUS RegCloseKey(HKEY key);
}
