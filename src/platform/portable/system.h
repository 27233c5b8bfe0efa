// The few calls of the operating system that a COM client makes: message texts, code pages, once-
// only initialisation, the thread's last error. Names and results are those of the COM platform.
#pragma once

#include "platform/portable/base_types.h"

#define FORMAT_MESSAGE_ALLOCATE_BUFFER 0x00000100
#define FORMAT_MESSAGE_IGNORE_INSERTS 0x00000200
#define FORMAT_MESSAGE_FROM_SYSTEM 0x00001000

#define CP_ACP 0
#define CP_THREAD_ACP 3
#define CP_UTF8 65001
#define WC_ERR_INVALID_CHARS 0x00000080
#define MB_ERR_INVALID_CHARS 0x00000008

#define INIT_ONCE_CHECK_ONLY 0x1
#define INIT_ONCE_INIT_FAILED 0x4
#define INIT_ONCE_STATIC_INIT                                                                      \
    { nullptr }

typedef union _RTL_RUN_ONCE {
    PVOID Ptr;
} INIT_ONCE, *PINIT_ONCE, *LPINIT_ONCE;

inline constexpr DWORD ERROR_SUCCESS = 0;
inline constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
inline constexpr DWORD ERROR_INVALID_HANDLE = 6;
inline constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr DWORD ERROR_OUTOFMEMORY = 14;
inline constexpr DWORD ERROR_INVALID_PARAMETER = 87;
inline constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
inline constexpr DWORD ERROR_MOD_NOT_FOUND = 126;
inline constexpr DWORD ERROR_BAD_PATHNAME = 161;
inline constexpr DWORD ERROR_MORE_DATA = 234;
inline constexpr DWORD ERROR_NO_MORE_ITEMS = 259;
inline constexpr DWORD ERROR_MR_MID_NOT_FOUND = 317;
inline constexpr DWORD ERROR_INVALID_FLAGS = 1004;
inline constexpr DWORD ERROR_KEY_DELETED = 1018;
inline constexpr DWORD ERROR_NO_UNICODE_TRANSLATION = 1113;
inline constexpr DWORD RPC_S_SERVER_UNAVAILABLE = 1722;

extern "C" {
// FORMAT_MESSAGE_FROM_SYSTEM only, English only. The answer is the length without the terminating
// zero; 0 when the code has no text. An allocated buffer goes back through LocalFree.
DWORD FormatMessageW(DWORD flags, const void* source, DWORD code, DWORD language, LPOLESTR buffer,
                     DWORD size, void* arguments);
void* LocalFree(void* block);

// Of several threads that begin one is told to do the work (pending true); the others wait until
// it completes. After a failed attempt the next one is told.
BOOL InitOnceBeginInitialize(LPINIT_ONCE once, DWORD flags, BOOL* pending, void** context);
BOOL InitOnceComplete(LPINIT_ONCE once, DWORD flags, void* context);

void Sleep(DWORD milliseconds);
DWORD GetLastError();
void SetLastError(DWORD code);

// Every code page offered is UTF-8. Malformed input is replaced by U+FFFD unless the flag makes it
// an error (0, last error ERROR_NO_UNICODE_TRANSLATION).
int WideCharToMultiByte(UINT codePage, DWORD flags, LPCOLESTR wide, int wideSize, char* narrow,
                        int narrowSize, const char* defaultChar, BOOL* usedDefault);
int MultiByteToWideChar(UINT codePage, DWORD flags, const char* narrow, int narrowSize,
                        LPOLESTR wide, int wideSize);
}
