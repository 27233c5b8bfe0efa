// Arrays of objects, and the properties of their elements.
#include "host/object_array.h"

#include "host/array_store.h"
#include "host/host_messages.h"
#include "host/member_access.h"

using harray::detail::ElementKind;
using harray::detail::ObjectElement;

hxArray* hoCreateHOSMatrix(std::size_t rows, std::size_t columns, hos::id classId) {
    const std::size_t extents[] = {rows, columns};
    harray::unique_array array =
        rows == 1 && columns == 1
            ? harray::detail::makeScalar(hxOPAQUE_CLASS, ElementKind::Object)
            : harray::detail::makeArray(hxOPAQUE_CLASS, ElementKind::Object, 2, extents);
    array->objectClass = classId;
    return array.release();
}

hos::HOSInterfacePtr hoGetArrayElement(const hxArray* array, std::size_t index) {
    if (!hoIsHOS(array) || index >= array->count) return {};
    return array->elements<ObjectElement>()[index];
}

void hoSetArrayElement(hxArray* array, std::size_t index, const hos::HOSInterfacePtr& object) {
    if (!hoIsHOS(array)) harray::detail::failWrongClass("hoSetArrayElement", array);
    harray::detail::checkIndex(index, array->count);
    hxArray& a = harray::detail::writing(array, "hoSetArrayElement");
    a.elements<ObjectElement>()[index] =
        hos::HOSInterfacePtr(object, hos::HOSReferenceType::Strong);
}

bool hoIsHOS(const hxArray* array) { return array && array->kind == ElementKind::Object; }

bool hoMeansNoObject(const hxArray* array) {
    const hxArray& value = harray::detail::reading(array);
    if (value.kind == ElementKind::Object) return value.count == 0;
    return value.classId == hxDOUBLE_CLASS && value.rank == 2 && value.extents[0] == 0 &&
           value.extents[1] == 0;
}

hos::id hoGetClassID(const hxArray* array) {
    return hoIsHOS(array) ? array->objectClass : hos::id();
}

namespace {

hos::HOSInterface& elementOf(const hxArray* objects, std::size_t index) {
    if (!hoIsHOS(objects))
        velmar::fail(velmar::keys::NotAnObject, "property access", hxGetClassName(objects));
    harray::detail::checkIndex(index, objects->count);
    return velmar::requireAlive(objects->elements<ObjectElement>()[index]);
}

} // namespace

hxArray* hxGetPropertyShared(const hxArray* objects, std::size_t index, const char* name) {
    return velmar::readProperty(elementOf(objects, index), hos::internal::findInterned(name), name)
        .release();
}

void hxSetProperty(hxArray* objects, std::size_t index, const char* name, const hxArray* value) {
    velmar::writeProperty(elementOf(objects, index), hos::internal::findInterned(name), name,
                          value);
}
