// Host arrays as SAFEARRAYs.
#include "conversion/com_text.h"
#include "conversion/host_classes.h"
#include "conversion/host_to_variant.h"
#include "conversion/logical_copy.h"
#include "conversion/nesting.h"
#include "host/axlink.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "host/text.h"

#include <boost/container/small_vector.hpp>

#include <cstring>
#include <limits>

namespace axlink2 {
namespace {

using platform::ScopedSafeArray;

ScopedSafeArray newArray(const hxArray* value, VARTYPE vt) {
    std::size_t dimensions = hxGetNumberOfDimensions(value);
    if (dimensions == 2 && hxGetN(value) == 1 && axlink::SafeArraySingleDim()) dimensions = 1;
    const std::size_t* extents = hxGetDimensions(value);
    boost::container::small_vector<SAFEARRAYBOUND, 4> bounds(dimensions);
    for (std::size_t i = 0; i < dimensions; ++i) {
        if (extents[i] > std::numeric_limits<ULONG>::max()) return {}; // more than COM can count
        bounds[i].cElements = static_cast<ULONG>(extents[i]);
    }
    return ScopedSafeArray::adopt(
        SafeArrayCreate(vt, static_cast<UINT>(dimensions), bounds.data()));
}

// The elements of a new array, which nobody else can lock or move.
template <class T>
T* elementsOf(const ScopedSafeArray& array) {
    return array ? static_cast<T*>(array->pvData) : nullptr;
}

void copyElements(const hxArray* value, const NumericClass& row, void* to) {
    const std::size_t count = hxGetNumberOfElements(value);
    if (count == 0) return;
    const void* from = hxGetData(value);
    if (row.id == hxLOGICAL_CLASS)
        copyLogicals(static_cast<const unsigned char*>(from), static_cast<VARIANT_BOOL*>(to),
                     count);
    else
        std::memcpy(to, from, count * row.elementSize);
}

[[noreturn]] void refuseSparse() {
    const hbase::core::except::Exception<VELMAR::COM::sparse_array_notsupported> error{
        VELMAR::COM::sparse_array_notsupported()};
    harray::detail::do_legacy_hx_error(error);
    throw error;
}

bool isMatrix(const hxArray* element) {
    return hxGetM(element) != 1 && hxGetN(element) != 1 && !hxIsEmpty(element);
}

void checkElement(const hxArray* element, VARTYPE vt) {
    if (hxGetNumberOfDimensions(element) > 2)
        hmsgcore::raise(VELMAR::COM::cell_invalid_dimensions());
    const bool isRefused = hxGetClassID(element) == hxCHAR_CLASS
                               ? isMatrix(element)
                               : vt == VT_BSTR && !hoststring::isScalarText(element, false, true);
    if (isRefused) hmsgcore::raise(VELMAR::COM::cell_invalid_contents());
}

BSTR elementText(const hxArray* element) {
    std::u16string text;
    if (hoststring::isString(element) && hoststring::getScalarText(element, text, true))
        return newBstr(text);
    const BSTR bstr = charToBstr(element);
    return bstr ? bstr : newBstr({});
}

// Cells in cells, counted on the one thread that converts.
class Nesting {
  public:
    Nesting() {
        if (++depth_ > deepestNesting) {
            --depth_;
            hmsgcore::raise(VELMAR::COM::cell_invalid_contents());
        }
    }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;
    ~Nesting() { --depth_; }

  private:
    static inline int depth_ = 0;
};

} // namespace

SAFEARRAY* arrayToSafeArray(const hxArray* value) {
    const NumericClass* row = numericClassOf(hxGetClassID(value));
    if (!row) {
        hxWarningMsgId(VELMAR::COM::invalidargumenttype());
        return nullptr;
    }
    if (hxIsSparse(value)) refuseSparse();
    if (hxIsComplex(value)) hmsgcore::raise(VELMAR::COM::invalidargumenttype());
    return numericToSafeArray(value, *row);
}

SAFEARRAY* numericToSafeArray(const hxArray* value, const NumericClass& row) {
    ScopedSafeArray array = newArray(value, row.vartype);
    if (array) copyElements(value, row, elementsOf<void>(array));
    return array.detach();
}

SAFEARRAY* cellToSafeArray(const hxArray* value, VARTYPE vt) {
    const Nesting nesting;
    if (hxGetNumberOfDimensions(value) > 2) hmsgcore::raise(VELMAR::COM::cell_invalid_dimensions());
    // A two-dimensional array's elements lie in the same order here and there.
    const std::size_t count = hxGetNumberOfElements(value);
    for (std::size_t i = 0; i < count; ++i)
        if (const hxArray* element = hxGetCell(value, i)) checkElement(element, vt);

    ScopedSafeArray array = newArray(value, vt);
    for (std::size_t i = 0; array && i < count; ++i) {
        const hxArray* element = hxGetCell(value, i);
        if (!element) continue;
        if (vt == VT_BSTR)
            elementsOf<BSTR>(array)[i] = elementText(element);
        else
            hostToVariant(elementsOf<VARIANT>(array) + i, element, false, 0, 0, 0, false, nullptr);
    }
    return array.detach();
}

} // namespace axlink2
