// Once-only initialisation, the last error, code pages and blocks of the system's memory.
#include "platform/portable/system.h"

#include "platform/answer.h"
#include "platform/text.h"

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <thread>

namespace {

thread_local DWORD lastError = ERROR_SUCCESS;

// The states of an INIT_ONCE; a context pointer isn't kept, as no caller hands one in.
enum OnceState : std::uintptr_t { onceUntouched = 0, onceRunning = 1, onceDone = 2 };

struct OnceGate {
    std::mutex mutex;
    std::condition_variable changed;
};

// One gate for all: initialisations are few and short-lived.
OnceGate& onceGate() {
    static OnceGate gate;
    return gate;
}

OnceState stateOf(const INIT_ONCE& once) {
    return static_cast<OnceState>(reinterpret_cast<std::uintptr_t>(once.Ptr));
}

void setState(INIT_ONCE& once, OnceState state) {
    once.Ptr = reinterpret_cast<PVOID>(static_cast<std::uintptr_t>(state));
}

template <class Result>
Result fail(DWORD code, Result result) {
    lastError = code;
    return result;
}

bool isCodePage(UINT codePage) {
    return codePage == CP_ACP || codePage == CP_THREAD_ACP || codePage == CP_UTF8;
}

// Whether every unit of the text belongs to a character of its encoding.
template <class Unit>
bool isWellFormed(std::basic_string_view<Unit> text) {
    namespace utf = boost::locale::utf;
    const Unit* at = text.data();
    const Unit* const end = at + text.size();
    while (at != end) {
        const utf::code_point point = utf::utf_traits<Unit>::decode(at, end);
        if (point == utf::illegal || point == utf::incomplete) {
            return false;
        }
    }
    return true;
}

// The shared body of the two conversions; sizes are in units, -1 for text ended by a zero, which
// is then converted too.
template <class Out, class In>
int convert(UINT codePage, bool strict, const In* text, int size, Out* buffer, int bufferSize) {
    if (!isCodePage(codePage) || !text || size == 0 || size < -1 || bufferSize < 0 ||
        (bufferSize > 0 && !buffer)) {
        return fail(ERROR_INVALID_PARAMETER, 0);
    }
    const std::size_t count =
        size == -1 ? std::char_traits<In>::length(text) + 1 : static_cast<std::size_t>(size);
    const std::basic_string_view<In> view(text, count);
    if (strict && !isWellFormed(view)) {
        return fail(ERROR_NO_UNICODE_TRANSLATION, 0);
    }
    std::basic_string<Out> result;
    const HRESULT made = platform::answer([&] {
        result = platform::transcode<Out>(view);
        return S_OK;
    });
    if (FAILED(made)) {
        return fail(ERROR_NOT_ENOUGH_MEMORY, 0);
    }
    if (bufferSize == 0) {
        return static_cast<int>(result.size());
    }
    if (result.size() > static_cast<std::size_t>(bufferSize)) {
        return fail(ERROR_INSUFFICIENT_BUFFER, 0);
    }
    result.copy(buffer, result.size());
    return static_cast<int>(result.size());
}

} // namespace

extern "C" {

BOOL InitOnceBeginInitialize(LPINIT_ONCE once, DWORD flags, BOOL* pending, void** context) {
    if (!once || !pending || (flags & ~DWORD{INIT_ONCE_CHECK_ONLY}) != 0) {
        return fail(ERROR_INVALID_PARAMETER, FALSE);
    }
    OnceGate& gate = onceGate();
    std::unique_lock lock(gate.mutex);
    if ((flags & INIT_ONCE_CHECK_ONLY) != 0) {
        *pending = stateOf(*once) == onceDone ? FALSE : TRUE;
        return *pending == FALSE ? TRUE : FALSE;
    }
    gate.changed.wait(lock, [once] { return stateOf(*once) != onceRunning; });
    *pending = FALSE;
    if (stateOf(*once) == onceUntouched) {
        setState(*once, onceRunning);
        *pending = TRUE;
    }
    if (context) {
        *context = nullptr;
    }
    return TRUE;
}

BOOL InitOnceComplete(LPINIT_ONCE once, DWORD flags, void* context) {
    if (!once || context || (flags & ~DWORD{INIT_ONCE_INIT_FAILED}) != 0) {
        return fail(ERROR_INVALID_PARAMETER, FALSE);
    }
    OnceGate& gate = onceGate();
    const std::lock_guard lock(gate.mutex);
    if (stateOf(*once) != onceRunning) {
        return fail(ERROR_INVALID_PARAMETER, FALSE);
    }
    setState(*once, (flags & INIT_ONCE_INIT_FAILED) != 0 ? onceUntouched : onceDone);
    gate.changed.notify_all();
    return TRUE;
}

void Sleep(DWORD milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

DWORD GetLastError() { return lastError; }
void SetLastError(DWORD code) { lastError = code; }

void* LocalFree(void* block) {
    std::free(block);
    return nullptr;
}

int WideCharToMultiByte(UINT codePage, DWORD flags, LPCOLESTR wide, int wideSize, char* narrow,
                        int narrowSize, const char* defaultChar, BOOL* usedDefault) {
    if (defaultChar || usedDefault) {
        return fail(ERROR_INVALID_PARAMETER, 0);
    }
    return convert(codePage, (flags & WC_ERR_INVALID_CHARS) != 0, wide, wideSize, narrow,
                   narrowSize);
}

int MultiByteToWideChar(UINT codePage, DWORD flags, const char* narrow, int narrowSize,
                        LPOLESTR wide, int wideSize) {
    return convert(codePage, (flags & MB_ERR_INVALID_CHARS) != 0, narrow, narrowSize, wide,
                   wideSize);
}
}
