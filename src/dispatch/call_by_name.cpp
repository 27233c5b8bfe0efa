// Calls by name.
#include "dispatch/call_by_name.h"

#include "classmodel/instance_record.h"
#include "comruntime/com_error.h"
#include "comruntime/guarded_invoke.h"
#include "comruntime/server_call.h"
#include "conversion/variant_to_host.h"
#include "dispatch/untyped_argument.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "platform/holders.h"

#include <vector>

namespace axlink2 {
namespace {

DISPID dispidOf(IDispatch* server, const char* name) {
    const _bstr_t text(name);
    LPOLESTR wide = text;
    DISPID dispid = DISPID_UNKNOWN;
    const HRESULT hr = askServer(
        [&] { return server->GetIDsOfNames(IID_NULL, &wide, 1, LOCALE_SYSTEM_DEFAULT, &dispid); });
    if (FAILED(hr)) throwCOMError(hr, COMExcepInfo(false), 0, 0);
    return dispid;
}

// The arguments of one call, last first as `rgvarg` wants them, with what they refer to.
class UntypedArguments {
  public:
    UntypedArguments(std::int32_t count, const hos::HOSValue* inputs)
        : variants_(static_cast<std::size_t>(count)) {
        for (std::size_t i = 0; i < variants_.size(); ++i)
            untypedToVariant(*variants_[variants_.size() - 1 - i].inOut(), inputs[i].array(),
                             holders_);
    }

    // What `params` points at must be a plain array.
    VARIANT* data() { return variants_.empty() ? nullptr : variants_.front().inOut(); }
    UINT count() const { return static_cast<UINT>(variants_.size()); }

  private:
    static_assert(sizeof(platform::ScopedVariant) == sizeof(VARIANT));
    std::vector<platform::ScopedVariant> variants_;
    ReferenceHolders holders_;
};

} // namespace

void callByName(hos::HOSInterfacePtr object, const char* name, WORD flags,
                std::uint32_t* outputCount, hos::HOSValue* outputs, std::int32_t inputCount,
                const hos::HOSValue* inputs) {
    const COMInstanceRecord* record = recordOf(object);
    if (!record)
        hmsgcore::raise("VELMAR:UndefinedFunction",
                        VELMAR::ErrorRecovery::ValidArgumentTypeMissing("invoke"));
    if (!record->dispatch) hmsgcore::raise(VELMAR::COM::invalidmethodname());
    const auto server = ServerPtr<IDispatch>::borrow(record->dispatch);
    const DISPID dispid = dispidOf(server.get(), name);

    UntypedArguments arguments(inputCount, inputs);
    DISPID named = DISPID_PROPERTYPUT;
    DISPPARAMS params{arguments.data(), nullptr, arguments.count(), 0};
    if (flags == DISPATCH_PROPERTYPUT) {
        params.rgdispidNamedArgs = &named;
        params.cNamedArgs = 1;
    }
    COMExcepInfo excepInfo(true);
    UINT argumentError = 0;
    platform::ScopedVariant result;
    const HRESULT hr = guardedInvoke(server.get(), dispid, LOCALE_USER_DEFAULT, flags, &params,
                                     result.inOut(), &excepInfo.info, &argumentError);
    if (FAILED(hr)) {
        (void)result.detach(); // an out-parameter of a failed call is not to be trusted
        throwCOMError(hr, excepInfo, argumentError, arguments.count());
    }
    hxArray* value = nullptr;
    variantToHost(result.inOut(), &value, {.warn = true, .owner = object});
    if (*outputCount == 0) *outputCount = 1;
    outputs[0] = hos::HOSValue::ofPointer(value);
}

} // namespace axlink2
