// Interfaces through which an object keeps its state, failing on demand.
#pragma once

#include "support/faulty/fault_plan.h"

namespace axlink2::test {

// The answer of a front of `real` to QueryInterface for one of these interfaces; E_NOINTERFACE for
// any other, and for one that `real` doesn't offer. The new front belongs to `identity`.
HRESULT givePersistence(IUnknown* real, REFIID iid, FaultPlan& plan, IUnknown* identity,
                        void** out);

} // namespace axlink2::test
