// Calls into servers that survive a fault there.
#pragma once

#include "platform/com.h"
#include "platform/guarded_call.h"
#include "platform/holders.h"

namespace axlink2 {

// What `call`, one call into a server, answers; E_FAIL when a fault or an exception ended it.
template <class Call>
HRESULT askServer(Call&& call) {
    HRESULT hr = E_FAIL;
    const platform::Fault fault = platform::guarded([&] { hr = call(); });
    return fault ? E_FAIL : hr;
}

// What `ask`, a question about type information, answers. A server that is busy with its own
// message loop gets a second before its refusal counts.
template <class Ask>
HRESULT askPatiently(Ask&& ask) {
    constexpr int mostRetries = 20;
    constexpr DWORD wait = 50; // milliseconds
    HRESULT hr = askServer(ask);
    for (int retry = 0; hr == RPC_E_CALL_REJECTED && retry < mostRetries; ++retry) {
        Sleep(wait);
        hr = askServer(ask);
    }
    return hr;
}

// `target->GetTypeInfo(0, LOCALE_SYSTEM_DEFAULT, out)`. A fault inside the server gives E_FAIL.
HRESULT guardedGetTypeInfo(IDispatch* target, ITypeInfo** out);

// `object->Release()`; a fault inside it is contained. Null is allowed.
void guardedRelease(IUnknown* object);

template <class Interface>
struct ServerTraits : platform::InterfaceTraits<Interface> {
    static void close(Interface* object) noexcept { guardedRelease(object); }
    static Interface* duplicate(Interface* object) noexcept {
        if (object) platform::guarded([object] { object->AddRef(); });
        return object;
    }
};

// A counted reference to an object of a server, whose own counting may be at fault.
template <class Interface>
using ServerPtr = platform::Holder<ServerTraits<Interface>>;

// What `call(Interface** out)`, one call into a server, gives. Empty when it fails or gives
// nothing: an out-parameter of a failed call is not to be trusted. `*result` gets its answer.
template <class Interface, class Call>
ServerPtr<Interface> obtain(Call&& call, HRESULT* result = nullptr) {
    Interface* given = nullptr;
    const HRESULT hr = askServer([&] { return call(&given); });
    if (result) *result = hr;
    return ServerPtr<Interface>::adopt(SUCCEEDED(hr) ? given : nullptr);
}

// Another interface of a server's object; empty when the object is null or doesn't offer it.
template <class Interface>
ServerPtr<Interface> queryServer(IUnknown* object, REFIID iid, HRESULT* result = nullptr) {
    return obtain<Interface>(
        [&](Interface** out) {
            return object ? object->QueryInterface(iid, reinterpret_cast<void**>(out)) : E_POINTER;
        },
        result);
}

} // namespace axlink2
