// Calls into servers that survive a fault there, and the way from a failed call to a host error.
#pragma once

#include "platform/com.h"

namespace axlink2 {

// The record that a server fills when a call fails. Frees its texts at the end.
class COMExcepInfo {
  public:
    // `active` when `info` is handed to a server; inactive when there is only a code.
    explicit COMExcepInfo(bool active) : active(active) {}
    COMExcepInfo(const COMExcepInfo&) = delete;
    COMExcepInfo& operator=(const COMExcepInfo&) = delete;
    ~COMExcepInfo() {
        if (info.bstrSource || info.bstrDescription || info.bstrHelpFile) freeTexts();
    }

    EXCEPINFO info{};
    const bool active;

  private:
    void freeTexts();
};

// `target->Invoke` with IID_NULL. A fault or an exception inside the server ends the call with
// DISP_E_EXCEPTION; so does a null target.
HRESULT guardedInvoke(IDispatch* target, DISPID id, LCID lcid, WORD flags, DISPPARAMS* params,
                      VARIANT* result, EXCEPINFO* excepInfo, UINT* argumentError);

// `target->GetTypeInfo(0, LOCALE_SYSTEM_DEFAULT, out)`. A fault inside the server gives E_FAIL.
HRESULT guardedGetTypeInfo(IDispatch* target, ITypeInfo** out);

// Raises the host error of a failed call: its text from the catalogue, the server's record and the
// system; its identifier "VELMAR:COM:E" and the decimal code that the server reported, or else
// `hr`. `argumentError` is what `Invoke` reported and `argumentCount` how many arguments it was
// given; both 0 where no call was made.
[[noreturn]] void throwCOMError(HRESULT hr, const COMExcepInfo& excepInfo, UINT argumentError,
                                UINT argumentCount);

} // namespace axlink2
