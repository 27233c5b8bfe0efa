// A shared library that does what servers shouldn't as soon as it is loaded. HOSTILITY says what;
// it serves no class.
#include "platform/com.h"

#include <cfenv>
#include <csignal>
#include <cstdlib>
#include <initializer_list>
#include <xmmintrin.h>

namespace {

// Rounds up, takes small numbers for zero, and lets a division by zero end the program.
[[maybe_unused]] void changeNumbers() {
    std::fesetround(FE_UPWARD);
    _mm_setcsr((_mm_getcsr() | _MM_FLUSH_ZERO_ON) & ~unsigned{_MM_MASK_DIV_ZERO});
}

[[maybe_unused]] void takeHandlers() {
    for (const int number : {SIGSEGV, SIGFPE, SIGILL})
        std::signal(number, SIG_DFL);
}

[[maybe_unused]] [[gnu::no_sanitize("undefined")]] void fault() {
    volatile int* volatile nowhere = nullptr;
    *nowhere = 1; // NOLINT: the fault that is wanted
}

[[maybe_unused]] void fail() { throw 1; }
[[maybe_unused]] void leave() { std::exit(0); }
[[maybe_unused]] void crashAtEnd() { std::atexit(fault); }

// Goes where the loading of this library came from.
[[maybe_unused]] void activate() {
    IUnknown* object = nullptr;
    CLSID other{};
    if (SUCCEEDED(CLSIDFromProgID(OLESTR("Sample.Child.1"), &other)) &&
        SUCCEEDED(CoCreateInstance(other, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                   reinterpret_cast<void**>(&object))))
        object->Release();
}

[[maybe_unused]] const bool done = [] {
    HOSTILITY();
    return true;
}();

} // namespace

#ifdef _WIN32
#define EXPORTED __declspec(dllexport)
#else
#define EXPORTED [[gnu::visibility("default")]]
#endif

extern "C" EXPORTED HRESULT STDMETHODCALLTYPE DllGetClassObject(REFCLSID, REFIID, void** object) {
    *object = nullptr;
    return CLASS_E_CLASSNOTAVAILABLE;
}
