// Which conversion a member's value takes.
#include "dispatch/member_value.h"

#include "conversion/variant_to_host.h"

namespace axlink2 {
namespace {

bool isInterface(VARTYPE vartype) {
    return vartype == VT_DISPATCH || vartype == VT_UNKNOWN || vartype == VT_PTR;
}

// Arrays don't need the owner but gain by being taken over.
bool needsOwner(VARTYPE vartype) {
    return vartype == VT_DISPATCH || vartype == VT_PTR || vartype == VT_VARIANT ||
           (vartype & VT_ARRAY);
}

hos::HOSValue orNaN(hos::HOSValue value, const ArgVarConverter& converter) {
    if (!value.isNull() || !isInterface(converter.vartype)) return value;
    hxArray* nan = nullptr;
    fallBackToNaN(&nan);
    return hos::HOSValue::ofPointer(nan);
}

} // namespace

hos::HOSValue propertyValue(ArgVarConverter& converter, VARIANT& v,
                            const hos::HOSInterfacePtr& owner, const char* memberName) {
    if (converter.vartype != VT_UNKNOWN) return methodValue(converter, v, owner, memberName);
    return orNaN(converter.fromVariantFor(v, owner, memberName), converter);
}

hos::HOSValue methodValue(ArgVarConverter& converter, VARIANT& v, const hos::HOSInterfacePtr& owner,
                          const char* memberName) {
    return orNaN(needsOwner(converter.vartype) ? converter.fromVariantFor(v, owner, memberName)
                                               : converter.fromVariant(v),
                 converter);
}

} // namespace axlink2
