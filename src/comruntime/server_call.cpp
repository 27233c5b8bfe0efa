// Guarded calls, and the references that end while one is under way.
#include "comruntime/server_call.h"

namespace axlink2 {
namespace {

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

} // namespace

HRESULT guardedInvoke(IDispatch* target, DISPID id, LCID lcid, WORD flags, DISPPARAMS* params,
                      VARIANT* result, EXCEPINFO* excepInfo, UINT* argumentError) {
    if (!target) return DISP_E_EXCEPTION;
    const CallInFlight call(target);
    HRESULT hr = DISP_E_EXCEPTION;
    const platform::Fault fault = platform::guarded([&] {
        hr = target->Invoke(id, IID_NULL, lcid, flags, params, result, excepInfo, argumentError);
    });
    if (!fault) return hr;
    if (excepInfo) *excepInfo = {}; // half written, perhaps
    return DISP_E_EXCEPTION;
}

HRESULT guardedGetTypeInfo(IDispatch* target, ITypeInfo** out) {
    return askServer([&] { return target->GetTypeInfo(0, LOCALE_SYSTEM_DEFAULT, out); });
}

void releaseServer(IDispatch* server) {
    if (!CallInFlight::takeOver(server)) guardedRelease(server);
}

void guardedRelease(IUnknown* object) {
    if (object) platform::guarded([object] { object->Release(); });
}

} // namespace axlink2
