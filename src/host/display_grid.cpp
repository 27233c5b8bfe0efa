// Elements of an array in rows, columns and pages.
#include "host/display.h"

#include <algorithm>

namespace velmar {
namespace {

constexpr std::size_t lineWidth = 80;
constexpr std::size_t gap = 3;

// Characters, not bytes: what follows the first byte of a UTF-8 sequence takes no room.
std::size_t widthOf(const std::string& text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }));
}

struct Page {
    const std::string* cells;
    std::size_t rows;
    std::size_t columns;
    bool alignRight;

    std::size_t columnWidth(std::size_t column) const {
        std::size_t width = 0;
        for (std::size_t row = 0; row < rows; ++row)
            width = std::max(width, widthOf(cells[row + column * rows]));
        return width;
    }

    // Columns from `first` up to `last`, in lines.
    void append(std::string& text, const std::vector<std::size_t>& widths, std::size_t first,
                std::size_t last) const {
        for (std::size_t row = 0; row < rows; ++row) {
            for (std::size_t column = first; column < last; ++column) {
                const std::string& cell = cells[row + column * rows];
                const std::string blanks(widths[column] - widthOf(cell), ' ');
                text.append(gap, ' ');
                text += alignRight ? blanks + cell : cell + blanks;
            }
            text.erase(text.find_last_not_of(' ') + 1);
            text += '\n';
        }
    }

    void append(std::string& text) const {
        std::vector<std::size_t> widths(columns);
        for (std::size_t column = 0; column < columns; ++column)
            widths[column] = columnWidth(column);
        for (std::size_t first = 0; first < columns;) {
            std::size_t last = first;
            for (std::size_t used = 0; last < columns; ++last) {
                used += gap + widths[last];
                if (used > lineWidth && last > first) break;
            }
            if (first > 0 || last < columns)
                text += (first > 0 ? "\n" : "") + std::string(" Columns ") +
                        std::to_string(first + 1) + " to " + std::to_string(last) + "\n";
            append(text, widths, first, last);
            first = last;
        }
    }
};

// "(:,:,2,1)" for a page counted from 0.
std::string pageName(const hxArray& array, std::size_t page) {
    std::string name = "(:,:";
    for (std::size_t i = 2; i < array.rank; ++i) {
        name += "," + std::to_string(page % array.dimensions()[i] + 1);
        page /= array.dimensions()[i];
    }
    return name + ")";
}

} // namespace

std::string extentsText(const hxArray& array) {
    std::string text;
    for (std::size_t i = 0; i < array.rank; ++i)
        text += (i ? "x" : "") + std::to_string(array.dimensions()[i]);
    return text;
}

std::string gridText(const hxArray& array, const std::vector<std::string>& cells, bool alignRight) {
    const std::size_t rows = array.extents[0];
    const std::size_t columns = array.extents[1];
    const std::size_t pageSize = rows * columns;
    std::string text;
    for (std::size_t at = 0; at < cells.size(); at += pageSize) {
        if (array.rank > 2) text += (at ? "\n" : "") + pageName(array, at / pageSize) + " =\n";
        Page{cells.data() + at, rows, columns, alignRight}.append(text);
    }
    return text;
}

} // namespace velmar
