// Release and copy of array elements, one rule per kind of ownership.
#include "platform/portable/safearray_elements.h"

#include "platform/portable/bstr.h"
#include "platform/portable/variant.h"

#include <cstring>

namespace {

void releaseElement(BSTR& text) { SysFreeString(text); }
void releaseElement(IUnknown*& object) {
    if (object) object->Release();
}
void releaseElement(VARIANT& value) { VariantClear(&value); }

HRESULT copyElement(BSTR& target, const BSTR& source) {
    target = SysAllocStringByteLen(reinterpret_cast<const char*>(source), SysStringByteLen(source));
    return target ? S_OK : E_OUTOFMEMORY;
}
HRESULT copyElement(IUnknown*& target, IUnknown* const& source) {
    target = source;
    if (target) target->AddRef();
    return S_OK;
}
HRESULT copyElement(VARIANT& target, const VARIANT& source) {
    VariantInit(&target);
    return VariantCopy(&target, &source);
}

template <class Element>
void releaseAll(void* first, std::size_t count) {
    auto* elements = static_cast<Element*>(first);
    for (std::size_t i = 0; i != count; ++i)
        releaseElement(elements[i]);
}

template <class Element>
HRESULT copyAll(void* target, const void* source, std::size_t count) {
    auto* to = static_cast<Element*>(target);
    auto* from = static_cast<const Element*>(source);
    for (std::size_t i = 0; i != count; ++i) {
        if (const HRESULT result = copyElement(to[i], from[i]); FAILED(result)) {
            releaseAll<Element>(target, i);
            std::memset(target, 0, count * sizeof(Element));
            return result;
        }
    }
    return S_OK;
}

// What the elements own, as one of the FADF_ words. Those of another size than their kind's are no
// such elements, whatever the array says of itself, nor are those of two kinds; they own nothing.
USHORT ownedKind(const SAFEARRAY& array) {
    switch (const USHORT kind =
                array.fFeatures & (FADF_BSTR | FADF_UNKNOWN | FADF_DISPATCH | FADF_VARIANT)) {
    case FADF_BSTR:
    case FADF_UNKNOWN:
    case FADF_DISPATCH:
        return array.cbElements == sizeof(void*) ? kind : USHORT{0};
    case FADF_VARIANT:
        return array.cbElements == sizeof(VARIANT) ? kind : USHORT{0};
    default:
        return 0;
    }
}

} // namespace

USHORT elementFeatures(VARTYPE vt) noexcept {
    switch (vt) {
    case VT_BSTR:
        return FADF_BSTR;
    case VT_UNKNOWN:
        return FADF_UNKNOWN;
    case VT_DISPATCH:
        return FADF_DISPATCH;
    case VT_VARIANT:
        return FADF_VARIANT;
    default:
        return 0;
    }
}

void releaseElements(const SAFEARRAY& array, void* first, std::size_t count) noexcept {
    const USHORT owned = ownedKind(array);
    if (owned & FADF_BSTR)
        releaseAll<BSTR>(first, count);
    else if (owned & (FADF_UNKNOWN | FADF_DISPATCH))
        releaseAll<IUnknown*>(first, count);
    else if (owned & FADF_VARIANT)
        releaseAll<VARIANT>(first, count);
    std::memset(first, 0, count * array.cbElements);
}

HRESULT copyElements(const SAFEARRAY& array, void* target, const void* source,
                     std::size_t count) noexcept {
    const USHORT owned = ownedKind(array);
    if (owned & FADF_BSTR) return copyAll<BSTR>(target, source, count);
    if (owned & (FADF_UNKNOWN | FADF_DISPATCH)) return copyAll<IUnknown*>(target, source, count);
    if (owned & FADF_VARIANT) return copyAll<VARIANT>(target, source, count);
    std::memcpy(target, source, count * array.cbElements);
    return S_OK;
}
