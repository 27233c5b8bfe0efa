// Writing parts of arrays by subscripts.
#include "host/object_array.h"
#include "host/text.h"
#include "shell/convert.h"
#include "shell/elements.h"
#include "shell/places.h"
#include "shell/subscripts.h"

#include <algorithm>
#include <cstring>

namespace velsh {

namespace {

bool isUnset(const hxArray* array) {
    return countOf(array) == 0 && hxGetClassID(array) == hxDOUBLE_CLASS;
}

bool isPlain(const hxArray* array) {
    const hxClassID type = hxGetClassID(array);
    return isNumeric(array) || type == hxLOGICAL_CLASS || type == hxCHAR_CLASS;
}

void addMissingFields(Value& array, const hxArray* other) {
    for (const std::string& name : get_struct_field_names(other))
        if (hxGetFieldNumber(array.get(), name.c_str()) < 0)
            hxAddFieldToStruct(array.writable(), name.c_str());
}

[[noreturn]] void raiseClasses(const hxArray* array, const hxArray* value) {
    const bool isCell = hxGetClassID(array) == hxCELL_CLASS;
    raise("wrongtype", std::string("A value of class ") + hxGetClassName(value) +
                           " can't become an element of an array of class " +
                           hxGetClassName(array) +
                           (isCell ? "; c{index} = value puts it into a cell." : "."));
}

// Brings array and value to one class.
void unify(Value& array, Value& value) {
    const hxArray *to = array.get(), *from = value.get();
    if (isUnset(to)) {
        array = assemble(from, {}, extentsOf(to));
        return;
    }
    if (hoststring::isString(to) && !hoststring::isString(from))
        value = toString(from);
    else if (isPlain(to) && isPlain(from)) {
        const hxClassID own = hxGetClassID(to), given = hxGetClassID(from);
        const bool takesOver =
            own == hxDOUBLE_CLASS && (isInteger(given) || given == hxSINGLE_CLASS);
        if (hxIsComplex(to) || hxIsComplex(from)) {
            if (own != given || hxIsComplex(to) != hxIsComplex(from)) raiseClasses(to, from);
        } else if (takesOver)
            array = toNumbers(to, given);
        else
            value = own == hxCHAR_CLASS ? toChar(from) : toNumbers(from, own);
    } else if (hxGetClassID(to) == hxSTRUCT_CLASS && hxGetClassID(from) == hxSTRUCT_CLASS) {
        addMissingFields(array, from);
        addMissingFields(value, to);
    } else if (isObject(to) ? !isObject(from) || !(hoGetClassID(to) == hoGetClassID(from))
                            : hxGetClassID(to) != hxGetClassID(from) ||
                                  hoststring::isString(from) != hoststring::isString(to))
        raiseClasses(to, from);
}

// The extents that the array has when all places exist.
Extents grownExtents(const hxArray* array, const Places& places) {
    Extents own = extentsOf(array);
    bool fits = true;
    for (std::size_t i = 0; i < places.needed.size(); ++i)
        fits = fits && places.needed[i] <= places.extents[i];
    if (fits) return own;
    if (places.needed.size() == 1) {
        const std::size_t length = places.needed[0];
        if (countOf(array) == 0 || (own.size() == 2 && own[0] == 1)) return {1, length};
        if (own.size() == 2 && own[1] == 1) return {length, 1};
        raise("badsubscript", "A matrix can't grow by a single index; use a row and a column.");
    }
    if (places.needed.size() < own.size())
        raise("badsubscript", "An array grows only with one subscript for each dimension.");
    own.resize(places.needed.size(), 1);
    for (std::size_t i = 0; i < own.size(); ++i)
        own[i] = std::max(own[i], places.needed[i]);
    return own;
}

// ":" as a subscript of an empty array stands for as many places as the value has.
void fitColons(const Value& array, Subscripts& subscripts, const hxArray* value) {
    if (countOf(array.get()) != 0) return;
    std::size_t colons = 0;
    for (const Subscript& subscript : subscripts)
        colons += subscript.all;
    const Extents own = extentsOf(value);
    for (std::size_t i = 0; i < subscripts.size(); ++i) {
        if (!subscripts[i].all) continue;
        const std::size_t length =
            colons == 1 ? countOf(value) : (i < own.size() ? own[i] : std::size_t{1});
        Value positions = numericArray(hxDOUBLE_CLASS, {1, length});
        for (std::size_t k = 0; k < length; ++k)
            static_cast<double*>(hxGetWritableData(positions.writable()))[k] =
                static_cast<double>(k + 1);
        subscripts[i] = {false, std::move(positions)};
    }
}

// One element of an array of numbers, logical values or characters, in place.
bool assignInPlace(Value& array, const std::vector<std::size_t>& places, const hxArray* value) {
    if (!isPlain(array.get()) || places.size() != 1 || hxIsSparse(array.get())) return false;
    const std::size_t size = hxGetElementSize(array.get()) * (hxIsComplex(value) ? 2 : 1);
    auto* data = static_cast<std::byte*>(hxGetWritableData(array.writable()));
    std::memcpy(data + places[0] * size, hxGetData(value), size);
    return true;
}

// The places of old and new elements in an array of the grown extents.
std::vector<ElementRef> spread(const hxArray* array, const Extents& grown) {
    std::vector<ElementRef> elements(countOf(grown));
    const Extents own = extentsOf(array);
    for (std::size_t i = 0; i < countOf(array); ++i) {
        std::size_t rest = i, place = 0, stride = 1;
        for (std::size_t d = 0; d < own.size(); ++d) {
            place += rest % own[d] * stride;
            rest /= own[d];
            stride *= d < grown.size() ? grown[d] : 1;
        }
        elements[place] = {array, i};
    }
    return elements;
}

} // namespace

void assignIndexed(Value& array, const Subscripts& given, const Value& givenValue) {
    Value value = givenValue;
    Subscripts subscripts = given;
    fitColons(array, subscripts, value.get());
    const Places places = resolve(array.get(), subscripts);
    const Extents grown = grownExtents(array.get(), places);
    const std::vector<std::size_t> linear =
        linearPlaces(places, foldedExtents(grown, subscripts.size()));
    const std::size_t count = countOf(value.get());
    if (count != 1 && count != linear.size())
        raise("dimagree", std::to_string(linear.size()) + " elements are assigned to, but " +
                              std::to_string(count) + " are given.");
    countOf(grown);
    unify(array, value);
    if (grown == extentsOf(array.get()) && assignInPlace(array, linear, value.get())) return;
    std::vector<ElementRef> elements = spread(array.get(), grown);
    for (std::size_t i = 0; i < linear.size(); ++i)
        elements[linear[i]] = {value.get(), count == 1 ? 0 : i};
    array = assemble(array.get(), elements, grown);
}

void assignContent(Value& cell, const Subscripts& subscripts, Value value) {
    if (isUnset(cell.get())) cell = cellArray(0, 0);
    if (hxGetClassID(cell.get()) != hxCELL_CLASS)
        raiseWrongType("Only a cell is assigned to with {}", cell.get());
    const Places places = resolve(cell.get(), subscripts);
    const std::vector<std::size_t> linear = linearPlaces(places, places.extents);
    if (linear.size() != 1) raise("badsubscript", "One place in a cell is assigned to at a time.");
    if (contains(cell.get(), subscripts)) {
        hxReplaceCell(cell.writable(), linear[0], value.take().release());
        return;
    }
    Value content = cellArray(1, 1);
    hxSetCell(content.writable(), 0, value.take().release());
    assignIndexed(cell, subscripts, content);
}

} // namespace velsh
