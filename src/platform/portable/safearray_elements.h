// Owning elements of a SAFEARRAY: text, objects, VARIANTs; everything else is plain bytes.
#pragma once

#include "platform/portable/safearray.h"

// The fFeatures that say what elements of the kind own.
USHORT elementFeatures(VARTYPE vt) noexcept;

// Releases `count` elements from `first` on and zeroes them.
void releaseElements(const SAFEARRAY& array, void* first, std::size_t count) noexcept;

// Fills `count` raw elements with own copies. On failure what was made is released again.
HRESULT copyElements(const SAFEARRAY& array, void* target, const void* source,
                     std::size_t count) noexcept;
