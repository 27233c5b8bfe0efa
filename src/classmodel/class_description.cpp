// Class descriptions: construction, and the records of their objects.
#include "classmodel/class_description.h"

#include "classmodel/object_tree.h"
#include "comruntime/class_names.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "host/object_array.h"

#include <boost/format.hpp>

#include <cstdint>
#include <memory>

namespace axlink2 {

void* COMBaseClassInfo::createInstanceData() { return new COMInstanceRecord(); }

void COMBaseClassInfo::destroyInstanceData(hos::HOSInterface*, void* record) {
    const std::unique_ptr<COMInstanceRecord> owned(static_cast<COMInstanceRecord*>(record));
    if (!owned) return;
    detachFromTree(*owned);
    releaseServerReferences(*owned);
}

COMCoclassClassInfo::COMCoclassClassInfo(const std::string& name, IDispatch* server)
    : COMBaseClassInfo(name, server) {
    const std::string progId = decodeClassName(name);
    const _bstr_t wideProgId(progId.c_str());
    const HRESULT hr = CLSIDFromProgID(wideProgId, &classId);
    if (SUCCEEDED(hr)) return;
    const std::string code = (boost::format("%08x") % static_cast<std::uint32_t>(hr)).str();
    hmsgcore::raise("VELMAR:COM:invalidprogid",
                    VELMAR::COM::invalidprogidNameAndErrcode(progId, code));
}

IDispatch* passedServerOf(const hxArray* objects) {
    const hos::HOSInterfacePtr object = hoGetArrayElement(objects, 0);
    if (!object) return nullptr;
    if (object->isDeleted()) raiseInvalidHandle();
    hos::HOSClass* owner = object->getClass();
    if (!owner || !dynamic_cast<COMBaseClassInfo*>(owner->getClassInfo())) return nullptr;
    const COMInstanceRecord* record = recordOf(object);
    if (!record || !record->dispatch) hmsgcore::raise(VELMAR::COM::invalidmethodname());
    return record->dispatch;
}

} // namespace axlink2
