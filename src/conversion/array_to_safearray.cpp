// Host arrays as SAFEARRAYs.
#include "conversion/host_classes.h"
#include "conversion/host_to_variant.h"
#include "host/axlink.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "host/text.h"

#include <cstring>
#include <limits>
#include <vector>

namespace axlink2 {
namespace {

using platform::ScopedSafeArray;

ScopedSafeArray newArray(const hxArray* value, VARTYPE vt) {
    std::size_t dimensions = hxGetNumberOfDimensions(value);
    if (dimensions == 2 && hxGetN(value) == 1 && axlink::SafeArraySingleDim()) dimensions = 1;
    const std::size_t* extents = hxGetDimensions(value);
    std::vector<SAFEARRAYBOUND> bounds(dimensions);
    for (std::size_t i = 0; i < dimensions; ++i) {
        if (extents[i] > std::numeric_limits<ULONG>::max()) return {}; // more than COM can count
        bounds[i].cElements = static_cast<ULONG>(extents[i]);
    }
    return ScopedSafeArray::adopt(
        SafeArrayCreate(vt, static_cast<UINT>(dimensions), bounds.data()));
}

// The elements of an array, accessible until the end.
class Elements {
  public:
    explicit Elements(SAFEARRAY* array) : array_(array) {
        if (!array_ || FAILED(SafeArrayAccessData(array_, &data_))) array_ = nullptr;
    }
    Elements(const Elements&) = delete;
    Elements& operator=(const Elements&) = delete;
    ~Elements() {
        if (array_) SafeArrayUnaccessData(array_);
    }

    explicit operator bool() const { return array_ != nullptr; }
    template <class T>
    T* as() const {
        return static_cast<T*>(data_);
    }

  private:
    SAFEARRAY* array_;
    void* data_ = nullptr;
};

void copyLogicals(const unsigned char* from, VARIANT_BOOL* to, std::size_t count) {
    // Exactly 1 is true; written so that the compiler can do many at once.
    for (std::size_t i = 0; i < count; ++i)
        to[i] = static_cast<VARIANT_BOOL>(-(from[i] == 1));
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

bool isCharMatrix(const hxArray* element) {
    return hxGetClassID(element) == hxCHAR_CLASS && hxGetM(element) != 1 && hxGetN(element) != 1 &&
           !hxIsEmpty(element);
}

void checkElement(const hxArray* element, VARTYPE vt) {
    if (hxGetNumberOfDimensions(element) > 2)
        hmsgcore::raise(VELMAR::COM::cell_invalid_dimensions());
    const bool isText =
        hxGetClassID(element) == hxCHAR_CLASS || hoststring::isScalarText(element, false, true);
    if (isCharMatrix(element) || (vt == VT_BSTR && !isText))
        hmsgcore::raise(VELMAR::COM::cell_invalid_contents());
}

// Null for an element without characters.
BSTR elementText(const hxArray* element) {
    std::u16string text;
    const auto wide =
        hoststring::isString(element) && hoststring::getScalarText(element, text, true)
            ? platform::toOle(std::u16string_view(text))
            : charToWideText(element).value_or(platform::OleString());
    const BSTR bstr = SysAllocString(wide.c_str());
    if (!bstr) _com_issue_error(E_OUTOFMEMORY);
    return bstr;
}

// Cells in cells, counted on the one thread that converts.
class Nesting {
  public:
    Nesting() {
        if (++depth_ > deepest) {
            --depth_;
            hmsgcore::raise(VELMAR::COM::cell_invalid_contents());
        }
    }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;
    ~Nesting() { --depth_; }

  private:
    static constexpr int deepest = 1000; // beyond that the stack is in danger
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
    ScopedSafeArray array = newArray(value, row->vartype);
    {
        const Elements elements(array.get());
        if (!elements) return nullptr;
        copyElements(value, *row, elements.as<void>());
    }
    return array.detach();
}

SAFEARRAY* cellToSafeArray(const hxArray* value, VARTYPE vt, ReferenceHolders& holders) {
    const Nesting nesting;
    if (hxGetNumberOfDimensions(value) > 2) hmsgcore::raise(VELMAR::COM::cell_invalid_dimensions());
    // A two-dimensional array's elements lie in the same order here and there.
    const std::size_t count = hxGetNumberOfElements(value);
    for (std::size_t i = 0; i < count; ++i)
        if (const hxArray* element = hxGetCell(value, i)) checkElement(element, vt);

    ScopedSafeArray array = newArray(value, vt);
    {
        const Elements elements(array.get());
        for (std::size_t i = 0; elements && i < count; ++i) {
            const hxArray* element = hxGetCell(value, i);
            if (!element) continue;
            if (vt == VT_BSTR)
                elements.as<BSTR>()[i] = elementText(element);
            else
                hostToVariant(elements.as<VARIANT>() + i, element, false, 0, 0, 0, false, holders);
        }
    }
    return array.detach();
}

} // namespace axlink2
