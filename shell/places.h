// Subscripts resolved against an array.
#pragma once

#include "shell/subscripts.h"

#include <vector>

namespace velsh {

struct Places {
    std::vector<std::vector<std::size_t>> positions; // 0-based, along each subscript's extent
    Extents extents;                                 // of the array, as that many subscripts see it
    Extents needed;                                  // what the subscripts reach, along each extent
    Extents shape;                                   // of what they read
};

// Extents as `count` subscripts see them: the last one covers the rest, and any further ones are 1.
Extents foldedExtents(Extents extents, std::size_t count);

// Raises for what is no subscript; whether the places exist is the caller's question.
Places resolve(const hxArray* array, const Subscripts& subscripts);

// 0-based linear places in an array of those extents, in column order.
std::vector<std::size_t> linearPlaces(const Places& places, const Extents& extents);

} // namespace velsh
