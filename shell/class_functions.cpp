// Functions about classes: conversion, tests, structs.
#include "host/object_array.h"
#include "shell/convert.h"
#include "shell/elements.h"
#include "shell/functions.h"

namespace velsh {

namespace {

template <hxClassID type>
Values convert(const Call& call) {
    return {toNumbers(call[0], type)};
}

template <bool (*test)(const hxArray*)>
Values answer(const Call& call) {
    return {logical(test(call[0]))};
}

template <hxClassID type>
bool hasClass(const hxArray* array) {
    return hxGetClassID(array) == type;
}

Values classFunction(const Call& call) { return {charText(hxGetClassName(call[0]))}; }

Values isaFunction(const Call& call) {
    return {logical(hxIsA(call[0], narrowTextOf(call[1], "The name of a class").c_str()))};
}

Values isvalidFunction(const Call& call) {
    if (!isObject(call[0])) return {logical(false)};
    Value valid = numericArray(hxLOGICAL_CLASS, extentsOf(call[0]));
    for (std::size_t i = 0; i < countOf(call[0]); ++i) {
        const hos::HOSInterfacePtr object = hoGetArrayElement(call[0], i);
        hxGetLogicals(valid.writable())[i] = object && !object->isDeleted();
    }
    return {valid};
}

Values structFunction(const Call& call) {
    Value result(hxCreateStructMatrix(1, 1, 0, nullptr));
    if (call.count() % 2) raise("minrhs", "\"struct\" takes pairs of a name and a value.");
    for (std::size_t i = 0; i < call.count(); i += 2) {
        const std::string name = narrowTextOf(call[i], "The name of a field");
        const bool isCell = hxGetClassID(call[i + 1]) == hxCELL_CLASS;
        if (isCell && countOf(call[i + 1]) != 1)
            raise("notsupported", "\"struct\" makes one struct: a cell as a value must be 1-by-1 "
                                  "and stands for what it holds.");
        Value value = isCell ? contentOf(call[i + 1], 0) : copyOf(call[i + 1]);
        hxSetField(result.writable(), 0, name.c_str(), value.take().release());
    }
    return {result};
}

Values fieldnamesFunction(const Call& call) {
    if (hxGetClassID(call[0]) != hxSTRUCT_CLASS)
        raiseWrongType("Only structs have fields", call[0]);
    const std::vector<std::string> names = get_struct_field_names(call[0]);
    Value cell = cellArray(names.size(), 1);
    for (std::size_t i = 0; i < names.size(); ++i)
        hxSetCell(cell.writable(), i, charText(names[i]).take().release());
    return {cell};
}

constexpr FunctionRow rows[] = {
    {"class", 1, 1, classFunction},
    {"isa", 2, 2, isaFunction},
    {"isvalid", 1, 1, isvalidFunction},
    {"ischar", 1, 1, answer<hasClass<hxCHAR_CLASS>>},
    {"iscell", 1, 1, answer<hasClass<hxCELL_CLASS>>},
    {"isstruct", 1, 1, answer<hasClass<hxSTRUCT_CLASS>>},
    {"isnumeric", 1, 1, answer<isNumeric>},
    {"double", 1, 1, convert<hxDOUBLE_CLASS>},
    {"single", 1, 1, convert<hxSINGLE_CLASS>},
    {"logical", 1, 1, convert<hxLOGICAL_CLASS>},
    {"int8", 1, 1, convert<hxINT8_CLASS>},
    {"uint8", 1, 1, convert<hxUINT8_CLASS>},
    {"int16", 1, 1, convert<hxINT16_CLASS>},
    {"uint16", 1, 1, convert<hxUINT16_CLASS>},
    {"int32", 1, 1, convert<hxINT32_CLASS>},
    {"uint32", 1, 1, convert<hxUINT32_CLASS>},
    {"int64", 1, 1, convert<hxINT64_CLASS>},
    {"uint64", 1, 1, convert<hxUINT64_CLASS>},
    {"char", 1, 1, [](const Call& call) { return Values{toChar(call[0])}; }},
    {"string", 1, 1, [](const Call& call) { return Values{toString(call[0])}; }},
    {"struct", 0, anyNumber, structFunction},
    {"fieldnames", 1, 1, fieldnamesFunction},
};

} // namespace

std::span<const FunctionRow> classFunctions() { return rows; }

} // namespace velsh
