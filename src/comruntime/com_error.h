// The way from a failed call to a host error.
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

// Raises the host error of a failed call: its text from the catalogue, the server's record and the
// system; its identifier "VELMAR:COM:E" and the decimal code that the server reported, or else
// `hr`. `argumentError` is what `Invoke` reported and `argumentCount` how many arguments it was
// given; both 0 where no call was made.
[[noreturn]] void throwCOMError(HRESULT hr, const COMExcepInfo& excepInfo, UINT argumentError,
                                UINT argumentCount);

} // namespace axlink2
