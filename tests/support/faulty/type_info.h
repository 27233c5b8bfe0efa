// Type information that fails on demand.
#pragma once

#include "support/faulty/fault_plan.h"

namespace axlink2::test {

// `real` behind a faulty front; both stay usable.
platform::ComPtr<ITypeInfo> faultyTypeInfo(ITypeInfo* real, FaultPlan& plan);

// Puts a front before a type that the real object has just given, unless it gave none.
HRESULT wrapType(HRESULT hr, ITypeInfo** type, FaultPlan& plan);

} // namespace axlink2::test
