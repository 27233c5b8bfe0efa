// actxGetRunningServer: an object for a server that is running already.
#include "comruntime/server_call.h"
#include "comruntime/text_argument.h"
#include "entry/builtin_arguments.h"
#include "entry/entry.h"
#include "entry/server_object.h"
#include "host/message_ids.h"
#include "host/text.h"

namespace axlink2 {
namespace {

// The running server of a class through its primary identity; empty when a step fails.
ServerPtr<IDispatch> runningServer(const CLSID& clsid) {
    const auto unknown =
        obtain<IUnknown>([&](IUnknown** out) { return GetActiveObject(clsid, nullptr, out); });
    const auto primary = queryServer<IUnknown>(unknown.get(), IID_IUnknown);
    return queryServer<IDispatch>(primary.get(), IID_IDispatch);
}

ServerPtr<IDispatch> attachToServer(const std::string& progId) {
    CLSID clsid{};
    if (FAILED(classIdOf(progId, &clsid))) hmsgcore::raise(VELMAR::COM::invalidprogid(progId));
    ServerPtr<IDispatch> server = runningServer(clsid);
    if (!server) hmsgcore::raise(VELMAR::COM::norunningserver(progId));
    return server;
}

} // namespace
} // namespace axlink2

void COM2::actxGetRunningServer(int nlhs, ArrayHandle* plhs, int nrhs, const hxArray* const* prhs) {
    using namespace axlink2;
    requireCounts(nlhs, nrhs, 1);
    if (!hoststring::isNonMissingScalarText(prhs[0], 1)) hmsgcore::raise(VELMAR::COM::invalidArg());
    const std::string progId = readNarrowText(prhs[0]);
    plhs[0] = serverObject(progId, attachToServer(progId));
}
