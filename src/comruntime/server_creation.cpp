// Starting servers through the class registry.
#include "comruntime/server_creation.h"

#include "comruntime/server_call.h"
#include "comruntime/system_message.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "host/text.h"
#include "platform/floating_point.h"

#include <boost/format.hpp>

#include <cstdint>

namespace axlink2 {
namespace {

// What a library that is loaded, or a server that starts, may leave changed: rounding for the
// thread, handlers for the process.
class ProcessState {
  public:
    ProcessState() = default;
    ~ProcessState() { platform::rearmGuards(); }

  private:
    const platform::FloatingPointState floatingPoint_;
};

} // namespace

HRESULT createServerDispatch(const CLSID& clsid, IDispatch** out, platform::OleString machine) {
    COSERVERINFO serverInfo{};
    serverInfo.pwszName = machine.empty() ? nullptr : machine.data();
    MULTI_QI query{};
    query.pIID = &IID_IUnknown;
    const ProcessState kept;
    const HRESULT hr = askServer([&] {
        return CoCreateInstanceEx(clsid, nullptr,
                                  CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER,
                                  &serverInfo, 1, &query);
    });
    if (FAILED(hr)) return hr;
    const auto unknown = ServerPtr<IUnknown>::adopt(query.pItf);
    HRESULT answer = E_POINTER;
    *out = queryServer<IDispatch>(unknown.get(), IID_IDispatch, &answer).detach();
    // A server that grants the interface and hands out nothing has none.
    return SUCCEEDED(answer) && !*out ? E_NOINTERFACE : answer;
}

void createInstanceServer(IDispatch** out, const CLSID& clsid, const platform::OleString& machine) {
    HRESULT hr = createServerDispatch(clsid, out, machine);
    // A server may have left the thread's apartment once more than it had entered it.
    if (hr == CO_E_NOTINITIALIZED && SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)))
        hr = createServerDispatch(clsid, out, machine);
    if (FAILED(hr)) raiseServerCreationFailed(hr);
}

void raiseServerCreationFailed(HRESULT hr) {
    std::u16string text = systemMessageText(hr);
    if (text.empty()) {
        const auto code = static_cast<std::uint32_t>(hr);
        text = hsys::i18n::to_ustring((boost::format("error 0x%08X") % code).str());
    }
    hmsgcore::raise("VELMAR:COM:servercreationfailed",
                    VELMAR::COM::servercreationfailedSysMsg(text));
}

} // namespace axlink2
