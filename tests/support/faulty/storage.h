// Storages and streams that fail on demand.
#pragma once

#include "support/faulty/fault_plan.h"

namespace axlink2::test {

// `real` behind a faulty front, with everything that it opens; both stay usable.
platform::ComPtr<IStorage> faultyStorage(IStorage* real, FaultPlan& plan);
platform::ComPtr<IStream> faultyStream(IStream* real, FaultPlan& plan);

} // namespace axlink2::test
