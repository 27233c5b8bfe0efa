// Servers that fail on demand, with everything that they hand out.
#pragma once

#include "support/faulty/fault_plan.h"

namespace axlink2::test {

// `real` behind a faulty front; both stay usable. Objects that come out of its members have fronts
// as well, one for each object; so have its type information and its connection points.
platform::ComPtr<IDispatch> faultyServer(IDispatch* real, FaultPlan& plan);

} // namespace axlink2::test
