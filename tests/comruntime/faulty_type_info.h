// Type information that fails on demand: it passes every call on to the real one, but the n-th.
#pragma once

#include "platform/com.h"
#include "platform/holders.h"

namespace axlink2::test {

// How all faulty objects of one test behave, and what they have counted.
struct FaultPlan {
    enum Kind {
        Fail,        // E_FAIL, outputs untouched
        Garbage,     // E_FAIL, outputs pointing nowhere
        EmptySuccess // S_OK, outputs null
    };
    Kind kind = Fail;
    int failingCall = -1;         // counted from 0 over all objects; negative for none
    int calls = 0;                // how many calls that can fail there were
    int outstanding = 0;          // descriptions handed out and not taken back
    int alive = 0;                // faulty objects
    UINT lyingCount = 0;          // when set, what TYPEATTR and ITypeLib say of their counts
    bool lyingParameters = false; // functions claim parameters and give none
};

// `real` behind a faulty front; both stay usable.
platform::ComPtr<ITypeInfo> faultyTypeInfo(ITypeInfo* real, FaultPlan& plan);

// A server that gives `real`'s type information with faults, and is `real` otherwise.
platform::ComPtr<IDispatch> faultyServer(IDispatch* real, FaultPlan& plan);

} // namespace axlink2::test
