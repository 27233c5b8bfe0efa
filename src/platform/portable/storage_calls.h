// What the calls of storages and streams share: failures without exceptions, modes, STATSTG.
#pragma once

#include "platform/answer.h"
#include "platform/portable/hresults.h"
#include "platform/portable/persistence.h"
#include "platform/text.h"

namespace platform {

// What `call` answers; STG_E_INSUFFICIENTMEMORY when memory runs out in it.
template <class Call>
HRESULT withoutRaising(Call&& call) {
    return answer(call, STG_E_INSUFFICIENTMEMORY);
}

inline bool canRead(DWORD mode) { return (mode & 3) != STGM_WRITE; }
inline bool canWrite(DWORD mode) { return (mode & 3) != STGM_READ; }
inline DWORD sharing(DWORD mode) { return mode & 0x70; }

// Whether access and sharing have a meaning and nothing stands beside them but `others`.
constexpr bool isMode(DWORD mode, DWORD others) {
    return (mode & 3) != 3 && (mode & 0x70) <= STGM_SHARE_DENY_NONE &&
           (mode & ~(others | 0x73)) == 0;
}

// Describes an open storage or stream. The name is the receiver's, to be freed with CoTaskMemFree.
HRESULT describe(STATSTG* stat, DWORD flags, STGTY type, OleView name, DWORD mode, std::size_t size,
                 const CLSID& clsid);

} // namespace platform
