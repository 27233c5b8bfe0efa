// Values of one class made from another, and numbers as text.
#include "shell/convert.h"

#include "host/text.h"
#include "shell/numbers.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace velsh {

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

double parseNumber(const std::string& text) {
    const char* begin = text.c_str();
    char* end = nullptr;
    double value = std::strtod(begin, &end);
    end += std::strspn(end, " ");
    return end == begin || *end ? notANumber : value;
}

Value stringsToDouble(const hxArray* array) {
    Value result = numericArray(hxDOUBLE_CLASS, extentsOf(array));
    auto* numbers = static_cast<double*>(hxGetWritableData(result.writable()));
    for (const auto& text : hoststring::getString(array))
        *numbers++ = text ? parseNumber(hsys::i18n::to_string(*text)) : notANumber;
    return result;
}

std::vector<std::u16string> textsOfCell(const hxArray* cell) {
    std::vector<std::u16string> texts;
    for (std::size_t i = 0; i < countOf(cell); ++i) {
        const hxArray* element = hxGetCell(cell, i);
        if (!element || !isText(element))
            raise("wrongtype", "Every element of the cell must be text.");
        texts.push_back(textOf(element, "The element"));
    }
    return texts;
}

} // namespace

Value toNumbers(const hxArray* array, hxClassID type) {
    if (type == hxDOUBLE_CLASS && hoststring::isString(array)) return stringsToDouble(array);
    if (!isNumberLike(array))
        raiseWrongType("Only real, full arrays of numbers can be converted to numbers", array);
    if (hxGetClassID(array) == type) return copyOf(array);
    Value result = numericArray(type, extentsOf(array));
    withElementType(type, [&](auto* element) {
        using Element = std::remove_pointer_t<decltype(element)>;
        auto* data = static_cast<Element*>(hxGetWritableData(result.writable()));
        forEachNumber(array, [&](std::size_t i, WideNumber value) {
            if (std::is_same_v<Element, bool> && std::isnan(value))
                raise("wrongtype", "NaN is neither true nor false.");
            data[i] = velmar::convertNumber<Element>(value);
        });
    });
    return result;
}

Value charArray(std::u16string_view characters, const Extents& extents) {
    countOf(extents);
    Value result(characters.empty() ? hxCreateString("")
                                    : hxCreateCharMatrix({std::u16string(characters)}));
    hxSetDimensions(result.writable(), extents.size(), extents.data());
    return result;
}

Value toChar(const hxArray* array) {
    if (hxGetClassID(array) == hxCHAR_CLASS) return copyOf(array);
    if (hxGetClassID(array) == hxCELL_CLASS) return Value(hxCreateCharMatrix(textsOfCell(array)));
    if (isText(array)) return charText(textOf(array, "The value"));
    if (!isNumberLike(array)) raiseWrongType("Characters are made from numbers and text", array);
    std::u16string characters(countOf(array), u' ');
    forEachNumber(array, [&](std::size_t i, WideNumber value) {
        characters[i] = velmar::convertNumber<char16_t>(value);
    });
    return charArray(characters, extentsOf(array));
}

Value toString(const hxArray* array) {
    if (hoststring::isString(array)) return copyOf(array);
    if (isText(array)) return stringText(textOf(array, "The value"));
    std::vector<std::optional<std::u16string>> elements;
    if (hxGetClassID(array) == hxCELL_CLASS) {
        for (std::u16string& text : textsOfCell(array))
            elements.emplace_back(std::move(text));
    } else if (isNumberLike(array) && hxGetClassID(array) != hxCHAR_CLASS) {
        for (std::size_t i = 0; i < countOf(array); ++i)
            elements.emplace_back(hsys::i18n::to_ustring(elementText(array, i)));
    } else
        raiseWrongType("Strings are made from numbers and text", array);
    return Value(hoststring::createStringArray(hxGetM(array), hxGetN(array), std::move(elements)));
}

std::string numberText(double value, int precision) {
    if (std::isnan(value)) return "NaN";
    if (std::isinf(value)) return value < 0 ? "-Inf" : "Inf";
    char text[64];
    std::snprintf(text, sizeof text, "%.*g", std::clamp(precision, 1, 40), value);
    return text;
}

std::string numberText(double value) {
    const double size = std::fabs(value);
    if (value == std::floor(value) && size < 1e15) {
        char text[32];
        std::snprintf(text, sizeof text, "%.0f", value == 0 ? 0.0 : value);
        return text;
    }
    const int digits = size > 1 && std::isfinite(size) ? static_cast<int>(std::log10(size)) : 0;
    return numberText(value, std::clamp(digits + 5, 5, 16));
}

std::string elementText(const hxArray* array, std::size_t index) {
    return withElementType(hxGetClassID(array), [&](auto* type) -> std::string {
        using Element = std::remove_pointer_t<decltype(type)>;
        const Element value = static_cast<const Element*>(hxGetData(array))[index];
        if constexpr (std::is_same_v<Element, bool>)
            return value ? "true" : "false";
        else if constexpr (std::is_integral_v<Element>)
            return std::to_string(+value);
        else
            return numberText(static_cast<double>(value));
    });
}

} // namespace velsh
