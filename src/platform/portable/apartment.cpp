// Apartments: per thread a kind and a count, and the thread's error object.
#include "platform/portable/apartment.h"

#include "platform/holders.h"
#include "platform/portable/activation.h"

#include <atomic>
#include <utility>

namespace {

struct Apartment {
    unsigned count = 0;
    bool multithreaded = false;
    platform::ComPtr<IErrorInfo> errorInfo;

    Apartment() = default;
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    // A thread may end without leaving its apartment.
    ~Apartment() { leave(); }

    void leave();
};

// Threads in the multithreaded apartment; while there are any, every other thread without an
// apartment of its own counts as one of them.
std::atomic<unsigned> multithreadedCount{0};

void Apartment::leave() {
    if (std::exchange(count, 0) > 0 && multithreaded) {
        --multithreadedCount;
    }
    errorInfo.reset();
}

Apartment& apartment() {
    thread_local Apartment own;
    return own;
}

} // namespace

bool platform::isComInitialized() { return apartment().count > 0 || multithreadedCount > 0; }

extern "C" {

HRESULT CoInitializeEx(void*, DWORD flags) {
    constexpr DWORD known =
        COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE | COINIT_SPEED_OVER_MEMORY;
    if ((flags & ~known) != 0) {
        return E_INVALIDARG;
    }
    const bool multithreaded = (flags & COINIT_APARTMENTTHREADED) == 0;
    Apartment& own = apartment();
    if (own.count == 0) {
        own.multithreaded = multithreaded;
        own.count = 1;
        multithreadedCount += multithreaded ? 1 : 0;
        return S_OK;
    }
    if (own.multithreaded != multithreaded) {
        return RPC_E_CHANGED_MODE;
    }
    ++own.count;
    return S_FALSE;
}

HRESULT CoInitialize(void* reserved) { return CoInitializeEx(reserved, COINIT_APARTMENTTHREADED); }

void CoUninitialize() {
    Apartment& own = apartment();
    if (own.count == 1) {
        own.leave();
    } else if (own.count > 1) {
        --own.count;
    }
}

HRESULT OleInitialize(void* reserved) { return CoInitialize(reserved); }
void OleUninitialize() { CoUninitialize(); }

HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* errorInfo) {
    if (reserved != 0) {
        return E_INVALIDARG;
    }
    apartment().errorInfo = platform::ComPtr<IErrorInfo>::borrow(errorInfo);
    return S_OK;
}

HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** errorInfo) {
    if (reserved != 0 || !errorInfo) {
        return E_INVALIDARG;
    }
    *errorInfo = apartment().errorInfo.detach();
    return *errorInfo ? S_OK : S_FALSE;
}
}
