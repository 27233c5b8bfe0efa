// Text arguments: char rows and string arrays.
#include "host/text.h"

#include "host/array_store.h"
#include "platform/text.h"

#include <cstdlib>
#include <cstring>
#include <new>

using harray::unique_array;
using harray::detail::ElementKind;
using harray::detail::reading;
using harray::detail::StringElement;

namespace {

// A char row, or the char array of 0 by 0.
bool isCharRow(const hxArray& array) {
    return array.classId == hxCHAR_CLASS && array.rank == 2 &&
           (array.extents[0] == 1 || (array.extents[0] == 0 && array.extents[1] == 0));
}

std::u16string_view charView(const hxArray& array) {
    return {array.elements<char16_t>(), array.count};
}

} // namespace

bool hoststring::isString(const hxArray* array) {
    return array && array->kind == ElementKind::String;
}

bool hoststring::isScalarText(const hxArray* array, bool allowMissing, bool allowEmpty) {
    if (!array) return false;
    if (isString(array)) {
        if (array->count != 1) return false;
        const StringElement& text = *array->elements<StringElement>();
        return text ? allowEmpty || !text->empty() : allowMissing;
    }
    return isCharRow(*array) && (allowEmpty || array->count != 0);
}

bool hoststring::isNonMissingScalarText(const hxArray* array, int) {
    return isScalarText(array, false, true);
}

std::vector<std::optional<std::u16string_view>> hoststring::getString(const hxArray* array) {
    std::vector<std::optional<std::u16string_view>> texts;
    if (!isString(array)) return texts;
    texts.reserve(array->count);
    for (std::size_t i = 0; i < array->count; ++i) {
        const StringElement& text = array->elements<StringElement>()[i];
        texts.push_back(text ? std::optional<std::u16string_view>(*text) : std::nullopt);
    }
    return texts;
}

bool hoststring::getScalarText(const hxArray* array, std::u16string& text, bool refuseMissing) {
    if (!isScalarText(array, !refuseMissing, true)) return false;
    if (isString(array))
        text = array->elements<StringElement>()->value_or(std::u16string());
    else
        text = charView(*array);
    return true;
}

unique_array hoststring::createStringArray(std::u16string text) {
    std::vector<std::optional<std::u16string>> elements;
    elements.emplace_back(std::move(text));
    return createStringArray(1, 1, std::move(elements));
}

unique_array hoststring::createStringArray(std::size_t rows, std::size_t columns,
                                           std::vector<std::optional<std::u16string>> elements) {
    const std::size_t extents[] = {rows, columns};
    unique_array array = harray::detail::makeArray(hxOPAQUE_CLASS, ElementKind::String, 2, extents);
    for (std::size_t i = 0; i < array->count && i < elements.size(); ++i)
        array->elements<StringElement>()[i] = std::move(elements[i]);
    return array;
}

char16_t** hxCharMatrixToStrings_UTF16(const hxArray* array) {
    const hxArray& a = reading(array);
    if (a.classId != hxCHAR_CLASS)
        harray::detail::failWrongClass("hxCharMatrixToStrings_UTF16", array);
    const std::size_t rows = a.extents[0];
    const std::size_t columns = rows ? a.count / rows : 0;
    const auto allocate = [](std::size_t bytes) {
        void* block = std::calloc(1, bytes);
        if (!block) throw std::bad_alloc();
        return block;
    };
    // One more than there are rows: an empty matrix has a block too, and the list ends with null.
    auto** texts = static_cast<char16_t**>(allocate((rows + 1) * sizeof(char16_t*)));
    try {
        for (std::size_t row = 0; row < rows; ++row) {
            texts[row] = static_cast<char16_t*>(allocate((columns + 1) * sizeof(char16_t)));
            for (std::size_t column = 0; column < columns; ++column)
                texts[row][column] = a.elements<char16_t>()[row + column * rows];
        }
    } catch (...) {
        for (std::size_t row = 0; row < rows; ++row)
            hxFreeEx(texts[row]);
        hxFreeEx(texts);
        throw;
    }
    return texts;
}

void hxFreeEx(void* block) { std::free(block); }

bool hxIsValidVelName(const char16_t* name) {
    const auto isLetter = [](char16_t c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
    };
    if (!name || !isLetter(*name)) return false;
    std::size_t length = 1;
    for (; name[length]; ++length)
        if (!isLetter(name[length]) && !(name[length] >= u'0' && name[length] <= u'9') &&
            name[length] != u'_')
            return false;
    return length <= 63;
}
