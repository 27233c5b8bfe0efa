// Copies calls into the log.
#include "servers/kit/call_log.h"

#include <atomic>

namespace kit {

namespace {

std::atomic<CallLog*> recorder = nullptr;

} // namespace

CallLog::CallLog() : outer_(recorder.exchange(this)) {}

CallLog::~CallLog() { recorder = outer_; }

CallLog* CallLog::current() { return recorder.load(std::memory_order_relaxed); }

void CallLog::record(const std::string& object, DISPID dispid, REFIID riid, LCID lcid, WORD flags,
                     const DISPPARAMS* params, const VARIANT* result, const EXCEPINFO* excepInfo,
                     const UINT* argumentError) {
    LoggedCall call{.object = object,
                    .dispid = dispid,
                    .riid = riid,
                    .lcid = lcid,
                    .flags = flags,
                    .arguments = {},
                    .named = {},
                    .wantsResult = result != nullptr,
                    .wantsExcepInfo = excepInfo != nullptr,
                    .wantsArgumentError = argumentError != nullptr};
    if (params) {
        for (UINT index = 0; index < params->cArgs; ++index) {
            auto& logged = call.arguments.emplace_back();
            logged.vt = params->rgvarg[index].vt;
            // What can't be copied stays empty; its kind tells what it was.
            (void)VariantCopyInd(logged.value.put(), &params->rgvarg[index]);
        }
        if (params->cNamedArgs)
            call.named.assign(params->rgdispidNamedArgs,
                              params->rgdispidNamedArgs + params->cNamedArgs);
    }
    const std::lock_guard lock(guard_);
    calls_.push_back(std::move(call));
}

} // namespace kit
