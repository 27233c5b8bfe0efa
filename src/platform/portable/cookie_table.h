// What was registered, by the cookies that revoke it.
#pragma once

#include "platform/portable/hresults.h"

#include <map>
#include <mutex>
#include <utility>

namespace platform {

// Whoever adds entries or looks at them holds the mutex.
template <class Entry>
struct CookieTable {
    std::mutex mutex;
    std::map<DWORD, Entry> byCookie;
    DWORD lastCookie = 0;

    // Gives the cookie.
    DWORD add(Entry entry) {
        byCookie[++lastCookie] = std::move(entry);
        return lastCookie;
    }

    // Takes the mutex itself. E_INVALIDARG for a cookie that stands for nothing.
    HRESULT revoke(DWORD cookie) {
        Entry revoked; // released after the lock, as it may come back here
        const std::lock_guard lock(mutex);
        const auto found = byCookie.find(cookie);
        if (found == byCookie.end()) {
            return E_INVALIDARG;
        }
        revoked = std::move(found->second);
        byCookie.erase(found);
        return S_OK;
    }
};

} // namespace platform
