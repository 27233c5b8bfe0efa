// Host arrays and VARIANTs made in one expression, and what they hold as one line of text.
#pragma once

#include "host/array.h"
#include "platform/holders.h"

#include <algorithm>
#include <string>
#include <vector>

namespace axlink2::test {

using Array = harray::unique_array;
using platform::ScopedSafeArray;
using platform::ScopedVariant;

// Any real array of that class and shape; elements that aren't given are zero.
template <class T>
Array numeric(hxClassID id, const std::vector<std::size_t>& extents,
              const std::vector<T>& elements) {
    Array array(hxCreateNumericArray(extents.size(), extents.data(), id, hxREAL));
    std::ranges::copy(elements, static_cast<T*>(hxGetWritableData(array.get())));
    return array;
}

inline Array doubles(const std::vector<std::size_t>& extents, const std::vector<double>& elements) {
    return numeric(hxDOUBLE_CLASS, extents, elements);
}
inline Array scalar(double value) { return Array(hxCreateDoubleScalar(value)); }
inline Array text(const std::string& value) { return Array(hxCreateString(value.c_str())); }
Array logicals(const std::vector<std::size_t>& extents, const std::vector<BYTE>& bytes);
Array chars(std::size_t rows, std::size_t columns, std::u16string_view units);
Array complexScalar();
Array sparse();

// A cell that takes the elements over.
template <class... Elements>
Array cell(const std::vector<std::size_t>& extents, Elements... elements) {
    Array array(hxCreateCellArray(extents.size(), extents.data()));
    std::size_t i = 0;
    (hxSetCell(array.get(), i++, elements.release()), ...);
    return array;
}

// The same as a row.
template <class... Elements>
Array cell(Array first, Elements... others) {
    return cell({1, 1 + sizeof...(others)}, std::move(first), std::move(others)...);
}

// A cell in a cell and so on, `depth` of them.
Array nested(int depth);

// A new array; elements are copied from `data`, unless it is null.
struct Bound {
    ULONG count;
    LONG lower = 0;
};
ScopedSafeArray safeArray(VARTYPE vt, const std::vector<Bound>& bounds, const void* data = nullptr);
// A VARIANT that takes it over.
ScopedVariant variantOf(VARTYPE vt, ScopedSafeArray array);
ScopedVariant reference(VARTYPE vt, void* to);

// VARIANTs of other kinds; a payload stands in the low bytes.
ScopedVariant variant(VARTYPE vt, LONGLONG payload = 0);
ScopedVariant real(double value, VARTYPE vt = VT_R8);
ScopedVariant single(float value);
ScopedVariant bstr(platform::OleView text);
ScopedVariant decimal(ULONG value);

// "R8 1.5", "BSTR 'a'", "BSTR null", "ERROR 80020004", "R8[2,3] 1 2 3 4 5 6", "&VARIANT (EMPTY)";
// lower bounds that aren't 0 show as "I4[1..3]".
std::string described(const VARIANT& v);
// "double 1.5", "int8 2x3 [1 2 3 4 5 6]", "'text'", "char 2x1 'ab'", "cell 1x2 {double 1, 'a'}";
// the class's name for what has no elements to show.
std::string described(const hxArray* array);
std::string described(const Array& array);

// The identifiers of the warnings since it was made, in order and joined by blanks.
class Warnings {
  public:
    Warnings();
    Warnings(const Warnings&) = delete;
    Warnings& operator=(const Warnings&) = delete;
    ~Warnings();

    // Forgets them.
    std::string take();
    const std::u16string& lastText() const { return lastText_; }

  private:
    std::string seen_;
    std::u16string lastText_;
};

} // namespace axlink2::test
