// A pointer of each thread's own, for what is looked at very often.
#pragma once

#include "platform/com.h"

#ifndef _WIN32
#include <pthread.h>
#endif

namespace platform {

// Null until it is set, and again when the thread ends and `atEnd`, if there is one, gets what it
// was. More than a
// thread_local with a destructor: that one takes several times as long on Windows, and not
// everywhere does the memory of thread_locals outlive their destructors.
template <class Tag, void (*atEnd)(void*) = nullptr>
class ThreadSlot {
  public:
#ifdef _WIN32
    static void* get() { return FlsGetValue(index()); }
    // False when there is no room for it.
    static bool set(void* value) { return FlsSetValue(index(), value); }

  private:
    static void NTAPI end(void* value) {
        if constexpr (atEnd != nullptr)
            if (value) atEnd(value);
    }
    static DWORD index() {
        static const DWORD the = FlsAlloc(end);
        return the;
    }
#else
    static void* get() { return value_; }
    static bool set(void* value) {
        if constexpr (atEnd != nullptr) {
            static pthread_key_t key;
            static const bool hasKey = pthread_key_create(&key, end) == 0;
            if (!hasKey || pthread_setspecific(key, value) != 0) return false;
        }
        value_ = value;
        return true;
    }

  private:
    static void end(void* value) {
        value_ = nullptr;
        if constexpr (atEnd != nullptr) atEnd(value);
    }
    static constinit inline thread_local void* value_ [[gnu::tls_model("initial-exec")]] = nullptr;
#endif
};

} // namespace platform
