// Construction by class name.
#include "builtins/coclass_constructor.h"

#include "classmodel/class_description.h"
#include "comruntime/guarded_invoke.h"
#include "comruntime/server_call.h"
#include "comruntime/server_creation.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "host/object_array.h"
#include "host/text.h"

#include <string_view>
#include <utility>

namespace axlink2 {

void COMCoclassConstructorInfo::invoke(const hos::HOSClient*, std::uint32_t*,
                                       hos::HOSValue* outputs, std::int32_t,
                                       hos::HOSValue* inputs) {
    const hos::HOSInterfacePtr object = hoGetArrayElement(outputs[0].array(), 0);
    if (!recordOf(object) || std::string_view(inputs[0].pointer<const char>()) != "server") return;

    const std::string_view wanted(inputs[2].pointer<const char>());
    if (wanted == "IUnknown") hmsgcore::raise(VELMAR::COM::unsupported64bit());
    if (wanted != "IDispatch") return;
    const auto* info = static_cast<const COMCoclassClassInfo*>(object->getClass()->getClassInfo());
    ServerPtr<IDispatch> server;
    createInstanceServer(server.put(), info->classId, hsys::i18n::to_wstring(*inputs[1].text()));
    // The object may have ended while its server started.
    if (COMInstanceRecord* record = recordOf(object))
        releaseServer(std::exchange(record->dispatch, server.detach()));
}

} // namespace axlink2
