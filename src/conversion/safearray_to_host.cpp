// SAFEARRAYs as host arrays.
#include "conversion/com_text.h"
#include "conversion/host_classes.h"
#include "conversion/logical_copy.h"
#include "conversion/variant_to_host.h"
#include "host/message_ids.h"
#include "platform/element_size.h"
#include "platform/holders.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>
#include <vector>

namespace axlink2 {
namespace {

// The bounds of a dimension, counted from 1, as its number of elements; none when they make no
// sense: the upper bound, which isn't kept as such, is a LONG too.
std::optional<std::size_t> extentOf(const SAFEARRAY& array, UINT dimension) {
    const SAFEARRAYBOUND& bound = array.rgsabound[array.cDims - dimension];
    const auto upper =
        static_cast<LONG>(static_cast<ULONG>(bound.lLbound) + bound.cElements - ULONG{1});
    const std::int64_t extent = std::int64_t{upper} - bound.lLbound + 1;
    // A dimension without elements may wrap round; no dimension has more than this.
    if (extent < 0 || extent > std::numeric_limits<ULONG>::max()) return std::nullopt;
    return static_cast<std::size_t>(extent);
}

// The shape of a numeric array: a row for one dimension. False for any other number of them.
bool readShape(const SAFEARRAY& array, std::size_t (&shape)[2]) {
    if (array.cDims != 1 && array.cDims != 2) return false;
    const auto first = extentOf(array, 1);
    const auto second = array.cDims == 2 ? extentOf(array, 2) : first;
    if (!first || !second) return false;
    shape[0] = array.cDims == 2 ? *first : 1;
    shape[1] = *second;
    return true;
}

hxArray* copyElements(const void* data, const NumericClass& row, const std::size_t (&shape)[2]) {
    const std::size_t count = shape[0] * shape[1];
    harray::unique_array array(hxCreateUninitNumericArray(2, shape, row.id, hxREAL));
    if (count == 0) return array.release();
    void* const to = hxGetWritableData(array.get());
    if (row.id == hxLOGICAL_CLASS)
        copyLogicals(static_cast<const VARIANT_BOOL*>(data), static_cast<bool*>(to), count);
    else
        std::memcpy(to, data, count * row.elementSize);
    return array.release();
}

// The data of an array, which stays where it is until the end.
class LockedData {
  public:
    explicit LockedData(SAFEARRAY* array)
        : array_(SUCCEEDED(SafeArrayAccessData(array, &data_)) ? array : nullptr) {}
    LockedData(const LockedData&) = delete;
    LockedData& operator=(const LockedData&) = delete;
    ~LockedData() {
        if (array_) SafeArrayUnaccessData(array_);
    }

    explicit operator bool() const { return array_ != nullptr; }
    void* get() const { return data_; }

