// actxserver: a new server and an object of its class.
#include "classmodel/class_description.h"
#include "comruntime/server_creation.h"
#include "comruntime/text_argument.h"
#include "entry/builtin_arguments.h"
#include "entry/entry.h"
#include "entry/server_object.h"
#include "entry/server_options.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "host/text.h"

namespace axlink2 {
namespace {

[[noreturn]] void raiseCreationFailure(HRESULT hr, const std::string& progId) {
    if (hr == CO_E_CLASSSTRING)
        hmsgcore::raise("VELMAR:COM:InvalidProgid",
                        VELMAR::COM::servercreationfailedProgid(progId));
    raiseServerCreationFailed(hr);
}

HRESULT initializeThread() {
    const HRESULT hr = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    // Initialised before: this call's share is given back.
    if (hr == S_FALSE) CoUninitialize();
    return hr;
}

// The first server of a ProgID, from whose type information the class is made.
ServerPtr<IDispatch> startFirstServer(const std::string& progId,
                                      const platform::OleString& machine) {
    CLSID clsid{};
    ServerPtr<IDispatch> server;
    HRESULT hr = classIdOf(progId, &clsid);
    if (SUCCEEDED(hr)) hr = initializeThread();
    if (SUCCEEDED(hr)) hr = createServerDispatch(clsid, server.put(), machine);
    if (FAILED(hr)) raiseCreationFailure(hr, progId);
    return server;
}

harray::unique_array furtherObject(hos::HOSClass* owner, const platform::OleString& machine) {
    const auto* info = static_cast<const COMCoclassClassInfo*>(owner->getClassInfo());
    ServerPtr<IDispatch> server;
    createInstanceServer(server.put(), info->classId, machine);
    // The class is made from this server if an earlier attempt to make it has failed.
    return objectOf(owner, std::move(server));
}

harray::unique_array createServerObject(const std::string& progId,
                                        const platform::OleString& machine) {
    hos::HOSClass* owner = findServerClass(progId);
    return owner ? furtherObject(owner, machine)
                 : serverObject(progId, startFirstServer(progId, machine));
}

} // namespace
} // namespace axlink2

void COM2::actxserver(int nlhs, ArrayHandle* plhs, int nrhs, const hxArray* const* prhs) {
    using namespace axlink2;
    requireCounts(nlhs, nrhs, 5);
    const ServerOptions options = parseServerOptions(nrhs, prhs);
    if (!hoststring::isNonMissingScalarText(prhs[0], 1)) {
        const hbase::core::except::Exception<VELMAR::COM::invalidArg> error{
            VELMAR::COM::invalidArg()};
        harray::detail::do_legacy_hx_error(error);
        throw error;
    }
    const std::string progId = readNarrowText(prhs[0]);
    const platform::OleString machine =
        options.machine ? hsys::i18n::to_wstring(*options.machine) : platform::OleString();
    plhs[0] = createServerObject(progId, machine);
}
