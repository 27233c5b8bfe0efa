// Ending objects.
#include "builtins/release_delete.h"

#include "builtins/call_support.h"
#include "classmodel/object_tree.h"
#include "host/exception.h"
#include "host/message_ids.h"

namespace axlink2 {

void COMReleaseMethodInfo::invoke(const hos::HOSClient*, std::uint32_t*, hos::HOSValue*,
                                  std::int32_t, hos::HOSValue* inputs) {
    const hos::HOSInterfacePtr object = liveObject(inputs);
    if (!object) return;
    detachFromTree(*recordOf(object));
    object->destroy(hos::HOSGetPublicClient());
}

void COMDeleteMethodInfo::invoke(const hos::HOSClient*, std::uint32_t*, hos::HOSValue*,
                                 std::int32_t inputCount, hos::HOSValue* inputs) {
    if (inputCount > 1) hmsgcore::raise(VELMAR::COM::toomanyinargs());
    const hos::HOSInterfacePtr object = liveObject(inputs);
    if (!object) return;
    const hos::HOSClient* client = hos::HOSGetPublicClient();
    deleteTree(*recordOf(object), client);
    object->destroy(client);
}

} // namespace axlink2
