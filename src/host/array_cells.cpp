// Cells and struct arrays.
#include "host/array_store.h"
#include "host/host_messages.h"

#include <algorithm>

using harray::unique_array;
using harray::detail::ArrayElement;
using harray::detail::ElementKind;
using harray::detail::FieldNames;
using harray::detail::makeArray;
using harray::detail::reading;

namespace {

void requireClass(const hxArray* array, hxClassID classId, const char* operation) {
    if (reading(array).classId != classId) harray::detail::failWrongClass(operation, array);
}

hxArray& writingClass(hxArray* array, hxClassID classId, const char* operation) {
    requireClass(array, classId, operation);
    return harray::detail::writing(array, operation);
}

// Gives `slot` another array to own, and the caller the one that it had.
unique_array exchange(ArrayElement& slot, hxArray* value) {
    unique_array old(slot.array);
    slot.array = value;
    return old;
}

// The place of a field, checked. Fields of one element stand side by side.
std::size_t fieldPlace(const hxArray& array, std::size_t index, int field) {
    harray::detail::checkIndex(index, array.count);
    harray::detail::checkIndex(static_cast<std::size_t>(field), array.fields->size());
    return index * array.fields->size() + static_cast<std::size_t>(field);
}

// Gives the struct array other fields; `sourceOf[i]` is the former number of field i, or -1.
void setFields(hxArray& array, std::vector<std::string> names, const std::vector<int>& sourceOf) {
    const std::size_t before = array.fields->size();
    unique_array next(new hxArray);
    next->classId = hxSTRUCT_CLASS;
    next->kind = ElementKind::Array;
    harray::detail::makeStore(*next, harray::detail::checkedProduct(array.count, names.size()));
    auto shared = std::make_shared<FieldNames>(std::move(names));
    for (std::size_t element = 0; element < array.count; ++element)
        for (std::size_t field = 0; field < sourceOf.size(); ++field)
            if (sourceOf[field] >= 0)
                std::swap(next->elements<ArrayElement>()[element * sourceOf.size() + field].array,
                          array
                              .elements<ArrayElement>()[element * before +
                                                        static_cast<std::size_t>(sourceOf[field])]
                              .array);
    harray::detail::swapStores(array, *next);
    array.fields = std::move(shared);
}

// The same for a field behind the others of the only element, which needs no new arrangement.
void appendField(hxArray& array, const std::string& name) {
    if (array.fields.use_count() > 1) array.fields = std::make_shared<FieldNames>(*array.fields);
    harray::detail::reserveElement(array);
    array.fields->add(name);
    new (array.elements<ArrayElement>() + array.stored++) ArrayElement;
}

std::vector<int> identity(std::size_t count) {
    std::vector<int> numbers(count);
    for (std::size_t i = 0; i < count; ++i)
        numbers[i] = static_cast<int>(i);
    return numbers;
}

} // namespace

hxArray* hxCreateCellMatrix(std::size_t rows, std::size_t columns) {
    const std::size_t extents[] = {rows, columns};
    return hxCreateCellArray(2, extents);
}

hxArray* hxCreateCellArray(std::size_t dimensions, const std::size_t* extents) {
    return makeArray(hxCELL_CLASS, ElementKind::Array, dimensions, extents).release();
}

hxArray* harray::detail::do_create_cell(std::size_t dimensions, const std::size_t* extents) {
    return hxCreateCellArray(dimensions, extents);
}

hxArray* hxCreateStructMatrix(std::size_t rows, std::size_t columns, int fields,
                              const char* const* names) {
    const std::size_t extents[] = {rows, columns};
    return harray::detail::do_create_struct(2, extents, fields, names);
}

hxArray* harray::detail::do_create_struct(std::size_t dimensions, const std::size_t* extents,
                                          int fields, const char* const* names) {
    std::vector<std::string> list(names, names + std::max(fields, 0));
    unique_array array(new hxArray);
    array->classId = hxSTRUCT_CLASS;
    array->kind = ElementKind::Array;
    setShape(*array, dimensions, extents);
    makeStore(*array, checkedProduct(array->count, list.size()));
    array->fields = std::make_shared<FieldNames>(std::move(list));
    return array.release();
}

