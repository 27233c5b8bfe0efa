// The table of numeric classes.
#include "conversion/host_classes.h"

#include <iterator>

namespace axlink2 {
namespace {

// In the order of the host's ids, from the double's on.
constexpr NumericClass classes[] = {
    {hxDOUBLE_CLASS, VT_R8, 8},  {hxSINGLE_CLASS, VT_R4, 4},    {hxINT8_CLASS, VT_I1, 1},
    {hxUINT8_CLASS, VT_UI1, 1},  {hxINT16_CLASS, VT_I2, 2},     {hxUINT16_CLASS, VT_UI2, 2},
    {hxINT32_CLASS, VT_I4, 4},   {hxUINT32_CLASS, VT_UI4, 4},   {hxINT64_CLASS, VT_I8, 8},
    {hxUINT64_CLASS, VT_UI8, 8}, {hxLOGICAL_CLASS, VT_BOOL, 2},
};
constexpr const NumericClass& logicals = classes[std::size(classes) - 1];
static_assert(classes[hxUINT64_CLASS - hxDOUBLE_CLASS].id == hxUINT64_CLASS);

} // namespace

const NumericClass* numericClassOf(hxClassID id) {
    if (id >= hxDOUBLE_CLASS && id <= hxUINT64_CLASS) return &classes[id - hxDOUBLE_CLASS];
    return id == logicals.id ? &logicals : nullptr;
}

const NumericClass* numericClassOf(VARTYPE vartype) {
    if (vartype == VT_INT) vartype = VT_I4;
    if (vartype == VT_UINT) vartype = VT_UI4;
    for (const NumericClass& row : classes)
        if (row.vartype == vartype) return &row;
    return nullptr;
}

} // namespace axlink2
