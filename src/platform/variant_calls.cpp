// Guarded ends, one object at a time.
#include "platform/variant_calls.h"

#include "platform/guarded_call.h"

#include <new>
#include <utility>
#include <vector>

namespace platform {
namespace {

constexpr bool isObject(VARTYPE vt) { return vt == VT_DISPATCH || vt == VT_UNKNOWN; }

// Whether anything but the VARIANT's own number or text is touched.
constexpr bool reachesOut(VARTYPE vt) {
    return (vt & (VT_BYREF | VT_ARRAY)) || isObject(vt) || vt == VT_RECORD;
}

template <class Call>
HRESULT guardedFor(VARTYPE vt, VARIANT& to, Call&& call) {
    if (!reachesOut(vt)) return call();
    HRESULT hr = E_FAIL;
    if (!guarded([&] { hr = call(); })) return hr;
    to.vt = VT_EMPTY; // half written, perhaps
    return E_FAIL;
}

void release(IUnknown* object) noexcept {
    if (object) guarded([object] { object->Release(); });
}

// Arrays that are to end, one after the other.
using Ending = std::vector<SAFEARRAY*>;

void endElement(IUnknown*& element, Ending&) { release(std::exchange(element, nullptr)); }

// Texts are left to the system.
void endElement(VARIANT& element, Ending& pending) {
    if (isObject(element.vt)) {
        element.vt = VT_EMPTY;
        release(element.punkVal);
    } else if ((element.vt & VT_ARRAY) && !(element.vt & VT_BYREF) && element.parray) {
        try {
            pending.push_back(element.parray);
            element.vt = VT_EMPTY;
        } catch (const std::bad_alloc&) { // then the system ends it, deep as it may be
        }
    }
}

template <class Element>
void endElements(SAFEARRAY& array, Ending& pending) {
    std::size_t count = array.cbElements == sizeof(Element) && array.pvData ? 1 : 0;
    for (USHORT i = 0; i < array.cDims; ++i)
        count *= array.rgsabound[i].cElements;
    auto* const elements = static_cast<Element*>(array.pvData);
    for (std::size_t i = 0; i < count; ++i)
        endElement(elements[i], pending);
}

void endArray(SAFEARRAY& array, Ending& pending) {
    if (array.cLocks == 0) { // others stay as they are
        if (array.fFeatures & FADF_VARIANT)
            endElements<VARIANT>(array, pending);
        else if (array.fFeatures & (FADF_DISPATCH | FADF_UNKNOWN))
            endElements<IUnknown*>(array, pending);
    }
    SafeArrayDestroy(&array);
}

} // namespace

HRESULT copyVariant(VARIANT& to, const VARIANT& from) {
    return guardedFor(from.vt, to, [&] { return VariantCopy(&to, &from); });
}

HRESULT copyReferred(VARIANT& to, const VARIANT& from) {
    return guardedFor(from.vt, to, [&] { return VariantCopyInd(&to, &from); });
}

HRESULT changeVariant(VARIANT& to, const VARIANT& from, VARTYPE vt) {
    return guardedFor(from.vt, to, [&] { return VariantChangeType(&to, &from, 0, vt); });
}

void clearVariant(VARIANT& value) noexcept {
    if (isObject(value.vt)) {
        value.vt = VT_EMPTY; // before the object runs code that may look at it
        release(value.punkVal);
    } else if ((value.vt & VT_ARRAY) && !(value.vt & VT_BYREF)) {
        value.vt = VT_EMPTY;
        destroyArray(value.parray);
    } else if (value.vt == VT_RECORD) {
        VARIANT taken = std::exchange(value, VARIANT{});
        guarded([&] { VariantClear(&taken); });
    } else {
        VariantClear(&value);
    }
}

void destroyArray(SAFEARRAY* array) noexcept {
    Ending pending; // empty, and without memory, for most
    while (array) {
        guarded([&] { endArray(*array, pending); });
        array = nullptr;
        if (pending.empty()) break;
        array = pending.back();
        pending.pop_back();
    }
}

} // namespace platform
