// Class objects, from the process or from shared libraries, and the objects that they make.
#include "platform/portable/activation.h"

#include "platform/answer.h"
#include "platform/holders.h"
#include "platform/portable/apartment.h"
#include "platform/portable/class_registration.h"
#include "platform/portable/cookie_table.h"
#include "platform/portable/system.h"
#include "platform/shared_library.h"

namespace {

using platform::ComPtr;

struct RegisteredClass {
    RegisteredClass(REFCLSID clsid, ComPtr<IUnknown> object, DWORD context, bool singleUse)
        : clsid(clsid), object(std::move(object)), context(context), singleUse(singleUse) {}

    const CLSID clsid;
    const ComPtr<IUnknown> object;
    const DWORD context;
    const bool singleUse;
};

using RegisteredClasses = platform::CookieTable<RegisteredClass>;

RegisteredClasses& registeredClasses() {
    static RegisteredClasses classes;
    return classes;
}

using GetClassObjectFunction = HRESULT(REFCLSID, REFIID, void**);

// The class that the process itself offers; null when there is none. One for single use is taken
// from the table, where its cookie stays.
std::shared_ptr<const RegisteredClass> findRegistered(REFCLSID clsid, DWORD context) {
    RegisteredClasses& classes = registeredClasses();
    const std::lock_guard lock(classes.mutex);
    for (auto& [cookie, entry] : classes.byCookie) {
        if (entry && entry->clsid == clsid && (entry->context & context) != 0) {
            return entry->singleUse ? std::move(entry) : entry;
        }
    }
    return nullptr;
}

// The entry points of servers' libraries, by file.
class EntryPoints {
  public:
    GetClassObjectFunction* find(const platform::OleString& file) {
        const std::lock_guard lock(mutex_);
        const auto known = byFile_.find(file);
        return known == byFile_.end() ? nullptr : known->second;
    }
    void add(const platform::OleString& file, GetClassObjectFunction* function) {
        const std::lock_guard lock(mutex_);
        byFile_.emplace(file, function);
    }

  private:
    std::mutex mutex_;
    std::map<platform::OleString, GetClassObjectFunction*> byFile_;
};

// The entry point of a server's library, which is then loaded for good: objects of it may outlive
// whatever could be counted. Loading runs code of the library, which may come back here, or end in
// a fault, so that nothing is locked meanwhile.
HRESULT findEntryPoint(const platform::OleString& file, GetClassObjectFunction** function) {
    static EntryPoints& known = *new EntryPoints;
    *function = known.find(file);
    if (*function) {
        return S_OK;
    }
    platform::SharedLibrary library(platform::toNarrow(file));
    if (!library) {
        return HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND);
    }
    *function = library.find<GetClassObjectFunction>("DllGetClassObject");
    if (!*function) {
        return CO_E_DLLNOTFOUND;
    }
    known.add(file, *function);
    library.keep();
    return S_OK;
}

HRESULT findServer(REFCLSID clsid, GetClassObjectFunction** function) {
    const auto library =
        platform::readClassText(platform::classKeyPath(clsid) + OLESTR("\\InprocServer32"));
    return library ? findEntryPoint(*library, function) : REGDB_E_CLASSNOTREG;
}

HRESULT checkServer(const COSERVERINFO* server) {
    return server && server->pwszName && *server->pwszName
               ? HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE)
               : S_OK;
}

} // namespace

extern "C" {

HRESULT CoGetClassObject(REFCLSID clsid, DWORD context, COSERVERINFO* server, REFIID iid,
                         void** object) {
    if (!object) {
        return E_INVALIDARG;
    }
    *object = nullptr;
    if (!platform::isComInitialized()) {
        return CO_E_NOTINITIALIZED;
    }
    if (context == 0) {
        return E_UNEXPECTED;
    }
    if (const HRESULT hr = checkServer(server); FAILED(hr)) {
        return hr;
    }
    if (const auto registered = findRegistered(clsid, context)) {
        return registered->object->QueryInterface(iid, object);
    }
    if ((context & CLSCTX_INPROC_SERVER) == 0) {
        return REGDB_E_CLASSNOTREG;
    }
    GetClassObjectFunction* getClassObject = nullptr;
    const HRESULT hr = platform::answer([&] { return findServer(clsid, &getClassObject); });
    // What the server raises is its own affair.
    return FAILED(hr) ? hr : getClassObject(clsid, iid, object);
}

HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID iid,
                         void** object) {
    if (!object) {
        return E_POINTER;
    }
    *object = nullptr;
    ComPtr<IClassFactory> factory;
    const HRESULT hr =
        CoGetClassObject(clsid, context, nullptr, IID_IClassFactory, factory.putVoid());
    if (FAILED(hr)) {
        return hr;
    }
    return factory.get() ? factory->CreateInstance(outer, iid, object) : E_UNEXPECTED;
}

HRESULT CoCreateInstanceEx(REFCLSID clsid, IUnknown* outer, DWORD context, COSERVERINFO* server,
                           DWORD count, MULTI_QI* results) {
    if (count == 0 || !results) {
        return E_INVALIDARG;
    }
    for (DWORD i = 0; i < count; ++i) {
        if (!results[i].pIID || results[i].pItf) {
            return E_INVALIDARG;
        }
        results[i].hr = E_NOINTERFACE;
    }
    HRESULT hr = platform::isComInitialized() ? checkServer(server) : CO_E_NOTINITIALIZED;
    ComPtr<IUnknown> object;
    if (SUCCEEDED(hr)) {
        hr = CoCreateInstance(clsid, outer, context, IID_IUnknown, object.putVoid());
    }
    if (SUCCEEDED(hr) && !object.get()) {
        hr = E_UNEXPECTED;
    }
    DWORD found = 0;
    for (DWORD i = 0; i < count; ++i) {
        results[i].hr = FAILED(hr)
                            ? hr
                            : object->QueryInterface(*results[i].pIID,
                                                     reinterpret_cast<void**>(&results[i].pItf));
        found += SUCCEEDED(results[i].hr) ? 1 : 0;
    }
    if (FAILED(hr) || found == count) {
        return hr;
    }
    return found > 0 ? CO_S_NOTALLINTERFACES : E_NOINTERFACE;
}

HRESULT CoRegisterClassObject(REFCLSID clsid, IUnknown* object, DWORD context, DWORD flags,
                              DWORD* cookie) {
    if (!object || !cookie || context == 0) {
        return E_INVALIDARG;
    }
    *cookie = 0;
    if (!platform::isComInitialized()) {
        return CO_E_NOTINITIALIZED;
    }
    const bool singleUse = (flags & (REGCLS_MULTIPLEUSE | REGCLS_MULTI_SEPARATE)) == 0;
    return platform::answer([&] {
        const auto entry = std::make_shared<RegisteredClass>(
            clsid, ComPtr<IUnknown>::borrow(object), context, singleUse);
        RegisteredClasses& classes = registeredClasses();
        const std::lock_guard lock(classes.mutex);
        *cookie = classes.add(entry);
        return S_OK;
    });
}

HRESULT CoRevokeClassObject(DWORD cookie) { return registeredClasses().revoke(cookie); }
}
