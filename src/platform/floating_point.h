// The processor's floating-point state, which foreign code may change for all that follows.
#pragma once

#include <cfenv>

namespace platform {

// Puts back, at the end at the latest, what there was: rounding, exceptions that end the program,
// small numbers taken for zero.
class FloatingPointState {
  public:
    FloatingPointState() { std::fegetenv(&state_); }
    FloatingPointState(const FloatingPointState&) = delete;
    FloatingPointState& operator=(const FloatingPointState&) = delete;
    ~FloatingPointState() { putBack(); }

    void putBack() const { std::fesetenv(&state_); }

  private:
    std::fenv_t state_;
};

} // namespace platform
