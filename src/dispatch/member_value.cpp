// Which conversion a member's value takes.
#include "dispatch/member_value.h"

#include "conversion/variant_to_host.h"
#include "host/message_ids.h"

namespace axlink2 {
namespace {

// Arrays don't need the owner but gain by being taken over.
bool needsOwner(VARTYPE vartype) {
    return vartype == VT_DISPATCH || vartype == VT_PTR || vartype == VT_VARIANT ||
           (vartype & VT_ARRAY);
}

// Where an interface isn't there, or isn't wrapped.
hos::HOSValue nan() {
    hxArray* array = nullptr;
    fallBackToNaN(&array);
    return hos::HOSValue::ofPointer(array);
}

// Out of the way of the other values, which need no handle.
[[gnu::noinline]] hos::HOSValue ownedValue(ArgVarConverter& converter, VARIANT& v,
                                           hos::HOSInterface* owner, const char* memberName) {
    const hos::HOSValue value =
        converter.fromVariantFor(v, hos::HOSInterfacePtr(owner), memberName);
    return value.isNull() ? nan() : value;
}

} // namespace

hos::HOSValue propertyValue(ArgVarConverter& converter, VARIANT& v, hos::HOSInterface* owner,
                            const char* memberName) {
    if (converter.vartype != VT_UNKNOWN) return methodValue(converter, v, owner, memberName);
    return ownedValue(converter, v, owner, memberName);
}

hos::HOSValue methodValue(ArgVarConverter& converter, VARIANT& v, hos::HOSInterface* owner,
                          const char* memberName) {
    if (needsOwner(converter.vartype)) return ownedValue(converter, v, owner, memberName);
    if (converter.vartype != VT_UNKNOWN) return converter.fromVariant(v);
    hxWarningMsgId(VELMAR::COM::unsupportedVARIANTtype());
    return nan();
}

} // namespace axlink2
