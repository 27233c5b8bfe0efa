// One call of a declared member, whose failure is a host error.
#pragma once

#include "comruntime/com_error.h"
#include "comruntime/guarded_invoke.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "platform/holders.h"

namespace axlink2 {

[[noreturn, gnu::cold, gnu::noinline]] inline void raiseNoServer() {
    hmsgcore::raise(VELMAR::COM::invalidmethodname());
}

// `guardedInvoke` with the arguments in `params`; the result goes to `*result`, unless that is
// null. Raises the error of a failed call, "VELMAR:COM:invalidmethodname" without server. Inline,
// since every member call passes through it.
[[gnu::always_inline]] inline void invokeOrThrow(IDispatch* server, DISPID dispid, WORD flags,
                                                 DISPPARAMS& params,
                                                 platform::ScopedVariant* result) {
    const UINT argumentCount = params.cArgs; // the server may write to `params`
    COMExcepInfo excepInfo(true);
    UINT argumentError = 0;
    const HRESULT hr =
        guardedInvoke(server, dispid, LOCALE_USER_DEFAULT, flags, &params,
                      result ? result->inOut() : nullptr, &excepInfo.info, &argumentError);
    if (SUCCEEDED(hr)) return;
    if (!server) raiseNoServer();
    if (result) (void)result->detach(); // an out-parameter of a failed call is not to be trusted
    throwCOMError(hr, excepInfo, argumentError, argumentCount);
}

} // namespace axlink2
