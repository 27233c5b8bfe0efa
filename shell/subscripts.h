// Reading and writing parts of arrays by subscripts that count from 1.
#pragma once

#include "shell/value.h"

#include <vector>

namespace velsh {

// One subscript as it was written: a value, or ":".
struct Subscript {
    bool all = false;
    Value value;
};
using Subscripts = std::vector<Subscript>;

// array(subscripts...): an array of the same class.
Value index(const hxArray* array, const Subscripts& subscripts);
// cell{subscripts...}: what the places hold.
Values indexContents(const hxArray* cell, const Subscripts& subscripts);
// Whether all places that the subscripts name exist.
bool contains(const hxArray* array, const Subscripts& subscripts);
// What `end` is as subscript `position` (from 0) of `count`.
double endOf(const hxArray* array, std::size_t position, std::size_t count);

// array(subscripts...) = value. The array grows as needed; an empty one takes the value's class.
// After an error it is as it was.
void assignIndexed(Value& array, const Subscripts& subscripts, const Value& value);
// cell{subscripts...} = value, one place.
void assignContent(Value& cell, const Subscripts& subscripts, Value value);

} // namespace velsh
