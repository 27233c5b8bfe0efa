// Life of SAFEARRAYs: descriptors, data, copies, resizing.
#include "platform/element_size.h"
#include "platform/portable/bstr.h"
#include "platform/portable/safearray_elements.h"
#include "platform/portable/safearray_layout.h"

#include <cstdlib>
#include <cstring>

using platform::elementSize;

namespace {

constexpr UINT maxDims = 0xFFFF;

// A zeroed descriptor, with `extra` zeroed bytes behind its bounds. cDims is 16 bits wide.
SAFEARRAY* allocateDescriptor(UINT dims, std::size_t extra = 0) {
    const std::size_t bytes =
        sizeof(SafeArrayHeader) + sizeof(SAFEARRAY) + (dims - 1) * sizeof(SAFEARRAYBOUND) + extra;
    auto* header = static_cast<SafeArrayHeader*>(std::calloc(1, bytes));
    if (!header) return nullptr;
    auto* array = reinterpret_cast<SAFEARRAY*>(header + 1);
    array->cDims = static_cast<USHORT>(dims);
    return array;
}

void describeElements(SAFEARRAY* array, VARTYPE vt) {
    array->cbElements = elementSize(vt);
    if (vt == VT_DISPATCH || vt == VT_UNKNOWN) {
        array->fFeatures = FADF_HAVEIID;
        headerOf(array).iid = vt == VT_DISPATCH ? IID_IDispatch : IID_IUnknown;
    } else {
        array->fFeatures = FADF_HAVEVARTYPE;
        headerOf(array).kind.vt = vt;
    }
}

void* allocateZeroed(const SAFEARRAY& array) {
    const auto bytes = dataBytes(array);
    // One byte at least: no elements is not no data.
    return bytes ? std::calloc(1, *bytes ? *bytes : 1) : nullptr;
}

bool isLocked(const SAFEARRAY* array) { return array->cLocks != 0; }

bool ownsDataBlock(const SAFEARRAY& array) {
    return !(array.fFeatures & (FADF_CREATEVECTOR | FADF_STATIC | FADF_AUTO | FADF_EMBEDDED));
}

// Alike enough for the elements of one to replace those of the other.
bool sameShape(const SAFEARRAY& a, const SAFEARRAY& b) {
    constexpr USHORT owning = FADF_BSTR | FADF_UNKNOWN | FADF_DISPATCH | FADF_VARIANT;
    if (a.cDims != b.cDims || a.cbElements != b.cbElements ||
        ((a.fFeatures ^ b.fFeatures) & owning))
        return false;
    for (USHORT i = 0; i != a.cDims; ++i)
        if (a.rgsabound[i].cElements != b.rgsabound[i].cElements) return false;
    return true;
}

} // namespace

std::optional<std::size_t> elementCount(const SAFEARRAY& array) noexcept {
    std::size_t count = 1;
    for (USHORT i = 0; i != array.cDims; ++i)
        if (__builtin_mul_overflow(count, array.rgsabound[i].cElements, &count))
            return std::nullopt;
    return count;
}

std::optional<std::size_t> dataBytes(const SAFEARRAY& array) noexcept {
    const auto count = elementCount(array);
    std::size_t bytes = 0;
    if (!count || __builtin_mul_overflow(*count, array.cbElements, &bytes) || bytes > PTRDIFF_MAX)
        return std::nullopt;
    return bytes;
}

HRESULT SafeArrayAllocDescriptor(UINT dims, SAFEARRAY** array) {
    if (!array) return E_POINTER;
    *array = nullptr;
    if (dims == 0 || dims > maxDims) return E_INVALIDARG;
    *array = allocateDescriptor(dims);
    return *array ? S_OK : E_OUTOFMEMORY;
}

HRESULT SafeArrayAllocDescriptorEx(VARTYPE vt, UINT dims, SAFEARRAY** array) {
    const HRESULT result = SafeArrayAllocDescriptor(dims, array);
    if (SUCCEEDED(result)) describeElements(*array, vt);
    return result;
}

