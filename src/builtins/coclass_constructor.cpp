// Construction by class name.
#include "builtins/coclass_constructor.h"

#include "classmodel/class_description.h"
#include "comruntime/server_creation.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "host/object_array.h"
#include "host/text.h"

#include <string_view>

namespace axlink2 {

void COMCoclassConstructorInfo::invoke(const hos::HOSClient*, std::uint32_t*,
                                       hos::HOSValue* outputs, std::int32_t,
                                       hos::HOSValue* inputs) {
    const hos::HOSInterfacePtr object = hoGetArrayElement(outputs[0].array(), 0);
    COMInstanceRecord* record = recordOf(object);
    if (!record || std::string_view(inputs[0].pointer<const char>()) != "server") return;

    const std::string_view wanted(inputs[2].pointer<const char>());
    if (wanted == "IUnknown") hmsgcore::raise(VELMAR::COM::unsupported64bit());
    if (wanted != "IDispatch") return;
    const auto* info = static_cast<const COMCoclassClassInfo*>(object->getClass()->getClassInfo());
    createInstanceServer(&record->dispatch, info->classId,
                         hsys::i18n::to_wstring(*inputs[1].text()));
}

} // namespace axlink2
