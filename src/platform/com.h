// The one door to COM: the SDK's headers on Windows, this project's own COM layer elsewhere.
#pragma once

#ifdef _WIN32

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif

// clang-format off: the SDK's headers want this order
#include <comdef.h>
#include <comutil.h>
#include <ocidl.h>
#include <ole2.h>
#include <oleauto.h>
#include <olectl.h>
#include <windows.h>
// clang-format on

#include <concepts>

// The sources of these are documented as const; these headers don't say so.
template <std::same_as<const VARIANTARG> Source>
HRESULT VariantCopy(VARIANTARG* target, Source* source) {
    return VariantCopy(target, const_cast<VARIANTARG*>(source));
}
template <std::same_as<const VARIANTARG> Source>
HRESULT VariantCopyInd(VARIANT* target, Source* source) {
    return VariantCopyInd(target, const_cast<VARIANTARG*>(source));
}
template <std::same_as<const VARIANTARG> Source>
HRESULT VariantChangeType(VARIANTARG* target, Source* source, USHORT flags, VARTYPE vt) {
    return VariantChangeType(target, const_cast<VARIANTARG*>(source), flags, vt);
}

#else

#include "platform/portable/activation.h"
#include "platform/portable/base_types.h"
#include "platform/portable/bstr.h"
#include "platform/portable/com_support.h"
#include "platform/portable/connection.h"
#include "platform/portable/date.h"
#include "platform/portable/guid.h"
#include "platform/portable/hresults.h"
#include "platform/portable/persistence.h"
#include "platform/portable/registry.h"
#include "platform/portable/safearray.h"
#include "platform/portable/system.h"
#include "platform/portable/typeinfo.h"
#include "platform/portable/unknown.h"
#include "platform/portable/variant.h"
#include "platform/portable/variant_types.h"

#endif
