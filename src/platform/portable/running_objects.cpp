// The running object table: objects that other code of the process may ask for by their class.
#include "platform/answer.h"
#include "platform/holders.h"
#include "platform/portable/activation.h"
#include "platform/portable/apartment.h"
#include "platform/portable/cookie_table.h"

#include <algorithm>

namespace {

using platform::ComPtr;

struct RunningObject {
    RunningObject(REFCLSID clsid, ComPtr<IUnknown> object)
        : clsid(clsid), object(std::move(object)) {}

    const CLSID clsid;
    const ComPtr<IUnknown> object;
};

struct RunningObjects : platform::CookieTable<RunningObject> {
    auto find(REFCLSID clsid) {
        return std::find_if(byCookie.begin(), byCookie.end(),
                            [&](const auto& entry) { return entry.second->clsid == clsid; });
    }
    // The oldest one; null when there is none.
    std::shared_ptr<const RunningObject> get(REFCLSID clsid) {
        const std::lock_guard lock(mutex);
        const auto found = find(clsid);
        return found == byCookie.end() ? nullptr : found->second;
    }
};

RunningObjects& runningObjects() {
    static RunningObjects objects;
    return objects;
}

} // namespace

extern "C" {

// A weak registration holds a reference as a strong one does: whoever registers revokes.
HRESULT RegisterActiveObject(IUnknown* object, REFCLSID clsid, DWORD flags, DWORD* cookie) {
    if (!object || !cookie || (flags & ~DWORD{ACTIVEOBJECT_WEAK}) != 0) {
        return E_INVALIDARG;
    }
    *cookie = 0;
    if (!platform::isComInitialized()) {
        return CO_E_NOTINITIALIZED;
    }
    return platform::answer([&] {
        const auto entry = std::make_shared<RunningObject>(clsid, ComPtr<IUnknown>::borrow(object));
        RunningObjects& objects = runningObjects();
        const std::lock_guard lock(objects.mutex);
        const bool again = objects.find(clsid) != objects.byCookie.end();
        *cookie = objects.add(entry);
        return again ? MK_S_MONIKERALREADYREGISTERED : S_OK;
    });
}

HRESULT RevokeActiveObject(DWORD cookie, void*) { return runningObjects().revoke(cookie); }

HRESULT GetActiveObject(REFCLSID clsid, void*, IUnknown** object) {
    if (!object) {
        return E_POINTER;
    }
    *object = nullptr;
    if (!platform::isComInitialized()) {
        return CO_E_NOTINITIALIZED;
    }
    const std::shared_ptr<const RunningObject> found = runningObjects().get(clsid);
    if (!found) {
        return MK_E_UNAVAILABLE;
    }
    *object = ComPtr<IUnknown>(found->object).detach();
    return S_OK;
}
}
