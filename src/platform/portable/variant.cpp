// Clearing and copying VARIANTs.
#include "platform/portable/variant.h"

#include "platform/portable/bstr.h"
#include "platform/portable/safearray.h"
#include "platform/portable/variant_storage.h"

#include <cstring>

namespace {

// Turns the shared text, object or array of a bitwise copy into an own one.
HRESULT takeOwnCopy(VARIANT& copy, VariantStorage storage) {
    switch (storage) {
    case VariantStorage::text:
        copy.bstrVal = SysAllocStringByteLen(reinterpret_cast<const char*>(copy.bstrVal),
                                             SysStringByteLen(copy.bstrVal));
        return copy.bstrVal ? S_OK : E_OUTOFMEMORY;
    case VariantStorage::object:
        if (copy.punkVal) copy.punkVal->AddRef();
        return S_OK;
    case VariantStorage::array:
        return SafeArrayCopy(copy.parray, &copy.parray);
    default:
        return S_OK;
    }
}

// The elementary kinds that a reference may lead to, with their size.
constexpr std::size_t referredSize[VT_VOID] = {0, 0, 2, 4, 4, 8, 8, 8, 8, 8, 4, 2,
                                               0, 8, 0, 0, 1, 1, 2, 4, 8, 8, 4, 4};

} // namespace

void VariantInit(VARIANTARG* variant) { *variant = VARIANT{}; }

HRESULT VariantClear(VARIANTARG* variant) {
    if (!variant) return E_INVALIDARG;
    const VariantStorage storage = storageOf(variant->vt);
    switch (storage) {
    case VariantStorage::plain:
        break;
    case VariantStorage::text:
        SysFreeString(variant->bstrVal);
        break;
    case VariantStorage::object:
        if (variant->punkVal) {
            // The VARIANT is empty before the object runs code that may look at it.
            variant->vt = VT_EMPTY;
            variant->punkVal->Release();
        }
        break;
    case VariantStorage::array:
        if (const HRESULT result = SafeArrayDestroy(variant->parray); FAILED(result)) return result;
        break;
    case VariantStorage::invalid:
        return DISP_E_BADVARTYPE;
    }
    variant->vt = VT_EMPTY;
    return S_OK;
}

HRESULT VariantCopy(VARIANTARG* destination, const VARIANTARG* source) {
    if (!destination || !source) return E_INVALIDARG;
    const VariantStorage storage = storageOf(source->vt);
    if (storage == VariantStorage::invalid) return DISP_E_BADVARTYPE;
    if (destination == source) return S_OK;
    if (storage == VariantStorage::plain && storageOf(destination->vt) == VariantStorage::plain) {
        *destination = *source;
        return S_OK;
    }
    // The copy comes before the clearing, which may take the source with it.
    VARIANT copy = *source;
    HRESULT result = takeOwnCopy(copy, storage);
    if (FAILED(result)) return result;
    result = VariantClear(destination);
    if (FAILED(result)) {
        VariantClear(&copy);
        return result;
    }
    *destination = copy;
    return S_OK;
}

HRESULT viewThroughReference(const VARIANT& source, VARIANT& view) noexcept {
    if (!(source.vt & VT_BYREF)) {
        view = source;
        return S_OK;
    }
    if (storageOf(source.vt) == VariantStorage::invalid || !source.byref) return E_INVALIDARG;
    const auto vt = static_cast<VARTYPE>(source.vt & ~VT_BYREF);
    if (vt == VT_VARIANT) {
        const VARIANT& inner = *source.pvarVal;
        if (inner.vt == (VT_BYREF | VT_VARIANT)) return E_INVALIDARG;
        return viewThroughReference(inner, view);
    }
    VARIANT result{};
    if (vt == VT_DECIMAL)
        result.decVal = *source.pdecVal;
    else
        std::memcpy(&result.llVal, source.byref,
                    vt & VT_ARRAY ? sizeof(SAFEARRAY*) : referredSize[vt]);
    result.vt = vt;
    view = result;
    return S_OK;
}

HRESULT VariantCopyInd(VARIANT* destination, const VARIANTARG* source) {
    if (!destination || !source) return E_INVALIDARG;
    if (destination == source && !(source->vt & VT_BYREF))
        return storageOf(source->vt) == VariantStorage::invalid ? DISP_E_BADVARTYPE : S_OK;
    VARIANT view;
    const HRESULT result = viewThroughReference(*source, view);
    return FAILED(result) ? result : VariantCopy(destination, &view);
}
