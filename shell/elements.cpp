// Arrays put together from elements of other arrays.
#include "shell/elements.h"

#include "host/object_array.h"
#include "host/text.h"
#include "shell/convert.h"

#include <cstring>
#include <map>

namespace velsh {

namespace {

using Elements = std::vector<ElementRef>;

Value assembleNumbers(const hxArray* model, const Elements& elements, const Extents& extents) {
    const hxClassID type = hxGetClassID(model);
    const bool isComplex = hxIsComplex(model);
    Value result =
        type == hxCHAR_CLASS ? charArray(std::u16string(elements.size(), u'\0'), extents)
        : isComplex ? Value(hxCreateNumericArray(extents.size(), extents.data(), type, hxCOMPLEX))
                    : numericArray(type, extents);
    if (elements.empty()) return result;
    const std::size_t size = hxGetElementSize(model) * (isComplex ? 2 : 1);
    auto* to = static_cast<std::byte*>(hxGetWritableData(result.writable()));
    for (const ElementRef& element : elements) {
        if (element.array)
            std::memcpy(
                to, static_cast<const std::byte*>(hxGetData(element.array)) + element.index * size,
                size);
        to += size;
    }
    return result;
}

Value assembleCell(const Elements& elements, const Extents& extents) {
    Value result(hxCreateCellArray(extents.size(), extents.data()));
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (!elements[i].array) continue;
        if (const hxArray* content = hxGetCell(elements[i].array, elements[i].index))
            hxSetCell(result.writable(), i, hxCreateSharedDataCopy(content));
    }
    return result;
}

Value assembleStruct(const hxArray* model, const Elements& elements, const Extents& extents) {
    const std::vector<std::string> names = get_struct_field_names(model);
    Value result(hxCreateStructMatrix(elements.size(), 1, 0, nullptr));
    for (const std::string& name : names)
        hxAddFieldToStruct(result.writable(), name.c_str());
    for (std::size_t i = 0; i < elements.size(); ++i)
        for (const std::string& name : names) {
            if (!elements[i].array) continue;
            const hxArray* value = hxGetField(elements[i].array, elements[i].index, name.c_str());
            if (value)
                hxSetField(result.writable(), i, name.c_str(), hxCreateSharedDataCopy(value));
        }
    hxSetDimensions(result.writable(), extents.size(), extents.data());
    return result;
}

Value assembleStrings(const Elements& elements, const Extents& extents) {
    std::map<const hxArray*, std::vector<std::optional<std::u16string_view>>> sources;
    std::vector<std::optional<std::u16string>> texts(elements.size());
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const hxArray* array = elements[i].array;
        if (!array) continue;
        auto source = sources.find(array);
        if (source == sources.end())
            source = sources.emplace(array, hoststring::getString(array)).first;
        const auto& text = source->second.at(elements[i].index);
        if (text) texts[i] = std::u16string(*text);
    }
    Value result(hoststring::createStringArray(elements.size(), 1, std::move(texts)));
    hxSetDimensions(result.writable(), extents.size(), extents.data());
    return result;
}

Value assembleObjects(const hxArray* model, const Elements& elements, const Extents& extents) {
    Value result(hoCreateHOSMatrix(elements.size(), 1, hoGetClassID(model)));
    for (std::size_t i = 0; i < elements.size(); ++i)
        if (elements[i].array)
            hoSetArrayElement(result.writable(), i,
                              hoGetArrayElement(elements[i].array, elements[i].index));
    hxSetDimensions(result.writable(), extents.size(), extents.data());
    return result;
}

} // namespace

Value assemble(const hxArray* model, const Elements& elements, const Extents& extents) {
    countOf(extents);
    if (hxIsSparse(model)) raise("wrongtype", "Sparse arrays can't be indexed or joined.");
    const hxClassID type = hxGetClassID(model);
    if (isNumeric(model) || type == hxLOGICAL_CLASS || type == hxCHAR_CLASS)
        return assembleNumbers(model, elements, extents);
    if (type == hxCELL_CLASS) return assembleCell(elements, extents);
    if (type == hxSTRUCT_CLASS) return assembleStruct(model, elements, extents);
    if (hoststring::isString(model)) return assembleStrings(elements, extents);
    if (isObject(model)) return assembleObjects(model, elements, extents);
    raise("wrongtype",
          std::string("Values of class ") + hxGetClassName(model) + " can't be indexed or joined.");
}

Value elementOf(const hxArray* array, std::size_t index) {
    return assemble(array, {{array, index}}, {1, 1});
}

Value contentOf(const hxArray* cell, std::size_t index) {
    const hxArray* content = hxGetCell(cell, index);
    return content ? copyOf(content) : Value();
}

} // namespace velsh
