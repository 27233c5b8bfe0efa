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

// Out of the way of the other values, which need no handle.
[[gnu::noinline]] hos::HOSValue ownedValue(ArgVarConverter& converter, VARIANT& v,
                                           hos::HOSInterface* owner, const char* memberName) {
    return converter.fromVariantFor(v, hos::HOSInterfacePtr(owner), memberName);
}

hos::HOSValue orNaN(hos::HOSValue value, const ArgVarConverter& converter) {
    if (!value.isNull() || !isInterface(converter.vartype)) return value;
    hxArray* nan = nullptr;
    fallBackToNaN(&nan);
    return hos::HOSValue::ofPointer(nan);
}

} // namespace

hos::HOSValue propertyValue(ArgVarConverter& converter, VARIANT& v, hos::HOSInterface* owner,
                            const char* memberName) {
    if (converter.vartype != VT_UNKNOWN) return methodValue(converter, v, owner, memberName);
    return orNaN(ownedValue(converter, v, owner, memberName), converter);
}

hos::HOSValue methodValue(ArgVarConverter& converter, VARIANT& v, hos::HOSInterface* owner,
                          const char* memberName) {
    if (needsOwner(converter.vartype))
        return orNaN(ownedValue(converter, v, owner, memberName), converter);
    return orNaN(converter.fromVariant(v), converter);
}

} // namespace axlink2
