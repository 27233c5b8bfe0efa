// Classes and objects of servers that run.
#include "entry/server_object.h"

#include "classmodel/class_description.h"
#include "classmodel/namespaces.h"
#include "classmodel/object_creation.h"
#include "comruntime/class_names.h"
#include "host/exception.h"
#include "host/message_ids.h"

namespace axlink2 {
namespace {

// Else the class of that name is another ProgID's.
bool isGivenBack(const std::string& progId) {
    return decodeClassName(encodeClassName(progId)) == progId;
}

} // namespace

HRESULT classIdOf(const std::string& progId, CLSID* clsid) {
    const _bstr_t wideProgId(progId.c_str());
    const HRESULT hr = CLSIDFromProgID(wideProgId, clsid);
    if (SUCCEEDED(hr) && !isGivenBack(progId)) hmsgcore::raise(VELMAR::COM::invalidprogid(progId));
    return hr;
}

hos::HOSClass* findServerClass(const std::string& progId) {
    return isGivenBack(progId) ? findClass(comNamespace, encodeClassName(progId)) : nullptr;
}

harray::unique_array serverObject(const std::string& progId, ServerPtr<IDispatch> server) {
    hos::HOSClass* owner = findServerClass(progId);
    if (!owner)
        owner = addClass(comNamespace,
                         std::make_unique<COMCoclassClassInfo>(encodeClassName(progId), nullptr));
    return objectOf(owner, std::move(server));
}

harray::unique_array objectOf(hos::HOSClass* owner, ServerPtr<IDispatch> server) {
    const NewObject made = makeObjectFrom(owner, server.get());
    made.record->dispatch = server.detach();
    return objectArray(made);
}

} // namespace axlink2
