// A limit on the steps and the memory of one program, within what the shell itself allows.
#pragma once

namespace fuzz {

// While it lives, evaluating raises "VELMAR:toolong" after some hundred expressions, and large
// blocks of memory are refused.
class StepLimit {
  public:
    StepLimit();
    StepLimit(const StepLimit&) = delete;
    StepLimit& operator=(const StepLimit&) = delete;
    ~StepLimit();
};

} // namespace fuzz
