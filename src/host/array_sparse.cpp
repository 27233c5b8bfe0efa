// Sparse arrays: entries by column, a row index for each and the start of each column.
#include "host/array_store.h"
#include "host/host_messages.h"

#include <limits>

using harray::unique_array;
using harray::detail::SparseIndex;

namespace {

hxArray* makeSparse(std::size_t rows, std::size_t columns, std::size_t capacity, hxClassID classId,
                    bool complex) {
    unique_array array(new hxArray);
    array->classId = classId;
    array->complex = complex;
    const std::size_t extents[] = {rows, columns};
    harray::detail::setShape(*array, 2, extents);
    if (columns == std::numeric_limits<std::size_t>::max()) throw std::bad_alloc();
    array->sparse = std::make_unique<SparseIndex>();
    array->sparse->rows.resize(capacity);
    array->sparse->starts.resize(columns + 1);
    harray::detail::makeStore(*array, capacity);
    return array.release();
}

} // namespace

hxArray* hxCreateSparse(std::size_t rows, std::size_t columns, std::size_t capacity,
                        hxComplexity complexity) {
    return makeSparse(rows, columns, capacity, hxDOUBLE_CLASS, complexity == hxCOMPLEX);
}

hxArray* hxCreateSparseLogical(std::size_t rows, std::size_t columns, std::size_t capacity) {
    return makeSparse(rows, columns, capacity, hxLOGICAL_CLASS, false);
}

std::size_t* hxGetIr(const hxArray* array) {
    return hxIsSparse(array) ? array->sparse->rows.data() : nullptr;
}

std::size_t* hxGetJc(const hxArray* array) {
    return hxIsSparse(array) ? array->sparse->starts.data() : nullptr;
}
