// Copies, changes and ends of VARIANTs and arrays that may hold objects of servers, or refer to
// their memory: what runs there runs in a guard. Numbers and texts pay nothing for it.
#pragma once

#include "platform/com.h"

namespace platform {

// VariantCopy, VariantCopyInd and VariantChangeType with flags 0. `to`, which may be `from`, holds
// nothing yet, or, where the two are one, a reference. E_FAIL after a fault, and `to` is empty.
HRESULT copyVariant(VARIANT& to, const VARIANT& from);
HRESULT copyReferred(VARIANT& to, const VARIANT& from);
HRESULT changeVariant(VARIANT& to, const VARIANT& from, VARTYPE vt);

// VariantClear and SafeArrayDestroy. An object whose end fails keeps nothing else from ending, and
// arrays may stand in each other deeper than the stack is. Null is allowed.
void clearVariant(VARIANT& value) noexcept;
void destroyArray(SAFEARRAY* array) noexcept;

} // namespace platform
