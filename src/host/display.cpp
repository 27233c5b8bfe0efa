// Any array as a person reads it.
#include "host/display.h"

#include "host/embedding.h"
#include "host/text.h"

#include <algorithm>
#include <cstring>

namespace velmar {
namespace {

using harray::detail::ElementKind;

// Arrays of more elements than this are shown in part.
constexpr std::size_t most = 10'000;
constexpr std::size_t shownRows = 20;
constexpr std::size_t shownColumns = 10;

// The upper left corner of the first page, and how much it is of.
std::string partText(const hxArray& array) {
    const std::size_t rows = std::min(array.extents[0], shownRows);
    const std::size_t columns = std::min(array.extents[1], shownColumns);
    const bool isCell = array.classId == hxCELL_CLASS;
    const std::size_t extents[] = {rows, columns};
    harray::unique_array part =
        isCell ? harray::unique_array(hxCreateCellArray(2, extents))
               : harray::unique_array(hxCreateUninitNumericArray(
                     2, extents, array.classId, array.complex ? hxCOMPLEX : hxREAL));
    const std::size_t bytes = isCell ? 0 : harray::detail::elementBytes(array);
    for (std::size_t column = 0; column < columns; ++column)
        for (std::size_t row = 0; row < rows; ++row) {
            const std::size_t from = row + column * array.extents[0];
            const std::size_t to = row + column * rows;
            if (isCell)
                hxSetCell(part.get(), to, hxCreateSharedDataCopy(hxGetCell(&array, from)));
            else
                std::memcpy(part->elements<std::byte>() + to * bytes,
                            array.elements<std::byte>() + from * bytes, bytes);
        }
    return displayText(part.get()) + "   ... the first " + extentsText(*part) + " of " +
           extentsText(array) + " " + hxGetClassName(&array) + "\n";
}

// The rows of every page, one below the other.
std::string charText(const hxArray& array) {
    const std::size_t rows = array.extents[0];
    const std::size_t columns = array.extents[1];
    const auto* units = array.elements<char16_t>();
    std::string text;
    for (std::size_t page = 0; page < array.count; page += rows * columns)
        for (std::size_t row = 0; row < rows; ++row) {
            std::u16string line;
            for (std::size_t column = 0; column < columns; ++column)
                line += units[page + row + column * rows];
            text += visibleText(line) + "\n";
        }
    return text;
}

std::string stringText(const hxArray& array) {
    std::vector<std::string> cells;
    for (const auto& text : hoststring::getString(&array)) {
        const std::string narrow = text ? visibleText(*text) : "<missing>";
        cells.push_back(text && array.count > 1 ? '"' + narrow + '"' : narrow);
    }
    return array.count == 1 ? cells.front() + "\n" : gridText(array, cells, false);
}

std::string sparseText(const hxArray& array) {
    const auto& index = *array.sparse;
    const std::size_t entries = std::min(index.starts.back(), array.stored);
    if (entries == 0) return "   all zero sparse: " + extentsText(array) + "\n";
    // The entries alone, as a full array, are written alike.
    harray::unique_array values(hxCreateSharedDataCopy(&array));
    values->sparse.reset();
    const std::size_t extents[] = {entries, 1};
    harray::detail::setShape(*values, 2, extents);
    const std::vector<std::string> texts = numberTexts(*values);
    std::string text;
    for (std::size_t column = 0; column + 1 < index.starts.size(); ++column)
        for (std::size_t i = index.starts[column]; i < std::min(index.starts[column + 1], entries);
             ++i)
            text += "   (" + std::to_string(index.rows[i] + 1) + "," + std::to_string(column + 1) +
                    ")   " + texts[i] + "\n";
    return text;
}

std::string emptyText(const hxArray& array) {
    const bool isPlain = array.rank == 2 && array.extents[0] == 0 && array.extents[1] == 0;
    if (array.classId == hxCHAR_CLASS && isPlain) return "\n";
    if (isPlain && array.classId == hxDOUBLE_CLASS) return "   []\n";
    if (isPlain && array.classId == hxCELL_CLASS) return "   {}\n";
    return "   " + extentsText(array) + " empty " + hxGetClassName(&array) + "\n";
}

} // namespace

std::string displayText(const hxArray* given) {
    const hxArray& array = harray::detail::reading(given);
    if (array.kind == ElementKind::Object || array.kind == ElementKind::Function)
        return containerText(array);
    if (array.count == 0 && array.classId != hxSTRUCT_CLASS) return emptyText(array);
    const bool isGrid = array.classId == hxCELL_CLASS ||
                        (array.kind == ElementKind::Plain && array.classId != hxCHAR_CLASS);
    if (isGrid && !array.sparse && array.count > most) return partText(array);
    if (array.kind == ElementKind::Array) return containerText(array);
    if (array.kind == ElementKind::String) return stringText(array);
    if (array.classId == hxCHAR_CLASS) return charText(array);
    if (array.sparse) return sparseText(array);
    const std::vector<std::string> numbers = numberTexts(array);
    return array.count == 1 ? numbers.front() + "\n" : gridText(array, numbers, true);
}

} // namespace velmar
