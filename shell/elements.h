// Arrays put together from elements of other arrays: what indexing and concatenation share.
#pragma once

#include "shell/value.h"

#include <cstddef>
#include <vector>

namespace velsh {

// An element of an array of the new array's class. Without array: what such an element is at first.
struct ElementRef {
    const hxArray* array = nullptr;
    std::size_t index = 0;
};

// An array of the class of `model` (and, with structs and objects, its fields or class) with these
// elements in column order. Raises for a class that has no elements to take apart.
Value assemble(const hxArray* model, const std::vector<ElementRef>& elements,
               const Extents& extents);

// A 1-by-1 array of the element.
Value elementOf(const hxArray* array, std::size_t index);
// What a cell holds at that place.
Value contentOf(const hxArray* cell, std::size_t index);

} // namespace velsh
