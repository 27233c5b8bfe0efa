// Making and reading values.
#include "shell/value.h"

#include "host/embedding.h"
#include "host/object_array.h"
#include "host/text.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace velsh {

namespace {

// 1 GiB of doubles: what a script asks for beyond this is a mistake, not a need.
constexpr std::size_t maxElements = std::size_t{1} << 27;

} // namespace

harray::unique_array Value::shared(const hxArray* array) {
    return harray::from_velmar(hxCreateSharedDataCopy(array));
}

const hxArray* Value::emptyArray() {
    static const Extents none{0, 0};
    static const hxArray* const array =
        hxCreateNumericArray(none.size(), none.data(), hxDOUBLE_CLASS, hxREAL);
    return array;
}

hxArray* Value::writable() {
    if (!array_) array_ = shared(emptyArray());
    return array_.get();
}

harray::unique_array Value::take() {
    writable();
    return std::move(array_);
}

Value copyOf(const hxArray* array) { return Value(hxCreateSharedDataCopy(array)); }
Value number(double value) { return Value(hxCreateDoubleScalar(value)); }
Value logical(bool value) { return Value(hxCreateLogicalScalar(value)); }
Value charText(std::u16string_view text) { return Value(harray::create(text)); }
Value charText(std::string_view text) { return charText(hsys::i18n::to_ustring(text)); }
Value stringText(std::u16string text) {
    return Value(hoststring::createStringArray(std::move(text)));
}

Value numericArray(hxClassID type, const Extents& extents) {
    countOf(extents);
    if (type == hxLOGICAL_CLASS) return Value(hxCreateLogicalArray(extents.size(), extents.data()));
    return Value(hxCreateNumericArray(extents.size(), extents.data(), type, hxREAL));
}

Value cellArray(std::size_t rows, std::size_t columns) {
    countOf({rows, columns});
    return Value(hxCreateCellMatrix(rows, columns));
}

Value doubleRow(const std::vector<double>& numbers) {
    Value row = numericArray(hxDOUBLE_CLASS, {1, numbers.size()});
    if (!numbers.empty())
        std::memcpy(hxGetWritableData(row.writable()), numbers.data(),
                    numbers.size() * sizeof(double));
    return row;
}

std::size_t countOf(const hxArray* array) { return hxGetNumberOfElements(array); }

Extents extentsOf(const hxArray* array) {
    const std::size_t* extents = hxGetDimensions(array);
    return Extents(extents, extents + hxGetNumberOfDimensions(array));
}

std::size_t countOf(const Extents& extents) {
    if (std::find(extents.begin(), extents.end(), 0u) != extents.end()) return 0;
    std::size_t count = 1;
    for (std::size_t extent : extents) {
        if (extent > maxElements / count) raise("toolarge", "The array would be too large.");
        count *= extent;
    }
    return count;
}

bool isInteger(hxClassID type) { return type >= hxINT8_CLASS && type <= hxUINT64_CLASS; }

const double* doublesOf(const hxArray* array) {
    const bool isPlain =
        hxGetClassID(array) == hxDOUBLE_CLASS && !hxIsComplex(array) && !hxIsSparse(array);
    return isPlain ? static_cast<const double*>(hxGetData(array)) : nullptr;
}

bool isNumeric(const hxArray* array) {
    hxClassID type = hxGetClassID(array);
    return type >= hxDOUBLE_CLASS && type <= hxUINT64_CLASS;
}

bool isNumberLike(const hxArray* array) {
    hxClassID type = hxGetClassID(array);
    return (isNumeric(array) || type == hxLOGICAL_CLASS || type == hxCHAR_CLASS) &&
           !hxIsSparse(array) && !hxIsComplex(array);
}

bool isText(const hxArray* array) { return hoststring::isScalarText(array, false, true); }
bool isObject(const hxArray* array) { return hoIsHOS(array); }
bool isFunction(const hxArray* array) { return hxGetClassID(array) == hxFUNCTION_CLASS; }

std::string sizeText(const hxArray* array) {
    std::string text;
    for (std::size_t extent : extentsOf(array))
        text += (text.empty() ? "" : "x") + std::to_string(extent);
    return text;
}

void raise(const std::string& key, const std::string& text) {
    velmar::raiseError("VELMAR:" + key, text);
}

void raiseWrongType(const std::string& what, const hxArray* given) {
    raise("wrongtype", what + ", not a " + sizeText(given) + " " + hxGetClassName(given) + ".");
}

std::u16string textOf(const hxArray* array, const std::string& what) {
    std::u16string text;
    if (!hoststring::getScalarText(array, text, true))
        raiseWrongType(what + " must be text", array);
    return text;
}

std::string narrowTextOf(const hxArray* array, const std::string& what) {
    return hsys::i18n::to_string(textOf(array, what));
}

double scalarOf(const hxArray* array, const std::string& what) {
    if (!isNumberLike(array) || countOf(array) != 1)
        raiseWrongType(what + " must be a real number", array);
    return hxGetScalar(array);
}

std::size_t sizeOf(const hxArray* array, const std::string& what) {
    double size = scalarOf(array, what);
    if (!(size == std::floor(size))) raise("wrongtype", what + " must be a whole number.");
    // Beyond 2^53 no array can be; countOf refuses the rest.
    return static_cast<std::size_t>(std::clamp(size, 0.0, 9007199254740992.0));
}

} // namespace velsh
