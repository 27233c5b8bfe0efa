// Shape and class of any array.
#include "host/array_store.h"
#include "host/class.h"
#include "host/host_messages.h"

#include <cstring>
#include <string_view>

using harray::detail::ElementKind;
using harray::detail::reading;

hxClassID hxGetClassID(const hxArray* array) { return reading(array).classId; }

const char* hxGetClassName(const hxArray* array) {
    const hxArray& a = reading(array);
    if (a.kind == ElementKind::Object) return a.objectClass.c_str();
    if (a.kind == ElementKind::String) return "string";
    static constexpr const char* names[] = {
        "unknown", "cell",   "struct",          "logical", "char",   "void",  "double",
        "single",  "int8",   "uint8",           "int16",   "uint16", "int32", "uint32",
        "int64",   "uint64", "function_handle", "opaque",  "object"};
    return names[a.classId];
}

std::size_t hxGetM(const hxArray* array) { return reading(array).extents[0]; }

std::size_t hxGetN(const hxArray* array) {
    const hxArray& a = reading(array);
    if (a.rank == 2) return a.extents[1];
    std::size_t n = 1;
    for (std::size_t i = 1; i < a.rank; ++i)
        n *= a.dimensions()[i];
    return n;
}

std::size_t hxGetNumberOfDimensions(const hxArray* array) { return reading(array).rank; }

const std::size_t* hxGetDimensions(const hxArray* array) { return reading(array).dimensions(); }

std::size_t hxGetNumberOfElements(const hxArray* array) { return reading(array).count; }

std::size_t hxGetElementSize(const hxArray* array) {
    const hxArray& a = reading(array);
    return harray::detail::elementBytes(a) / (a.complex ? 2 : 1);
}

bool hxIsEmpty(const hxArray* array) { return reading(array).count == 0; }

bool hxIsScalar(const hxArray* array) { return reading(array).count == 1; }

bool hxIsComplex(const hxArray* array) { return reading(array).complex; }

bool hxIsSparse(const hxArray* array) { return reading(array).sparse != nullptr; }

namespace {

bool isClassOrSuperclass(hos::id classId, std::string_view name) {
    if (classId.c_str() == name) return true;
    hos::HOSClass* live = hos::HOSClass::getClass(classId);
    if (!live) return false;
    hos::Enumeration<hos::id> superclasses;
    live->getSuperclassIDs(&superclasses);
    while (superclasses.hasMoreElements())
        if (isClassOrSuperclass(superclasses.nextElement(), name)) return true;
    return false;
}

} // namespace

bool hxIsA(const hxArray* array, const char* className) {
    const hxArray& a = reading(array);
    const std::string_view name = className ? className : "";
    if (a.kind == ElementKind::Object)
        return name == "handle" || isClassOrSuperclass(a.objectClass, name);
    const bool isFloat = a.classId == hxDOUBLE_CLASS || a.classId == hxSINGLE_CLASS;
    if (name == "float") return isFloat;
    if (name == "numeric") return a.classId >= hxDOUBLE_CLASS && a.classId <= hxUINT64_CLASS;
    return name == hxGetClassName(&a);
}

bool hxSetDimensions(hxArray* array, std::size_t dimensions, const std::size_t* extents) {
    if (!array || (array->sparse && dimensions != 2)) return false;
    std::size_t count = 1;
    for (std::size_t i = 0; i < dimensions; ++i)
        if (__builtin_mul_overflow(count, extents[i], &count)) return false;
    if (count != array->count) return false;
    // The entries of a sparse array lie by column: another shape would move them.
    if (array->sparse && extents[1] != array->extents[1]) return false;
    harray::detail::setShape(*array, dimensions, extents);
    return true;
}

std::size_t hxCalcSingleSubscript(const hxArray* array, std::size_t count,
                                  const std::size_t* subscripts) {
    const hxArray& a = reading(array);
    const std::size_t* extents = a.dimensions();
    std::size_t index = 0;
    std::size_t stride = 1;
    for (std::size_t i = 0; i < count; ++i) {
        std::size_t extent = i < a.rank ? extents[i] : 1;
        // The last subscript runs over all the dimensions that are left.
        if (i + 1 == count)
            for (std::size_t rest = i + 1; rest < a.rank; ++rest)
                extent *= extents[rest];
        harray::detail::checkIndex(subscripts[i], extent);
        index += subscripts[i] * stride;
        stride *= extent;
    }
    harray::detail::checkIndex(index, a.count);
    return index;
}
