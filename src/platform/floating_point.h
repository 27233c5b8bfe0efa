// The processor's floating-point state, which foreign code may change for all that follows.
#pragma once

#include <cfenv>

#ifdef __SSE__
#include <xmmintrin.h>
#endif

namespace platform {

// Puts back, at the end at the latest, what there was: rounding, exceptions that end the program,
// small numbers taken for zero.
class FloatingPointState {
  public:
    FloatingPointState() { std::fegetenv(&state_); }
    FloatingPointState(const FloatingPointState&) = delete;
    FloatingPointState& operator=(const FloatingPointState&) = delete;
    ~FloatingPointState() { putBack(); }

    void putBack() const {
        std::fesetenv(&state_);
#ifdef __SSE__
        _mm_setcsr(control_);
#endif
    }

  private:
    std::fenv_t state_;
#ifdef __SSE__
    const unsigned control_ = _mm_getcsr(); // which not every C library keeps in its state
#endif
};

} // namespace platform
