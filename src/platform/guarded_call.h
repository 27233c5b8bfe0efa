// Calls that survive a fault of the processor inside them.
#pragma once

#include <cstdint>

namespace platform {

// What stopped a guarded call: an exception code of the Windows system, and the address that was
// accessed (access violation) or executed. False when nothing did.
struct Fault {
    std::uint32_t code = 0;
    void* address = nullptr;

    explicit operator bool() const { return code != 0; }
};

inline constexpr std::uint32_t faultAccessViolation = 0xC0000005;
inline constexpr std::uint32_t faultIllegalInstruction = 0xC000001D;
inline constexpr std::uint32_t faultIntegerDivideByZero = 0xC0000094;
inline constexpr std::uint32_t faultStackOverflow = 0xC00000FD;
inline constexpr std::uint32_t faultCppException = 0xE06D7363;

// Calls function(context) and answers the fault that ended it; a C++ exception ends it too, with
// the code faultCppException. After a fault the destructors of the frames in between have not run:
// own nothing and lock nothing there. Calls may nest, in any thread; a fault belongs to the
// innermost one.
Fault callGuarded(void (*function)(void*), void* context);

// The same for anything callable; what it returns is dropped.
template <class F>
Fault guarded(F f) {
    return callGuarded([](void* context) { static_cast<void>((*static_cast<F*>(context))()); }, &f);
}

// Puts the guard back where foreign code has taken its place for the whole process: a library that
// was loaded, a server that was started. Handlers that it finds there get what it passes on.
void rearmGuards();

// While it lives, the thread's faults are nobody else's: the guarded calls around it have come back
// to code of the program itself, and a fault there ends the program as it would without them.
class UnguardedRegion {
  public:
    UnguardedRegion();
    UnguardedRegion(const UnguardedRegion&) = delete;
    UnguardedRegion& operator=(const UnguardedRegion&) = delete;
    ~UnguardedRegion();

  private:
    void* outer_;
};

} // namespace platform