HRESULT SafeArrayAllocData(SAFEARRAY* array) {
    if (!array) return E_INVALIDARG;
    array->pvData = allocateZeroed(*array);
    return array->pvData ? S_OK : E_OUTOFMEMORY;
}

SAFEARRAY* SafeArrayCreateEx(VARTYPE vt, UINT dims, SAFEARRAYBOUND* bounds, PVOID extra) {
    SAFEARRAY* array = nullptr;
    if (!bounds || elementSize(vt) == 0 || FAILED(SafeArrayAllocDescriptorEx(vt, dims, &array)))
        return nullptr;
    array->fFeatures = static_cast<USHORT>(array->fFeatures | elementFeatures(vt));
    for (UINT i = 0; i != dims; ++i)
        array->rgsabound[i] = bounds[dims - 1 - i];
    if (extra && (array->fFeatures & FADF_HAVEIID))
        headerOf(array).iid = *static_cast<const GUID*>(extra);
    if (FAILED(SafeArrayAllocData(array))) {
        SafeArrayDestroyDescriptor(array);
        return nullptr;
    }
    return array;
}

SAFEARRAY* SafeArrayCreate(VARTYPE vt, UINT dims, SAFEARRAYBOUND* bounds) {
    return SafeArrayCreateEx(vt, dims, bounds, nullptr);
}

SAFEARRAY* SafeArrayCreateVectorEx(VARTYPE vt, LONG lowerBound, ULONG elements, PVOID extra) {
    const std::size_t bytes = std::size_t{elements} * elementSize(vt);
    SAFEARRAY* array = elementSize(vt) ? allocateDescriptor(1, bytes) : nullptr;
    if (!array) return nullptr;
    describeElements(array, vt);
    array->fFeatures =
        static_cast<USHORT>(array->fFeatures | elementFeatures(vt) | FADF_CREATEVECTOR);
    array->rgsabound[0] = {elements, lowerBound};
    array->pvData = array + 1;
    if (extra && (array->fFeatures & FADF_HAVEIID))
        headerOf(array).iid = *static_cast<const GUID*>(extra);
    return array;
}

SAFEARRAY* SafeArrayCreateVector(VARTYPE vt, LONG lowerBound, ULONG elements) {
    return SafeArrayCreateVectorEx(vt, lowerBound, elements, nullptr);
}

HRESULT SafeArrayDestroyData(SAFEARRAY* array) {
    if (!array) return E_INVALIDARG;
    if (isLocked(array)) return DISP_E_ARRAYISLOCKED;
    if (!array->pvData) return S_OK;
    releaseElements(*array, array->pvData, elementCount(*array).value_or(0));
    if (ownsDataBlock(*array)) {
        std::free(array->pvData);
        array->pvData = nullptr;
    }
    return S_OK;
}

HRESULT SafeArrayDestroyDescriptor(SAFEARRAY* array) {
    if (!array) return S_OK;
    if (isLocked(array)) return DISP_E_ARRAYISLOCKED;
    // Elements beside the descriptor go with it.
    if (array->fFeatures & FADF_CREATEVECTOR) SafeArrayDestroyData(array);
    if (!(array->fFeatures & (FADF_AUTO | FADF_STATIC | FADF_EMBEDDED)))
        std::free(&headerOf(array));
    return S_OK;
}

HRESULT SafeArrayDestroy(SAFEARRAY* array) {
    if (!array) return S_OK;
    const HRESULT result = SafeArrayDestroyData(array);
    return FAILED(result) ? result : SafeArrayDestroyDescriptor(array);
}

