// What [ ] and { } make of their elements.
#include "shell/concatenate.h"

#include "host/object_array.h"
#include "host/text.h"
#include "shell/convert.h"
#include "shell/elements.h"

#include <algorithm>
#include <set>

namespace velsh {

namespace {

bool isSkipped(const hxArray* array) { return countOf(array) == 0 && hxGetM(array) <= 1; }

bool isNothing(const hxArray* array) {
    return hxGetClassID(array) == hxDOUBLE_CLASS && isSkipped(array);
}

// Kinds of classes in the order in which one wins over another.
enum class Kind { Logical, Double, Single, Integer, Char, String, Struct, Object, Cell };

Kind kindOf(const hxArray* array) {
    const hxClassID type = hxGetClassID(array);
    if (isObject(array)) return Kind::Object;
    if (hoststring::isString(array)) return Kind::String;
    if (isInteger(type)) return Kind::Integer;
    switch (type) {
    case hxLOGICAL_CLASS:
        return Kind::Logical;
    case hxDOUBLE_CLASS:
        return Kind::Double;
    case hxSINGLE_CLASS:
        return Kind::Single;
    case hxCHAR_CLASS:
        return Kind::Char;
    case hxSTRUCT_CLASS:
        return Kind::Struct;
    case hxCELL_CLASS:
        return Kind::Cell;
    default:
        raise("wrongtype",
              std::string("Values of class ") + hxGetClassName(array) + " can't be joined.");
    }
}

Value inCell(const Value& value) {
    Value cell = cellArray(1, 1);
    hxSetCell(cell.writable(), 0, Value(value).take().release());
    return cell;
}

// Brings a value to the kind that won; `model` is the first value of that kind.
Value convertTo(Kind kind, const Value& value, const hxArray* model) {
    const Kind own = kindOf(value.get());
    if (own == kind && kind != Kind::Integer && kind != Kind::Object && kind != Kind::Struct)
        return value;
    switch (kind) {
    case Kind::Cell:
        return inCell(value);
    case Kind::String:
        if (own < kind) return toString(value.get());
        break;
    case Kind::Char:
        return toChar(value.get());
    case Kind::Object:
        if (own != kind || !(hoGetClassID(value.get()) == hoGetClassID(model))) break;
        return value;
    case Kind::Struct: {
        if (own != kind) break;
        auto names = get_struct_field_names(value.get());
        auto expected = get_struct_field_names(model);
        if (std::multiset<std::string>(names.begin(), names.end()) !=
            std::multiset<std::string>(expected.begin(), expected.end()))
            raise("dimagree", "Structs that are joined must have the same fields.");
        return value;
    }
    default:
        return toNumbers(value.get(), hxGetClassID(model));
    }
    raise("wrongtype", std::string("Values of the classes ") + hxGetClassName(model) + " and " +
                           hxGetClassName(value.get()) + " can't be joined.");
}

void requireMatrix(const hxArray* array) {
    if (hxGetNumberOfDimensions(array) > 2)
        raise("dimagree", "Only arrays of two dimensions can be joined.");
}

// One row of values side by side, as blocks of equal height.
struct Row {
    std::vector<const hxArray*> blocks;
    std::size_t height = 0;
    std::size_t width = 0;
};

Row measureRow(const Values& values) {
    Row row;
    for (const Value& value : values) {
        requireMatrix(value.get());
        const std::size_t height = hxGetM(value.get());
        if (!row.blocks.empty() && height != row.height)
            raise("dimagree", "Arrays side by side must have the same number of rows: " +
                                  std::to_string(row.height) + " and " + std::to_string(height) +
                                  ".");
        row.blocks.push_back(value.get());
        row.height = height;
        row.width += hxGetN(value.get());
    }
    return row;
}

Value joinRows(const std::vector<Row>& rows, const hxArray* model) {
    const std::size_t width = rows.front().width;
    std::size_t height = 0;
    for (const Row& row : rows) {
        if (row.width != width)
            raise("dimagree",
                  "Rows must have the same number of columns: " + std::to_string(width) + " and " +
                      std::to_string(row.width) + ".");
        height += row.height;
    }
    std::vector<ElementRef> elements(countOf({height, width}));
    std::size_t top = 0;
    for (const Row& row : rows) {
        std::size_t left = 0;
        for (const hxArray* block : row.blocks) {
            for (std::size_t i = 0; i < countOf(block); ++i)
                elements[(left + i / row.height) * height + top + i % row.height] = {block, i};
            left += hxGetN(block);
        }
        top += row.height;
    }
    return assemble(model, elements, {height, width});
}

} // namespace

Value concatenate(const std::vector<Values>& rows) {
    const hxArray* model = nullptr;
    std::size_t used = 0;
    for (const Values& row : rows)
        for (const Value& value : row) {
            if (isNothing(value.get())) continue;
            ++used;
            if (!model || kindOf(model) < kindOf(value.get())) model = value.get();
        }
    if (!model) return Value();
    const Kind kind = kindOf(model);
    std::vector<Values> converted;
    for (const Values& row : rows) {
        Values values;
        for (const Value& value : row) {
            // An empty array says at most what the result is and adds nothing to it.
            const bool isWanted = kind == Kind::String && kindOf(value.get()) == Kind::Char;
            if (isSkipped(value.get()) && (!isWanted || isNothing(value.get()))) continue;
            values.push_back(convertTo(kind, value, model));
        }
        if (!values.empty()) converted.push_back(std::move(values));
    }
    if (converted.empty()) return copyOf(model);
    if (used == 1 && converted.size() == 1) return converted[0][0];
    std::vector<Row> measured;
    measured.reserve(converted.size());
    for (const Values& row : converted)
        measured.push_back(measureRow(row));
    return joinRows(measured, model);
}

Value makeCell(std::vector<Values> rows) {
    rows.erase(std::remove_if(rows.begin(), rows.end(), [](auto& row) { return row.empty(); }),
               rows.end());
    const std::size_t width = rows.empty() ? 0 : rows.front().size();
    Value cell = cellArray(rows.size(), width);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].size() != width)
            raise("dimagree", "The rows of a cell must have the same number of elements.");
        for (std::size_t j = 0; j < width; ++j)
            hxSetCell(cell.writable(), j * rows.size() + i, rows[i][j].take().release());
    }
    return cell;
}

} // namespace velsh
