// SAFEARRAYs as host arrays.
#include "conversion/host_classes.h"
#include "conversion/variant_to_host.h"
#include "host/message_ids.h"
#include "platform/holders.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>
#include <vector>

namespace axlink2 {
namespace {

// The bounds of a dimension, counted from 1, as its number of elements; none when they can't be
// had or make no sense.
std::optional<std::size_t> extentOf(SAFEARRAY* array, UINT dimension) {
    LONG lower = 0;
    LONG upper = 0;
    if (FAILED(SafeArrayGetLBound(array, dimension, &lower)) ||
        FAILED(SafeArrayGetUBound(array, dimension, &upper)))
        return std::nullopt;
    const std::int64_t extent = std::int64_t{upper} - lower + 1;
    // A dimension without elements may wrap round; no dimension has more than this.
    if (extent < 0 || extent > std::numeric_limits<ULONG>::max()) return std::nullopt;
    return static_cast<std::size_t>(extent);
}

// The shape of a numeric array: a row for one dimension. False for any other number of them.
bool readShape(SAFEARRAY* array, std::size_t (&shape)[2]) {
    const UINT dimensions = array ? SafeArrayGetDim(array) : 0;
    if (dimensions != 1 && dimensions != 2) return false;
    const auto first = extentOf(array, 1);
    const auto second = dimensions == 2 ? extentOf(array, 2) : first;
    if (!first || !second) return false;
    shape[0] = dimensions == 2 ? *first : 1;
    shape[1] = *second;
    return true;
}

void copyLogicals(const VARIANT_BOOL* from, bool* to, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        to[i] = from[i] == VARIANT_TRUE;
}

hxArray* copyElements(const void* data, const NumericClass& row, const std::size_t (&shape)[2]) {
    const std::size_t count = shape[0] * shape[1];
    if (row.id == hxLOGICAL_CLASS) {
        harray::unique_array array(hxCreateLogicalArray(2, shape));
        copyLogicals(static_cast<const VARIANT_BOOL*>(data), hxGetLogicals(array.get()), count);
        return array.release();
    }
    harray::unique_array array(hxCreateUninitNumericArray(2, shape, row.id, hxREAL));
    if (count > 0) std::memcpy(hxGetWritableData(array.get()), data, count * row.elementSize);
    return array.release();
}

bool convertNumeric(SAFEARRAY* array, const NumericClass& row, hxArray** out) {
    std::size_t shape[2];
    // The element's size is the array's own word; an array that lies about it isn't read.
    if (!readShape(array, shape) || SafeArrayGetElemsize(array) != row.elementSize) return false;
    void* data = nullptr;
    if (FAILED(SafeArrayAccessData(array, &data))) return false;
    struct Unaccess {
        SAFEARRAY* array;
        ~Unaccess() { SafeArrayUnaccessData(array); }
    } const unaccess{array};
    if (!data && shape[0] * shape[1] > 0) return false;
    *out = copyElements(data, row, shape);
    return true;
}

// How the elements of an array become VARIANTs.
VARTYPE elementKind(SAFEARRAY* array) {
    if (array->fFeatures & FADF_DISPATCH) return VT_DISPATCH;
    if (array->fFeatures & FADF_UNKNOWN) return VT_UNKNOWN;
    if (array->fFeatures & FADF_BSTR) return VT_BSTR;
    if (array->fFeatures & FADF_VARIANT) return VT_VARIANT;
    VARTYPE vt = VT_EMPTY;
    return SUCCEEDED(SafeArrayGetVartype(array, &vt)) ? vt : VARTYPE{VT_EMPTY};
}

// An element that is no VARIANT as one that refers to it: the array keeps what it holds.
VARIANT viewOfElement(void* element, VARTYPE kind) {
    VARIANT v{};
    v.vt = kind;
    if (kind == VT_BSTR)
        v.bstrVal = *static_cast<BSTR*>(element);
    else
        v.punkVal = *static_cast<IUnknown**>(element);
    return v;
}

void variantElementToHost(VARIANT& element, hxArray** out,
                          const VariantConversionContext& context) {
    if (!isChangedByConversion(element)) {
        variantToHost(&element, out, context);
        return;
    }
    // What stands in the array isn't ours to change. A plain copy will do: references and values
    // that turn into text own nothing.
    auto copy = platform::ScopedVariant::adopt(element);
    variantToHost(copy.inOut(), out, context);
}

void elementToHost(SAFEARRAY* array, LONG* indices, VARTYPE kind, hxArray** out,
                   const VariantConversionContext& context) {
    void* element = nullptr;
    if (FAILED(SafeArrayPtrOfIndex(array, indices, &element)) || !element) {
        fallBackToNaN(out);
    } else if (kind == VT_VARIANT) {
        variantElementToHost(*static_cast<VARIANT*>(element), out, context);
    } else {
        VARIANT view = viewOfElement(element, kind);
        if (kind == VT_UNKNOWN)
            unknownToHost(view, out, context);
        else
            variantToHost(&view, out, context);
    }
}

// The next index combination, the last dimension fastest; false behind the last one.
bool advance(std::vector<std::size_t>& subscripts, const std::vector<std::size_t>& extents) {
    for (std::size_t d = subscripts.size(); d-- > 0;) {
        if (++subscripts[d] < extents[d]) return true;
        subscripts[d] = 0;
    }
    return false;
}

// Fills a cell of that shape. `lower` are the lower bounds.
void fillCell(SAFEARRAY* array, VARTYPE kind, const std::vector<std::size_t>& extents,
              const std::vector<LONG>& lower, hxArray* cell,
              const VariantConversionContext& context) {
    std::vector<std::size_t> subscripts(extents.size(), 0);
    std::vector<LONG> indices(lower);
    do {
        for (std::size_t d = 0; d < subscripts.size(); ++d)
            indices[d] = lower[d] + static_cast<LONG>(subscripts[d]);
        hxArray* value = nullptr;
        elementToHost(array, indices.data(), kind, &value, context);
        hxSetCell(cell, hxCalcSingleSubscript(cell, subscripts.size(), subscripts.data()), value);
    } while (advance(subscripts, extents));
}

// Whether the elements are of a kind that a cell takes, of its size, and there at all: the array's
// own words are not to be trusted.
bool isReadable(SAFEARRAY* array, VARTYPE kind) {
    const bool isPointer = kind == VT_DISPATCH || kind == VT_UNKNOWN || kind == VT_BSTR;
    if (!array->pvData || !(isPointer || kind == VT_VARIANT)) return false;
    return SafeArrayGetElemsize(array) == (isPointer ? sizeof(void*) : sizeof(VARIANT));
}

harray::unique_array newCell(const std::vector<std::size_t>& extents,
                             const VariantConversionContext& context) {
    try {
        return harray::unique_array(hxCreateCellArray(extents.size(), extents.data()));
    } catch (const std::bad_alloc&) {
        if (context.warn) hxWarningMsgId(VELMAR::COM::hxCreateCellArray_Failed());
        return nullptr;
    }
}

int failedArray(hxArray** out, const VariantConversionContext& context) {
    if (context.warn) hxWarningMsgId(VELMAR::COM::unsupported_safearray_type());
    return fallBackToNaN(out);
}

} // namespace

int safeArrayToNumeric(SAFEARRAY* array, VARTYPE elementType, hxArray** out,
                       const VariantConversionContext& context) {
    const NumericClass* row = numericClassOf(elementType);
    if (!row && context.warn) hxWarningMsgId(VELMAR::COM::invalidargumenttype());
    if (row && convertNumeric(array, *row, out)) return 1;
    return failedArray(out, context);
}

void safeArrayToCell(SAFEARRAY* array, hxArray** out, const VariantConversionContext& context) {
    const UINT dimensions = array ? SafeArrayGetDim(array) : 0;
    std::vector<std::size_t> extents;
    std::vector<LONG> lower(dimensions, 0);
    for (UINT d = 1; d <= dimensions; ++d) {
        extents.push_back(extentOf(array, d).value_or(0));
        SafeArrayGetLBound(array, d, &lower[d - 1]);
    }
    // The host makes a column of a single extent.
    if (dimensions == 0) extents = {0, 0};
    const bool hasElements = std::count(extents.begin(), extents.end(), 0u) == 0;
    const VARTYPE kind = hasElements ? elementKind(array) : VARTYPE{VT_EMPTY};
    if (hasElements && !isReadable(array, kind)) {
        failedArray(out, context);
        return;
    }
    auto cell = newCell(extents, context);
    if (!cell) {
        fallBackToNaN(out);
        return;
    }
    if (hasElements) fillCell(array, kind, extents, lower, cell.get(), context);
    *out = cell.release();
}

} // namespace axlink2