const hxArray* hxGetCell(const hxArray* cell, std::size_t index) {
    requireClass(cell, hxCELL_CLASS, "hxGetCell");
    harray::detail::checkIndex(index, cell->count);
    return cell->elements<ArrayElement>()[index].array;
}

void hxSetCell(hxArray* cell, std::size_t index, hxArray* value) {
    hxReplaceCell(cell, index, value);
}

void hxReplaceCell(hxArray* cell, std::size_t index, hxArray* value) {
    unique_array owned(value);
    hxArray& a = writingClass(cell, hxCELL_CLASS, "hxSetCell");
    harray::detail::checkIndex(index, a.count);
    exchange(a.elements<ArrayElement>()[index], owned.release());
}

int hxGetFieldNumber(const hxArray* array, const char* name) {
    const hxArray& a = reading(array);
    return a.fields && name ? a.fields->find(name) : -1;
}

const hxArray* hxGetField(const hxArray* array, std::size_t index, const char* name) {
    requireClass(array, hxSTRUCT_CLASS, "hxGetField");
    const int field = hxGetFieldNumber(array, name);
    return field < 0 ? nullptr : hxGetFieldByNumber(array, index, field);
}

const hxArray* hxGetFieldByNumber(const hxArray* array, std::size_t index, int field) {
    requireClass(array, hxSTRUCT_CLASS, "hxGetFieldByNumber");
    return array->elements<ArrayElement>()[fieldPlace(*array, index, field)].array;
}

void hxSetField(hxArray* array, std::size_t index, const char* name, hxArray* value) {
    unique_array owned(value);
    requireClass(array, hxSTRUCT_CLASS, "hxSetField");
    harray::detail::checkIndex(index, array->count);
    const int field = hxAddFieldToStruct(array, name);
    hxArray& a = harray::detail::writing(array, "hxSetField");
    exchange(a.elements<ArrayElement>()[fieldPlace(a, index, field)], owned.release());
}

void hxSetFieldByNumber(hxArray* array, std::size_t index, int field, hxArray* value) {
    unique_array owned(value);
    hxArray& a = writingClass(array, hxSTRUCT_CLASS, "hxSetFieldByNumber");
    // What stood there belongs to whoever calls.
    static_cast<void>(
        exchange(a.elements<ArrayElement>()[fieldPlace(a, index, field)], owned.release())
            .release());
}

int hxAddFieldToStruct(hxArray* array, const char* name) {
    requireClass(array, hxSTRUCT_CLASS, "hxAddFieldToStruct");
    if (const int known = hxGetFieldNumber(array, name); known >= 0) return known;
    hxArray& a = harray::detail::writing(array, "hxAddFieldToStruct");
    const std::string added = name ? name : "";
    if (a.count == 1) {
        appendField(a, added);
    } else {
        std::vector<std::string> names = a.fields->all();
        std::vector<int> sources = identity(names.size());
        names.push_back(added);
        sources.push_back(-1);
        setFields(a, std::move(names), sources);
    }
    return static_cast<int>(a.fields->size()) - 1;
}

void hxRemoveField(hxArray* array, int field) {
    hxArray& a = writingClass(array, hxSTRUCT_CLASS, "hxRemoveField");
    harray::detail::checkIndex(static_cast<std::size_t>(field), a.fields->size());
    std::vector<std::string> names = a.fields->all();
    std::vector<int> sources = identity(names.size());
    names.erase(names.begin() + field);
    sources.erase(sources.begin() + field);
    setFields(a, std::move(names), sources);
}

int get_number_of_struct_fields(const hxArray* array) {
    const hxArray& a = reading(array);
    return a.fields ? static_cast<int>(a.fields->size()) : 0;
}

std::vector<std::string> get_struct_field_names(const hxArray* array) {
    const hxArray& a = reading(array);
    return a.fields ? a.fields->all() : std::vector<std::string>();
}
