// Functions that make, compare and print text.
#include "shell/convert.h"
#include "shell/elements.h"
#include "shell/format.h"
#include "shell/functions.h"
#include "shell/interpreter.h"

#include <algorithm>

namespace velsh {

namespace {

std::string numberAsText(const hxArray* array, std::size_t index, const Call& call) {
    const Value element = elementOf(array, index);
    if (call.count() == 1 && hxGetClassID(array) == hxLOGICAL_CLASS)
        return hxGetScalar(element.get()) != 0 ? "1" : "0";
    if (call.count() == 1) return elementText(array, index);
    if (isText(call[1])) {
        const hxArray* const argument = element.get();
        return formatText(narrowTextOf(call[1], "The format"), {&argument, 1});
    }
    const auto precision = std::min<std::size_t>(sizeOf(call[1], "The precision"), 40);
    return numberText(hxGetScalar(element.get()), static_cast<int>(precision));
}

// Rows of text, numbers two blanks apart and right-aligned in their columns.
Values num2strFunction(const Call& call) {
    const hxArray* array = call[0];
    if (isText(array)) return {charText(textOf(array, "The value"))};
    if (!isNumberLike(array)) raiseWrongType("\"num2str\" takes numbers", array);
    const std::size_t rows = hxGetM(array), columns = hxGetN(array);
    std::vector<std::string> lines(rows);
    for (std::size_t j = 0; j < columns; ++j) {
        std::vector<std::string> texts;
        std::size_t width = 0;
        for (std::size_t i = 0; i < rows; ++i) {
            texts.push_back(numberAsText(array, j * rows + i, call));
            width = std::max(width, texts.back().size());
        }
        for (std::size_t i = 0; i < rows; ++i)
            lines[i] += (j ? "  " : "") + std::string(width - texts[i].size(), ' ') + texts[i];
    }
    if (rows == 1) return {charText(lines[0])};
    std::vector<std::u16string> characters;
    characters.reserve(lines.size());
    for (const std::string& line : lines)
        characters.emplace_back(line.begin(), line.end());
    return {Value(hxCreateCharMatrix(characters))};
}

bool sameText(const hxArray* a, const hxArray* b) {
    return isText(a) && isText(b) && textOf(a, "A text") == textOf(b, "A text");
}

Values strcmpFunction(const Call& call) {
    const bool leftIsCell = hxGetClassID(call[0]) == hxCELL_CLASS;
    const hxArray* cell = leftIsCell ? call[0] : call[1];
    const hxArray* other = leftIsCell ? call[1] : call[0];
    if (hxGetClassID(cell) != hxCELL_CLASS) return {logical(sameText(call[0], call[1]))};
    const bool bothCells = hxGetClassID(other) == hxCELL_CLASS;
    if (bothCells && extentsOf(cell) != extentsOf(other))
        raise("dimagree", "Cells that are compared must have the same size.");
    Value result = numericArray(hxLOGICAL_CLASS, extentsOf(cell));
    for (std::size_t i = 0; i < countOf(cell); ++i) {
        const Value right = bothCells ? contentOf(other, i) : copyOf(other);
        hxGetLogicals(result.writable())[i] = sameText(contentOf(cell, i).get(), right.get());
    }
    return {result};
}

std::string formatted(const Call& call) {
    return formatText(narrowTextOf(call[0], "The format"), call.inputs.subspan(1));
}

Values fprintfFunction(const Call& call) {
    print(formatted(call));
    return {};
}

constexpr FunctionRow rows[] = {
    {"num2str", 1, 2, num2strFunction},
    {"strcmp", 2, 2, strcmpFunction},
    {"sprintf", 1, anyNumber, [](const Call& call) { return Values{charText(formatted(call))}; }},
    {"fprintf", 1, anyNumber, fprintfFunction},
};

} // namespace

std::span<const FunctionRow> textFunctions() { return rows; }

} // namespace velsh
