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
    CLSID clsid{};
    ComPtr<IUnknown> object;
};

struct RunningObjects : platform::CookieTable<RunningObject> {
    auto find(REFCLSID clsid) {
        return std::find_if(byCookie.begin(), byCookie.end(),
                            [&](const auto& entry) { return entry.second.clsid == clsid; });
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
        RunningObjects& objects = runningObjects();
        const std::lock_guard lock(objects.mutex);
        const bool again = objects.find(clsid) != objects.byCookie.end();
        *cookie = objects.add({clsid, ComPtr<IUnknown>::borrow(object)});
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
    RunningObjects& objects = runningObjects();
    const std::lock_guard lock(objects.mutex);
    const auto found = objects.find(clsid);
    if (found == objects.byCookie.end()) {
        return MK_E_UNAVAILABLE;
    }
    ComPtr<IUnknown> copy = found->second.object;
    *object = copy.detach();
    return S_OK;
}
}
