// What was registered, by the cookies that revoke it.
#pragma once

#include "platform/portable/hresults.h"

#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace platform {

// Whoever adds entries or looks at them holds the mutex. No code of a server runs under it: an
// entry is made before and ends after, and what it holds is asked when the mutex is free again.
template <class Entry>
struct CookieTable {
    std::mutex mutex;
    std::map<DWORD, std::shared_ptr<Entry>> byCookie;
    DWORD lastCookie = 0;

    // Gives the cookie.
    DWORD add(const std::shared_ptr<Entry>& entry) {
        byCookie[++lastCookie] = entry;
        return lastCookie;
    }

    // Takes the mutex itself. E_INVALIDARG for a cookie that stands for nothing.
    HRESULT revoke(DWORD cookie) {
        std::shared_ptr<Entry> revoked;
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
