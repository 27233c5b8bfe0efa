// Calls into servers that survive a fault there.
#pragma once

#include "platform/com.h"

namespace axlink2 {

// `target->Invoke` with IID_NULL. A fault or an exception inside the server ends the call with
// DISP_E_EXCEPTION; so does a null target. The server lives to the end of the call when its owner
// lets go of it with `releaseServer`, which is cheaper than a reference for each call.
HRESULT guardedInvoke(IDispatch* target, DISPID id, LCID lcid, WORD flags, DISPPARAMS* params,
                      VARIANT* result, EXCEPINFO* excepInfo, UINT* argumentError);

// `target->GetTypeInfo(0, LOCALE_SYSTEM_DEFAULT, out)`. A fault inside the server gives E_FAIL.
HRESULT guardedGetTypeInfo(IDispatch* target, ITypeInfo** out);

// Gives one reference back, at the end of the innermost call to `server` when one is under way. A
// fault inside the server is contained. Null is allowed.
void releaseServer(IDispatch* server);

// `object->Release()`; a fault inside it is contained. Null is allowed.
void guardedRelease(IUnknown* object);

} // namespace axlink2
