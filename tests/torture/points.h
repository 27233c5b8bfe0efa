// Where the system under test can be made to fail: calls into COM, and allocations.
#pragma once

#include "support/faulty/fault_plan.h"

namespace torture {

using axlink2::test::FaultPlan;

// Calls of COM's functions.
extern FaultPlan functionCalls;

// Calls of the interfaces that servers hand out.
extern FaultPlan serverCalls;

// Allocations of texts, arrays and task memory by COM's functions.
extern FaultPlan comMemory;

// Allocations of any kind.
extern FaultPlan anyMemory;

// While it lives, allocations of the tests themselves don't count.
class Uncounted {
  public:
    Uncounted() : counted_(anyMemory.counting) { anyMemory.counting = false; }
    Uncounted(const Uncounted&) = delete;
    ~Uncounted() { anyMemory.counting = counted_; }

  private:
    bool counted_;
};

} // namespace torture