HRESULT SafeArrayRedim(SAFEARRAY* array, SAFEARRAYBOUND* bound) {
    if (!array || !bound) return E_INVALIDARG;
    if (isLocked(array) || (array->fFeatures & FADF_FIXEDSIZE)) return DISP_E_ARRAYISLOCKED;
    SAFEARRAY* resized = nullptr; // the shape to come, for the arithmetic
    if (FAILED(SafeArrayAllocDescriptor(array->cDims, &resized))) return E_OUTOFMEMORY;
    resized->cbElements = array->cbElements;
    std::memcpy(resized->rgsabound, array->rgsabound, array->cDims * sizeof(SAFEARRAYBOUND));
    resized->rgsabound[0] = *bound;
    const auto newCount = elementCount(*resized);
    const auto newBytes = dataBytes(*resized);
    std::free(&headerOf(resized));
    if (!newBytes) return E_OUTOFMEMORY;

    // The last dimension varies slowest: what stays is the front of the data.
    const std::size_t oldCount = elementCount(*array).value_or(0);
    auto* data = static_cast<char*>(array->pvData);
    if (*newCount < oldCount) {
        releaseElements(*array, data + *newBytes, oldCount - *newCount);
    } else if (*newCount > oldCount) {
        void* grown = std::calloc(1, *newBytes);
        if (!grown) return E_OUTOFMEMORY;
        if (data) std::memcpy(grown, data, oldCount * array->cbElements);
        if (ownsDataBlock(*array)) std::free(data);
        array->pvData = grown;
        array->fFeatures = static_cast<USHORT>(array->fFeatures & ~FADF_CREATEVECTOR);
    }
    array->rgsabound[0] = *bound;
    return S_OK;
}

HRESULT SafeArrayCopyData(SAFEARRAY* source, SAFEARRAY* target) {
    if (!source || !target || !sameShape(*source, *target) || !source->pvData || !target->pvData)
        return E_INVALIDARG;
    if (source == target) return S_OK;
    const std::size_t count = elementCount(*source).value_or(0);
    releaseElements(*target, target->pvData, count);
    return copyElements(*source, target->pvData, source->pvData, count);
}

HRESULT SafeArrayCopy(SAFEARRAY* source, SAFEARRAY** copy) {
    if (!copy) return E_INVALIDARG;
    if (!source) {
        *copy = nullptr;
        return S_OK;
    }
    SAFEARRAY* made = nullptr;
    HRESULT result = SafeArrayAllocDescriptor(source->cDims, &made);
    if (SUCCEEDED(result)) {
        constexpr USHORT storage =
            FADF_AUTO | FADF_STATIC | FADF_EMBEDDED | FADF_FIXEDSIZE | FADF_CREATEVECTOR;
        made->fFeatures = static_cast<USHORT>(source->fFeatures & ~storage);
        made->cbElements = source->cbElements;
        std::memcpy(made->rgsabound, source->rgsabound, source->cDims * sizeof(SAFEARRAYBOUND));
        if (source->fFeatures & (FADF_HAVEIID | FADF_HAVEVARTYPE))
            headerOf(made) = headerOf(source);
        if (source->pvData) {
            result = SafeArrayAllocData(made);
            if (SUCCEEDED(result)) result = SafeArrayCopyData(source, made);
        }
        if (FAILED(result)) {
            SafeArrayDestroy(made);
            made = nullptr;
        }
    }
    *copy = made;
    return result;
}

HRESULT VectorFromBstr(BSTR bstr, SAFEARRAY** vector) {
    if (!vector) return E_INVALIDARG;
    SAFEARRAYBOUND bound{SysStringByteLen(bstr), 0};
    *vector = SafeArrayCreate(VT_UI1, 1, &bound);
    if (!*vector) return E_OUTOFMEMORY;
    if (bound.cElements) std::memcpy((*vector)->pvData, bstr, bound.cElements);
    return S_OK;
}

HRESULT BstrFromVector(SAFEARRAY* vector, BSTR* bstr) {
    if (!bstr) return E_INVALIDARG;
    *bstr = nullptr;
    if (!vector || vector->cDims != 1 || vector->cbElements != 1) return E_INVALIDARG;
    *bstr = SysAllocStringByteLen(static_cast<const char*>(vector->pvData),
                                  vector->rgsabound[0].cElements);
    return *bstr ? S_OK : E_OUTOFMEMORY;
}
