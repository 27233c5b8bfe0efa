// Guarded calls of type information and references.
#include "comruntime/server_call.h"

namespace axlink2 {

HRESULT guardedGetTypeInfo(IDispatch* target, ITypeInfo** out) {
    return askServer([&] { return target->GetTypeInfo(0, LOCALE_SYSTEM_DEFAULT, out); });
}

void guardedRelease(IUnknown* object) {
    if (object) platform::guarded([object] { object->Release(); });
}

} // namespace axlink2
