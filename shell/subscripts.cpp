// Reading parts of arrays by subscripts, and resolving the subscripts.
#include "shell/subscripts.h"

#include "shell/convert.h"
#include "shell/elements.h"
#include "shell/numbers.h"
#include "shell/places.h"

#include <algorithm>

namespace velsh {

namespace {

[[noreturn]] void raiseOutside(std::size_t wanted, std::size_t limit, std::size_t dimension,
                               std::size_t dimensions) {
    const std::string where =
        dimensions == 1 ? "The index, " : "Subscript " + std::to_string(dimension + 1) + ", ";
    raise("badsubscript",
          where + std::to_string(wanted) + ", lies beyond the end, " + std::to_string(limit) + ".");
}

std::vector<std::size_t> positionsOfMask(const hxArray* mask) {
    std::vector<std::size_t> positions;
    forEachNumber(mask, [&](std::size_t i, WideNumber isSet) {
        if (isSet != 0) positions.push_back(i);
    });
    return positions;
}

// 0-based positions that a subscript names along an extent.
std::vector<std::size_t> positionsOf(const Subscript& subscript, std::size_t extent) {
    std::vector<std::size_t> positions;
    if (subscript.all) {
        positions.resize(extent);
        for (std::size_t i = 0; i < extent; ++i)
            positions[i] = i;
        return positions;
    }
    const hxArray* array = subscript.value.get();
    if (!isNumberLike(array) || hxGetClassID(array) == hxCHAR_CLASS)
        raiseWrongType("A subscript must be a number, a logical array or ':'", array);
    if (hxGetClassID(array) == hxLOGICAL_CLASS) return positionsOfMask(array);
    positions.reserve(countOf(array));
    forEachNumber(array, [&](std::size_t, WideNumber value) {
        if (!(value >= 1 && value == std::floor(value) && value < 9e15L))
            raise("badsubscript", "A subscript must be a whole number from 1 on, not " +
                                      numberText(static_cast<double>(value)) + ".");
        positions.push_back(static_cast<std::size_t>(value) - 1);
    });
    return positions;
}

bool isVector(const Extents& extents) {
    return extents.size() == 2 && (extents[0] == 1 || extents[1] == 1);
}

// The shape of what one subscript reads.
Extents shapeOfLinear(const hxArray* array, const Subscript& subscript, std::size_t count) {
    if (subscript.all) return {count, 1};
    const Extents source = extentsOf(array);
    Extents given = extentsOf(subscript.value.get());
    const bool isMask = hxGetClassID(subscript.value.get()) == hxLOGICAL_CLASS;
    if (isVector(source) && isVector(given) && countOf(array) != 1)
        return source[0] == 1 ? Extents{1, count} : Extents{count, 1};
    if (isMask) return given.size() == 2 && given[0] == 1 ? Extents{1, count} : Extents{count, 1};
    return given;
}

} // namespace

Extents foldedExtents(Extents extents, std::size_t count) {
    extents.resize(std::max(extents.size(), count), 1);
    for (; extents.size() > count; extents.pop_back())
        extents[extents.size() - 2] *= extents.back();
    return extents;
}

Places resolve(const hxArray* array, const Subscripts& subscripts) {
    Places places;
    if (subscripts.empty()) raise("badsubscript", "An index is missing between the parentheses.");
    places.extents = foldedExtents(extentsOf(array), subscripts.size());
    places.needed.resize(subscripts.size());
    std::size_t count = 1;
    for (std::size_t i = 0; i < subscripts.size(); ++i) {
        places.positions.push_back(positionsOf(subscripts[i], places.extents[i]));
        for (std::size_t position : places.positions[i])
            places.needed[i] = std::max(places.needed[i], position + 1);
        places.shape.push_back(places.positions[i].size());
    }
    count = countOf(places.shape);
    if (subscripts.size() == 1) places.shape = shapeOfLinear(array, subscripts[0], count);
    return places;
}

std::vector<std::size_t> linearPlaces(const Places& places, const Extents& extents) {
    const std::size_t dimensions = places.positions.size();
    if (dimensions == 1) return places.positions[0];
    std::vector<std::size_t> linear;
    std::size_t count = 1;
    for (const auto& positions : places.positions)
        count *= positions.size();
    linear.reserve(count);
    std::vector<std::size_t> at(dimensions, 0);
    for (std::size_t n = 0; n < count; ++n) {
        std::size_t place = 0;
        for (std::size_t d = dimensions; d-- > 0;)
            place = place * extents[d] + places.positions[d][at[d]];
        linear.push_back(place);
        for (std::size_t d = 0; d < dimensions && ++at[d] == places.positions[d].size(); ++d)
            at[d] = 0;
    }
    return linear;
}

namespace {

std::vector<std::size_t> placesToRead(const hxArray* array, const Places& places) {
    for (std::size_t i = 0; i < places.needed.size(); ++i)
        if (places.needed[i] > places.extents[i])
            raiseOutside(places.needed[i], places.extents[i], i, places.needed.size());
    if (hxIsSparse(array)) raise("wrongtype", "Sparse arrays can't be indexed.");
    return linearPlaces(places, places.extents);
}

} // namespace

bool contains(const hxArray* array, const Subscripts& subscripts) {
    const Places places = resolve(array, subscripts);
    for (std::size_t i = 0; i < places.needed.size(); ++i)
        if (places.needed[i] > places.extents[i]) return false;
    return true;
}

Value index(const hxArray* array, const Subscripts& subscripts) {
    if (subscripts.empty()) return copyOf(array);
    const Places places = resolve(array, subscripts);
    std::vector<ElementRef> elements;
    for (std::size_t place : placesToRead(array, places))
        elements.push_back({array, place});
    return assemble(array, elements, places.shape);
}

Values indexContents(const hxArray* cell, const Subscripts& subscripts) {
    if (hxGetClassID(cell) != hxCELL_CLASS) raiseWrongType("Only a cell is indexed with {}", cell);
    Values contents;
    for (std::size_t place : placesToRead(cell, resolve(cell, subscripts)))
        contents.push_back(contentOf(cell, place));
    return contents;
}

double endOf(const hxArray* array, std::size_t position, std::size_t count) {
    return static_cast<double>(foldedExtents(extentsOf(array), count)[position]);
}

} // namespace velsh
