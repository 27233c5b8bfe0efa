// What all converters share, and by-reference views.
#include "conversion/arg_converter.h"

#include "comruntime/interned.h"

namespace axlink2 {
namespace {

// VARTYPEs whose payload lies in the VARIANT's value member, so that a reference can point there.
constexpr bool hasReferencedPayload(VARTYPE vt) {
    return (vt >= VT_I2 && vt <= VT_BOOL) || vt == VT_UNKNOWN || (vt >= VT_I1 && vt <= VT_UINT) ||
           vt == VT_HRESULT || vt == VT_INT_PTR || vt == VT_UINT_PTR;
}

} // namespace

ArgVarConverter::ArgVarConverter(VARTYPE vartype, const char* dataTypeName)
    : vartype(vartype), dataType(internedId(dataTypeName)) {}

hos::HOSValue ArgVarConverter::fromVariantFor(VARIANT& v, const hos::HOSInterfacePtr&,
                                              const char*) {
    return fromVariant(v);
}

void ArgVarConverter::retainForPut(VARIANT*) {}

void makeByRefVariant(VARIANT* out, VARIANT* backing) {
    out->vt = backing->vt | VT_BYREF;
    const VARTYPE vt = backing->vt & VT_TYPEMASK;
    if ((backing->vt & VT_ARRAY) || hasReferencedPayload(vt)) {
        out->byref = &backing->byref;
    } else if (vt == VT_VARIANT) {
        out->pvarVal = backing;
        VariantClear(backing);
    } else if (vt == VT_DECIMAL) {
        out->pdecVal = &backing->decVal;
    }
}

void placeVariant(const VARIANT& value, VARIANT* out, VARIANT* backing, bool byRef) {
    if (!byRef) {
        *out = value;
        return;
    }
    *backing = value;
    makeByRefVariant(out, backing);
}

} // namespace axlink2
