// Calls of a server's members, and the server's life meanwhile.
#pragma once

#include "platform/com.h"
#include "platform/guarded_call.h"

namespace axlink2 {

// Gives one reference back, at the end of the innermost call to `server` when one is under way. A
// fault inside the server is contained. Null is allowed.
void releaseServer(IDispatch* server);

// A call that is under way. Calls nest, as a server may call back. Counting a reference for each
// call instead takes as long as all the rest of a property's read does.
class CallInFlight {
  public:
    explicit CallInFlight(IDispatch* target) : target_(target), outer_(innermost) {
        innermost = this;
    }
    CallInFlight(const CallInFlight&) = delete;
    CallInFlight& operator=(const CallInFlight&) = delete;
    // The chain is restored rather than shortened by one: a fault may have skipped inner calls.
    ~CallInFlight() {
        innermost = outer_;
        for (; owed_ > 0; --owed_)
            releaseServer(target_);
    }

    // Takes a reference on `server` over, to give it back at the end of the call to it; false when
    // there is no such call.
    static bool takeOver(IDispatch* server) {
        for (CallInFlight* call = innermost; call; call = call->outer_)
            if (call->target_ == server) {
                ++call->owed_;
                return true;
            }
        return false;
    }

  private:
    // Servers are called, and let go, on the interpreter's thread alone.
    static constinit inline CallInFlight* innermost = nullptr;

    IDispatch* const target_;
    CallInFlight* const outer_;
    unsigned owed_ = 0;
};

// `target->Invoke` with IID_NULL. A fault or an exception inside the server ends the call with
// DISP_E_EXCEPTION; so does a null target. The server lives to the end of the call when its owner
// lets go of it with `releaseServer`, which is cheaper than a reference for each call. Inline,
// since every member call passes through it.
inline HRESULT guardedInvoke(IDispatch* target, DISPID id, LCID lcid, WORD flags,
                             DISPPARAMS* params, VARIANT* result, EXCEPINFO* excepInfo,
                             UINT* argumentError) {
    if (!target) return DISP_E_EXCEPTION;
    const CallInFlight call(target);
    HRESULT hr = DISP_E_EXCEPTION;
    const platform::Fault fault = platform::guarded([=, &hr] {
        hr = target->Invoke(id, IID_NULL, lcid, flags, params, result, excepInfo, argumentError);
    });
    if (!fault) return hr;
    if (excepInfo) *excepInfo = {}; // half written, perhaps
    return DISP_E_EXCEPTION;
}

} // namespace axlink2
