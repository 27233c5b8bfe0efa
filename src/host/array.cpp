// Creating numeric, logical and char arrays, and reaching their data.
#include "host/array.h"

#include "host/array_numbers.h"
#include "host/array_store.h"
#include "host/host_messages.h"
#include "platform/text.h"

#include <algorithm>
#include <cstring>

using harray::unique_array;
using harray::detail::ElementKind;
using harray::detail::Filling;
using harray::detail::makeArray;
using harray::detail::reading;

namespace {

bool isPlainClass(hxClassID type) {
    return type == hxLOGICAL_CLASS || type == hxCHAR_CLASS ||
           (type >= hxDOUBLE_CLASS && type <= hxUINT64_CLASS);
}

unique_array makePlain(std::size_t dimensions, const std::size_t* extents, hxClassID type,
                       hxComplexity complexity, Filling filling) {
    if (!isPlainClass(type) ||
        (complexity == hxCOMPLEX && (type == hxLOGICAL_CLASS || type == hxCHAR_CLASS)))
        velmar::fail(velmar::keys::NoSuchClass, static_cast<std::int64_t>(type));
    return makeArray(type, ElementKind::Plain, dimensions, extents, complexity == hxCOMPLEX,
                     filling);
}

template <class T>
hxArray* scalarOf(hxClassID type, T value) {
    unique_array array = harray::detail::makeScalar(type, ElementKind::Plain);
    *array->elements<T>() = value;
    return array.release();
}

} // namespace

hxArray* hxCreateString(const char* text) {
    return harray::create(platform::utf16FromUtf8(text ? text : "")).release();
}

hxArray* hxCreateString_UTF16(const char16_t* text) {
    return harray::create(text ? text : u"").release();
}

unique_array harray::create(std::u16string_view text) {
    const std::size_t extents[] = {text.empty() ? std::size_t{0} : 1, text.size()};
    unique_array array =
        makeArray(hxCHAR_CLASS, ElementKind::Plain, 2, extents, false, Filling::None);
    if (!text.empty()) std::memcpy(array->store, text.data(), text.size() * sizeof(char16_t));
    return array;
}

hxArray* hxCreateDoubleScalar(double value) { return scalarOf(hxDOUBLE_CLASS, value); }

hxArray* hxCreateLogicalScalar(bool value) { return scalarOf(hxLOGICAL_CLASS, value); }

hxArray* hxCreateLogicalArray(std::size_t dimensions, const std::size_t* extents) {
    return hxCreateNumericArray(dimensions, extents, hxLOGICAL_CLASS, hxREAL);
}

hxArray* hxCreateNumericArray(std::size_t dimensions, const std::size_t* extents, hxClassID type,
                              hxComplexity complexity) {
    return makePlain(dimensions, extents, type, complexity, Filling::Zero).release();
}

hxArray* hxCreateUninitNumericArray(std::size_t dimensions, const std::size_t* extents,
                                    hxClassID type, hxComplexity complexity) {
    return makePlain(dimensions, extents, type, complexity, Filling::None).release();
}

hxArray* harray::detail::do_create_numeric(std::size_t dimensions, const std::size_t* extents,
                                           hxClassID type, hxComplexity complexity) {
    return hxCreateNumericArray(dimensions, extents, type, complexity);
}

hxArray* hxCreateCharMatrix(const std::vector<std::u16string>& rows) {
    std::size_t columns = 0;
    for (const std::u16string& row : rows)
        columns = std::max(columns, row.size());
    const std::size_t extents[] = {rows.size(), columns};
    unique_array array = makeArray(hxCHAR_CLASS, ElementKind::Plain, 2, extents);
    auto* units = array->elements<char16_t>();
    for (std::size_t column = 0; column < columns; ++column)
        for (std::size_t row = 0; row < rows.size(); ++row)
            *units++ = column < rows[row].size() ? rows[row][column] : u' ';
    return array.release();
}

const void* hxGetData(const hxArray* array) {
    const hxArray& a = reading(array);
    return a.kind == ElementKind::Plain ? a.store : nullptr;
}

void* hxGetWritableData(hxArray* array) {
    hxArray& a = harray::detail::writing(array, "hxGetWritableData");
    return a.kind == ElementKind::Plain ? a.store : nullptr;
}

bool* hxGetLogicals(hxArray* array) {
    return hxGetClassID(array) == hxLOGICAL_CLASS ? static_cast<bool*>(hxGetWritableData(array))
                                                  : nullptr;
}

double hxGetScalar(const hxArray* array) {
    const hxArray& a = reading(array);
    if (a.kind != ElementKind::Plain || a.count == 0 || a.stored == 0) return 0;
    // The entry of a sparse array's first element, when there is one, is its first entry.
    if (a.sparse && (a.sparse->starts[1] == 0 || a.sparse->rows[0] != 0)) return 0;
    return velmar::visitNumbers(a, [](const auto* first) { return static_cast<double>(*first); });
}
