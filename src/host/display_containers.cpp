// Values inside others, and cells, structs, objects and function handles as text.
#include "host/display.h"
#include "host/embedding.h"
#include "host/live_object.h"
#include "host/object_array.h"
#include "host/text.h"

#include <boost/algorithm/string/replace.hpp>

#include <algorithm>

namespace velmar {
namespace {

using harray::detail::ElementKind;

constexpr std::size_t longestText = 60;
constexpr std::size_t longestVector = 8;

std::string quoted(std::u16string_view text, char quote) {
    const bool isLong = text.size() > longestText;
    std::u16string part(text.substr(0, longestText));
    if (isLong && part.back() >= 0xD800 && part.back() < 0xDC00) part.pop_back(); // half a pair
    std::ranges::replace_if(
        part, [](char16_t c) { return c == u'\n' || c == u'\t' || c == u'\r'; }, u' ');
    return quote + visibleText(part) + (isLong ? "..." : "") + quote;
}

std::string vectorText(const hxArray& array) {
    std::string text = "[";
    for (const std::string& number : numberTexts(array))
        text += (text.size() > 1 ? " " : "") + number;
    return text + "]";
}

std::string shapeAndClass(const hxArray& array) {
    return extentsText(array) + " " + hxGetClassName(&array);
}

// The line that an object's class gives for it; empty when it gives none.
std::string headerOf(const hxArray& array, LiveClass& owner) {
    hos::HOSMethodInfo* method = owner.anyMethod(hos::internal::makeInterned("getHeader"));
    if (!method) return {};
    const hxArray* input = &array;
    hxArray* output = nullptr;
    MethodPlan(*method).invoke(1, &output, Inputs(&input, 1));
    const harray::unique_array header(output);
    std::u16string text;
    hoststring::getScalarText(output, text, true);
    return hsys::i18n::to_string(text);
}

std::string objectText(const hxArray& array) {
    const hos::HOSInterfacePtr object = hoGetArrayElement(&array, 0);
    if (array.count != 1) return "  " + shapeAndClass(array) + " array\n";
    if (!object || object->isDeleted())
        return std::string("  handle to a deleted ") + hxGetClassName(&array) + " object\n";
    std::string text;
    if (LiveClass* owner = classOfArray(&array)) text = headerOf(array, *owner);
    if (text.empty()) text = std::string("  ") + hxGetClassName(&array) + " object";
    if (text.back() != '\n') text += '\n';
    return text;
}

std::string structText(const hxArray& array) {
    const auto& names = array.fields->all();
    std::string text;
    if (array.count != 1) {
        text = "  " + extentsText(array) + " struct with " +
               (names.empty() ? "no fields" : "fields:") + "\n";
        for (const std::string& name : names)
            text += "    " + name + "\n";
        return text;
    }
    if (names.empty()) return "  struct with no fields\n";
    std::size_t width = 0;
    for (const std::string& name : names)
        width = std::max(width, name.size());
    for (std::size_t i = 0; i < names.size(); ++i)
        text += std::string(4 + width - names[i].size(), ' ') + names[i] + ": " +
                fieldText(hxGetFieldByNumber(&array, 0, static_cast<int>(i))) + "\n";
    return text;
}

std::string cellText(const hxArray& array) {
    std::vector<std::string> cells;
    cells.reserve(array.count);
    for (std::size_t i = 0; i < array.count; ++i) {
        std::string summary = summaryText(hxGetCell(&array, i));
        // [3x4 double] and {1x2 cell} have brackets of their own; the braces replace them.
        const bool isShape = summary.find('x') != std::string::npos && summary.back() == ']' &&
                             summary.find(' ') != std::string::npos && summary[0] == '[';
        if (isShape) summary = summary.substr(1, summary.size() - 2);
        const bool isCell = summary.front() == '{';
        cells.push_back(isCell ? summary : "{" + summary + "}");
    }
    return gridText(array, cells, false);
}

} // namespace

std::string visibleText(std::u16string_view text) {
    constexpr char16_t signOfNull = 0x2400; // of the others in the order of their codes
    std::u16string visible(text);
    boost::replace_all(visible, u"\r\n", u"\n");
    for (char16_t& c : visible)
        if (c < u' ' && c != u'\n' && c != u'\t') c = static_cast<char16_t>(signOfNull + c);
    return hsys::i18n::to_string(visible);
}

std::string fieldText(const hxArray* given) {
    const hxArray& array = harray::detail::reading(given);
    const bool isList = array.classId == hxCELL_CLASS && array.rank == 2 &&
                        (array.extents[0] == 1 || array.extents[1] == 1) &&
                        array.count <= longestVector;
    if (array.classId == hxCELL_CLASS && array.count == 0 && array.rank == 2) return "{}";
    if (!isList) return summaryText(given);
    std::string text = "{";
    for (std::size_t i = 0; i < array.count; ++i) {
        const hxArray* element = hxGetCell(&array, i);
        if (harray::detail::reading(element).kind == ElementKind::Array) return summaryText(given);
        text += (i ? ", " : "") + summaryText(element);
    }
    return text.size() <= longestText ? text + "}" : summaryText(given);
}

std::string summaryText(const hxArray* given) {
    const hxArray& array = harray::detail::reading(given);
    switch (array.kind) {
    case ElementKind::Array:
        return array.classId == hxCELL_CLASS ? "{" + shapeAndClass(array) + "}"
                                             : "[" + shapeAndClass(array) + "]";
    case ElementKind::Function:
        return textOfHandle(&array);
    case ElementKind::String:
        if (array.count == 1) {
            const auto text = hoststring::getString(&array).front();
            return text ? quoted(*text, '"') : "<missing>";
        }
        break;
    case ElementKind::Plain:
        if (array.classId == hxCHAR_CLASS) {
            std::u16string text;
            if (hoststring::getScalarText(&array, text, true)) return quoted(text, '\'');
            break;
        }
        if (array.count == 0 && array.rank == 2 && array.extents[1] == 0 && array.extents[0] == 0)
            return array.classId == hxDOUBLE_CLASS ? "[]" : "[" + shapeAndClass(array) + "]";
        if (array.sparse)
            return "[" + extentsText(array) + " sparse " + hxGetClassName(&array) + "]";
        if (array.count == 1) return numberTexts(array).front();
        if (array.rank == 2 && array.extents[0] == 1 && array.count > 0 &&
            array.count <= longestVector)
            return vectorText(array);
        break;
    case ElementKind::Object:
        break;
    }
    return "[" + shapeAndClass(array) + "]";
}

std::string containerText(const hxArray& array) {
    switch (array.kind) {
    case ElementKind::Object:
        return objectText(array);
    case ElementKind::Function:
        return textOfHandle(&array) + "\n";
    default:
        return array.classId == hxSTRUCT_CLASS ? structText(array) : cellText(array);
    }
}

} // namespace velmar
