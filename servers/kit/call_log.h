// A record of every IDispatch::Invoke that reaches an object of the kit.
#pragma once

#include "platform/holders.h"

#include <mutex>
#include <string>
#include <vector>

namespace kit {

// An argument as it came, and a copy of its value with VT_BYREF followed.
struct LoggedArgument {
    VARTYPE vt;
    platform::ScopedVariant value;
};

struct LoggedCall {
    std::string object; // the class's name
    DISPID dispid;
    IID riid;
    LCID lcid;
    WORD flags;
    std::vector<LoggedArgument> arguments; // in the order of rgvarg: last first
    std::vector<DISPID> named;
    bool wantsResult;
    bool wantsExcepInfo;
    bool wantsArgumentError;
};

// Records while it lives; of several, the youngest does. Calls may come from any thread.
class CallLog {
  public:
    CallLog();
    CallLog(const CallLog&) = delete;
    ~CallLog();

    const std::vector<LoggedCall>& calls() const { return calls_; }
    void clear() { calls_.clear(); }

    // The log that records now, or null.
    static CallLog* current();

    void record(const std::string& object, DISPID dispid, REFIID riid, LCID lcid, WORD flags,
                const DISPPARAMS* params, const VARIANT* result, const EXCEPINFO* excepInfo,
                const UINT* argumentError);

  private:
    std::mutex guard_;
    std::vector<LoggedCall> calls_;
    CallLog* outer_;
};

} // namespace kit