  private:
    void* data_ = nullptr;
    SAFEARRAY* array_;
};

bool convertNumeric(SAFEARRAY* array, const NumericClass& row, hxArray** out) {
    std::size_t shape[2];
    // The element's size is the array's own word; an array that lies about it isn't read.
    if (!array || !readShape(*array, shape) || array->cbElements != row.elementSize) return false;
    const LockedData data(array);
    if (!data || (!data.get() && shape[0] * shape[1] > 0)) return false;
    *out = copyElements(data.get(), row, shape);
    return true;
}

// How the elements of an array become VARIANTs. An array that says two things of them isn't read;
// one that says nothing holds what is declared.
VARTYPE elementKind(SAFEARRAY* array, VARTYPE declared) {
    switch (array->fFeatures & (FADF_DISPATCH | FADF_UNKNOWN | FADF_BSTR | FADF_VARIANT)) {
    case 0:
        break;
    case FADF_DISPATCH:
        return VT_DISPATCH;
    case FADF_UNKNOWN:
        return VT_UNKNOWN;
    case FADF_BSTR:
        return VT_BSTR;
    case FADF_VARIANT:
        return VT_VARIANT;
    default:
        return VT_EMPTY;
    }
    VARTYPE vt = VT_EMPTY;
    return SUCCEEDED(SafeArrayGetVartype(array, &vt)) ? vt : declared;
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

int failedArray(hxArray** out, const VariantConversionContext& context) {
    if (context.warn) hxWarningMsgId(VELMAR::COM::unsupported_safearray_type());
    return fallBackToNaN(out);
}

// Whether another array is reached through a reference: the same one, perhaps.
bool refersToArray(const VARIANT& v) {
    if (v.vt == (VT_BYREF | VT_VARIANT)) return v.pvarVal && (v.pvarVal->vt & VT_ARRAY);
    return (v.vt & VT_BYREF) && (v.vt & VT_ARRAY);
}

void variantElementToHost(VARIANT& element, hxArray** out,
                          const VariantConversionContext& context) {
    if (element.vt == VT_BSTR) { // most of what comes in many
        *out = charRow(element.bstrVal).release();
        return;
    }
    if (!isChangedByConversion(element)) {
        variantToHost(&element, out, context);
        return;
    }
    if (refersToArray(element)) {
        if (*context.referencesLeft == 0) {
            failedArray(out, context);
            return;
        }
        --*context.referencesLeft;
    }
    // What stands in the array isn't ours to change. A plain copy will do: references and values
    // that turn into text own nothing.
    auto copy = platform::ScopedVariant::adopt(element);
    variantToHost(copy.inOut(), out, context);
}

void elementToHost(void* element, VARTYPE kind, hxArray** out,
                   const VariantConversionContext& context) {
    if (kind == VT_VARIANT)
        return variantElementToHost(*static_cast<VARIANT*>(element), out, context);
    VARIANT view = viewOfElement(element, kind);
    if (kind == VT_UNKNOWN)
        unknownToHost(view, out, context);
    else
        variantToHost(&view, out, context);
}

// Fills a cell of the array's shape: the elements lie in the same order here and there.
void fillCell(char* elements, std::size_t elementSize, VARTYPE kind, hxArray* cell,
              const VariantConversionContext& context) {
    const std::size_t count = hxGetNumberOfElements(cell);
    for (std::size_t i = 0; i < count; ++i) {
        hxArray* value = nullptr;
        elementToHost(elements + i * elementSize, kind, &value, context);
        hxSetCell(cell, i, value);
    }
}

// Whether the elements are of a kind that a cell takes, of its size, and there at all: the array's
// own words are not to be trusted.
bool isReadable(SAFEARRAY* array, VARTYPE kind) {
    return array->pvData && becomesCell(kind) && array->cbElements == platform::elementSize(kind);
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

} // namespace

int safeArrayToNumeric(SAFEARRAY* array, VARTYPE elementType, hxArray** out,
                       const VariantConversionContext& context) {
    const NumericClass* row = numericClassOf(elementType);
    if (!row && context.warn) hxWarningMsgId(VELMAR::COM::invalidargumenttype());
    if (row && convertNumeric(array, *row, out)) return 1;
    return failedArray(out, context);
}

void safeArrayToCell(SAFEARRAY* array, VARTYPE declared, hxArray** out,
                     const VariantConversionContext& context) {
    const UINT dimensions = array ? array->cDims : 0;
    std::vector<std::size_t> extents;
    for (UINT d = 1; d <= dimensions; ++d)
        extents.push_back(extentOf(*array, d).value_or(0));
    // The host makes a column of a single extent.
    if (dimensions == 0) extents = {0, 0};
    const bool hasElements = array && std::count(extents.begin(), extents.end(), 0u) == 0;
    const VARTYPE kind = hasElements ? elementKind(array, declared) : VARTYPE{VT_EMPTY};
    std::optional<LockedData> data; // as a server that is asked about an element may change others
    if (hasElements && (!isReadable(array, kind) || !data.emplace(array))) {
        failedArray(out, context);
        return;
    }
    auto cell = newCell(extents, context);
    if (!cell) {
        fallBackToNaN(out);
        return;
    }
    if (data)
        fillCell(static_cast<char*>(data->get()), array->cbElements, kind, cell.get(), context);
    *out = cell.release();
}

} // namespace axlink2
