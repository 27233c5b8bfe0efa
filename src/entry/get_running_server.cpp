// actxGetRunningServer: an object for a server that is running already.
#include "comruntime/class_names.h"
#include "comruntime/text_argument.h"
#include "entry/builtin_arguments.h"
#include "entry/entry.h"
#include "entry/server_object.h"
#include "host/message_ids.h"
#include "host/text.h"
#include "platform/holders.h"

namespace axlink2 {
namespace {

using platform::ComPtr;

// The running server of a class through its primary identity.
HRESULT attach(const CLSID& clsid, ComPtr<IDispatch>& server) {
    ComPtr<IUnknown> unknown;
    HRESULT hr = GetActiveObject(clsid, nullptr, unknown.put());
    if (FAILED(hr)) {
        (void)unknown.detach();
        return hr;
    }
    if (!unknown) return E_POINTER;
    ComPtr<IUnknown> primary;
    hr = unknown->QueryInterface(IID_IUnknown, primary.putVoid());
    if (FAILED(hr)) {
        (void)primary.detach();
        return hr;
    }
    if (!primary) return E_POINTER;
    hr = primary->QueryInterface(IID_IDispatch, server.putVoid());
    if (FAILED(hr)) (void)server.detach();
    return SUCCEEDED(hr) && !server ? E_POINTER : hr;
}

ComPtr<IDispatch> attachToServer(const std::string& progId) {
    const _bstr_t wideProgId(progId.c_str());
    CLSID clsid{};
    if (FAILED(CLSIDFromProgID(wideProgId, &clsid)))
        hmsgcore::raise(VELMAR::COM::invalidprogid(progId));
    ComPtr<IDispatch> server;
    if (FAILED(attach(clsid, server))) hmsgcore::raise(VELMAR::COM::norunningserver(progId));
    return server;
}

} // namespace
} // namespace axlink2

void COM2::actxGetRunningServer(int nlhs, ArrayHandle* plhs, int nrhs, const hxArray* const* prhs) {
    using namespace axlink2;
    requireCounts(nlhs, nrhs, 1);
    if (!hoststring::isNonMissingScalarText(prhs[0], 1)) hmsgcore::raise(VELMAR::COM::invalidArg());
    const std::string progId = readNarrowText(prhs[0]);
    const std::string className = encodeClassName(progId);
    ComPtr<IDispatch> server = attachToServer(progId);

    plhs[0] = serverObject(className, std::move(server));
}
