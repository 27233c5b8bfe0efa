// Functions that make and measure arrays.
#include "host/object_array.h"
#include "host/text.h"
#include "shell/elements.h"
#include "shell/functions.h"
#include "shell/numbers.h"

#include <algorithm>
#include <limits>

namespace velsh {

namespace {

// (), (n), (rows, columns...) or ([rows columns ...]).
Extents extentsFrom(const Call& call) {
    if (call.count() == 0) return {1, 1};
    Extents extents;
    for (std::size_t i = 0; i < call.count(); ++i) {
        if (call.count() > 1 || countOf(call[i]) == 1) {
            extents.push_back(sizeOf(call[i], "A size"));
            continue;
        }
        if (!isNumberLike(call[i]) || countOf(call[i]) == 0)
            raiseWrongType("A size must be a whole number", call[i]);
        for (std::size_t k = 0; k < countOf(call[i]); ++k)
            extents.push_back(sizeOf(elementOf(call[i], k).get(), "A size"));
    }
    if (extents.size() == 1) extents.push_back(extents[0]);
    return extents;
}

Values filled(const Call& call, hxClassID type, double value) {
    Value array = numericArray(type, extentsFrom(call));
    if (value != 0)
        withElementType(type, [&](auto* element) {
            using Element = std::remove_pointer_t<decltype(element)>;
            auto* data = static_cast<Element*>(hxGetWritableData(array.writable()));
            std::fill_n(data, countOf(array.get()), velmar::convertNumber<Element>(value));
        });
    return {array};
}

Values makeCellOf(const Call& call) {
    const Extents extents = extentsFrom(call);
    countOf(extents);
    if (call.count() == 0) return {cellArray(0, 0)};
    return {Value(hxCreateCellArray(extents.size(), extents.data()))};
}

Values sizeFunction(const Call& call) {
    const Extents extents = extentsOf(call[0]);
    auto extent = [&](std::size_t i) {
        return static_cast<double>(i < extents.size() ? extents[i] : 1);
    };
    if (call.count() == 2) {
        const std::size_t dimension = sizeOf(call[1], "The dimension");
        if (dimension == 0) raise("badsubscript", "The dimension counts from 1.");
        return {number(extent(dimension - 1))};
    }
    if (call.outputCount > 1) {
        Values values;
        const auto wanted = static_cast<std::size_t>(call.outputCount);
        for (std::size_t i = 0; i + 1 < wanted; ++i)
            values.push_back(number(extent(i)));
        double rest = 1;
        for (std::size_t i = wanted - 1; i < std::max(extents.size(), wanted); ++i)
            rest *= extent(i);
        values.push_back(number(rest));
        return values;
    }
    return {doubleRow({extents.begin(), extents.end()})};
}

Values lengthFunction(const Call& call) {
    const Extents extents = extentsOf(call[0]);
    const bool isEmpty = countOf(call[0]) == 0;
    return {number(
        isEmpty ? 0.0 : static_cast<double>(*std::max_element(extents.begin(), extents.end())))};
}

bool equalCells(const hxArray* a, const hxArray* b) {
    for (std::size_t i = 0; i < countOf(a); ++i)
        if (!isEqual(contentOf(a, i).get(), contentOf(b, i).get())) return false;
    return true;
}

bool equalStructs(const hxArray* a, const hxArray* b) {
    const auto names = get_struct_field_names(a);
    if (names.size() != get_struct_field_names(b).size()) return false;
    for (const std::string& name : names) {
        if (hxGetFieldNumber(b, name.c_str()) < 0) return false;
        for (std::size_t i = 0; i < countOf(a); ++i) {
            const hxArray *x = hxGetField(a, i, name.c_str()), *y = hxGetField(b, i, name.c_str());
            if (!isEqual(x ? x : Value().get(), y ? y : Value().get())) return false;
        }
    }
    return true;
}

bool equalObjects(const hxArray* a, const hxArray* b) {
    for (std::size_t i = 0; i < countOf(a); ++i)
        if (static_cast<hos::HOSInterface*>(hoGetArrayElement(a, i)) !=
            static_cast<hos::HOSInterface*>(hoGetArrayElement(b, i)))
            return false;
    return true;
}

Values isEqualFunction(const Call& call) {
    bool equal = true;
    for (std::size_t i = 1; i < call.count(); ++i)
        equal = equal && isEqual(call[0], call[i]);
    return {logical(equal)};
}

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

constexpr FunctionRow rows[] = {
    {"zeros", 0, anyNumber, [](const Call& c) { return filled(c, hxDOUBLE_CLASS, 0); }},
    {"ones", 0, anyNumber, [](const Call& c) { return filled(c, hxDOUBLE_CLASS, 1); }},
    {"true", 0, anyNumber, [](const Call& c) { return filled(c, hxLOGICAL_CLASS, 1); }},
    {"false", 0, anyNumber, [](const Call& c) { return filled(c, hxLOGICAL_CLASS, 0); }},
    {"NaN", 0, anyNumber, [](const Call& c) { return filled(c, hxDOUBLE_CLASS, notANumber); }},
    {"Inf", 0, anyNumber, [](const Call& c) { return filled(c, hxDOUBLE_CLASS, infinity); }},
    {"pi", 0, 0, [](const Call& c) { return filled(c, hxDOUBLE_CLASS, 3.14159265358979323846); }},
    {"cell", 0, anyNumber, makeCellOf},
    {"size", 1, 2, sizeFunction},
    {"numel", 1, 1,
     [](const Call& c) { return Values{number(static_cast<double>(countOf(c[0])))}; }},
    {"length", 1, 1, lengthFunction},
    {"isempty", 1, 1, [](const Call& c) { return Values{logical(countOf(c[0]) == 0)}; }},
    {"isequal", 2, anyNumber, isEqualFunction},
};

} // namespace

bool isEqual(const hxArray* a, const hxArray* b) {
    if (isText(a) && isText(b)) return textOf(a, "A text") == textOf(b, "A text");
    if (extentsOf(a) != extentsOf(b)) return false;
    if (isNumberLike(a) && isNumberLike(b)) return numbersOf(a) == numbersOf(b);
    if (isObject(a) || isObject(b)) return isObject(a) && isObject(b) && equalObjects(a, b);
    if (hoststring::isString(a) && hoststring::isString(b))
        return hoststring::getString(a) == hoststring::getString(b);
    if (hxGetClassID(a) != hxGetClassID(b)) return false;
    if (hxGetClassID(a) == hxCELL_CLASS) return equalCells(a, b);
    if (hxGetClassID(a) == hxSTRUCT_CLASS) return equalStructs(a, b);
    if (isFunction(a)) return false;
    raiseWrongType("Only real, full arrays can be compared", a);
}

std::span<const FunctionRow> arrayFunctions() { return rows; }

} // namespace velsh
