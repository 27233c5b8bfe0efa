// Questions to a SAFEARRAY, its locks, and its single elements.
#include "platform/portable/safearray_elements.h"
#include "platform/portable/safearray_layout.h"

#include <atomic>
#include <cstring>

namespace {

constexpr ULONG maxLocks = 0xFFFF;

const SAFEARRAYBOUND* boundOf(const SAFEARRAY* array, UINT dim) {
    return dim == 0 || dim > array->cDims ? nullptr : &array->rgsabound[array->cDims - dim];
}

// Objects and text are put as they are, everything else through its address.
const void* addressOfPut(const SAFEARRAY& array, void*& element) {
    constexpr USHORT byValue = FADF_BSTR | FADF_UNKNOWN | FADF_DISPATCH;
    return array.fFeatures & byValue ? &element : element;
}

} // namespace

UINT SafeArrayGetDim(SAFEARRAY* array) { return array ? array->cDims : 0; }

UINT SafeArrayGetElemsize(SAFEARRAY* array) { return array ? array->cbElements : 0; }

HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dim, LONG* bound) {
    if (!array || !bound) return E_INVALIDARG;
    const SAFEARRAYBOUND* found = boundOf(array, dim);
    if (!found) return DISP_E_BADINDEX;
    *bound = found->lLbound;
    return S_OK;
}

HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dim, LONG* bound) {
    if (!array || !bound) return E_INVALIDARG;
    const SAFEARRAYBOUND* found = boundOf(array, dim);
    if (!found) return DISP_E_BADINDEX;
    *bound = static_cast<LONG>(static_cast<ULONG>(found->lLbound) + found->cElements - 1);
    return S_OK;
}

HRESULT SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* vt) {
    if (!array || !vt) return E_INVALIDARG;
    if (array->fFeatures & FADF_HAVEVARTYPE)
        *vt = static_cast<VARTYPE>(headerOf(array).kind.vt);
    else if (array->fFeatures & FADF_RECORD)
        *vt = VT_RECORD;
    else if (array->fFeatures & FADF_DISPATCH)
        *vt = VT_DISPATCH;
    else if (array->fFeatures & (FADF_UNKNOWN | FADF_HAVEIID))
        *vt = VT_UNKNOWN;
    else
        return E_INVALIDARG;
    return S_OK;
}

HRESULT SafeArrayGetIID(SAFEARRAY* array, GUID* iid) {
    if (!array || !iid || !(array->fFeatures & FADF_HAVEIID)) return E_INVALIDARG;
    *iid = headerOf(array).iid;
    return S_OK;
}

HRESULT SafeArrayLock(SAFEARRAY* array) {
    if (!array) return E_INVALIDARG;
    std::atomic_ref<ULONG> locks(array->cLocks);
    ULONG held = locks.load();
    do {
        if (held >= maxLocks) return E_UNEXPECTED;
    } while (!locks.compare_exchange_weak(held, held + 1));
    return S_OK;
}

HRESULT SafeArrayUnlock(SAFEARRAY* array) {
    if (!array) return E_INVALIDARG;
    std::atomic_ref<ULONG> locks(array->cLocks);
    ULONG held = locks.load();
    do {
        if (held == 0) return E_UNEXPECTED;
    } while (!locks.compare_exchange_weak(held, held - 1));
    return S_OK;
}

HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data) {
    if (!array || !data) return E_INVALIDARG;
    const HRESULT result = SafeArrayLock(array);
    *data = SUCCEEDED(result) ? array->pvData : nullptr;
    return result;
}

HRESULT SafeArrayUnaccessData(SAFEARRAY* array) { return SafeArrayUnlock(array); }

HRESULT SafeArrayPtrOfIndex(SAFEARRAY* array, LONG* indices, void** address) {
    if (!array || !indices || !address) return E_INVALIDARG;
    std::size_t element = 0;
    std::size_t stride = 1;
    for (UINT dim = 1; dim <= array->cDims; ++dim) {
        const SAFEARRAYBOUND& bound = *boundOf(array, dim);
        const LONGLONG offset = LONGLONG{indices[dim - 1]} - bound.lLbound;
        if (offset < 0 || offset >= LONGLONG{bound.cElements}) return DISP_E_BADINDEX;
        element += static_cast<std::size_t>(offset) * stride;
        stride *= bound.cElements;
    }
    *address = static_cast<char*>(array->pvData) + element * array->cbElements;
    return S_OK;
}

HRESULT SafeArrayGetElement(SAFEARRAY* array, LONG* indices, void* element) {
    void* stored = nullptr;
    if (!element) return E_INVALIDARG;
    const HRESULT result = SafeArrayPtrOfIndex(array, indices, &stored);
    return FAILED(result) ? result : copyElements(*array, element, stored, 1);
}

HRESULT SafeArrayPutElement(SAFEARRAY* array, LONG* indices, void* element) {
    void* stored = nullptr;
    HRESULT result = SafeArrayPtrOfIndex(array, indices, &stored);
    if (FAILED(result)) return result;
    const void* source = addressOfPut(*array, element);
    if (!source) return E_INVALIDARG;
    if (array->cbElements <= sizeof(VARIANT)) {
        // The new element is made before the old one goes: it may be part of it.
        alignas(VARIANT) char made[sizeof(VARIANT)];
        char old[sizeof(VARIANT)];
        result = copyElements(*array, made, source, 1);
        if (FAILED(result)) return result;
        std::memcpy(old, stored, array->cbElements);
        std::memcpy(stored, made, array->cbElements);
        std::memcpy(made, old, array->cbElements);
        releaseElements(*array, made, 1);
        return S_OK;
    }
    std::memmove(stored, source, array->cbElements); // plain elements of a caller's own size
    return S_OK;
}
