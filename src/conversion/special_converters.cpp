// Enumerations, codes and unsupported types.
#include "conversion/special_converters.h"

#include "conversion/variant_access.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "platform/holders.h"

namespace axlink2 {

hos::HOSValue ArgEnumConverter::fromVariant(const VARIANT& v) {
    if (v.vt == VT_I4) return hos::HOSValue::ofInteger(v.lVal);
    platform::ScopedVariant changed;
    // What can't be changed gives its 32 bits as they are.
    const HRESULT hr = platform::changeVariant(*changed.put(), v, VT_I4);
    return hos::HOSValue::ofInteger(SUCCEEDED(hr) ? changed->lVal : v.lVal);
}

void ArgEnumConverter::toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing, bool byRef) {
    VARIANT variant{};
    variant.vt = VT_I4;
    variant.lVal = static_cast<LONG>(value.integer());
    placeVariant(variant, out, backing, byRef);
}

hos::HOSValue ArgHResultConv::fromVariant(const VARIANT& v) {
    return hos::HOSValue::ofInteger(codeOf(v));
}

void ArgHResultConv::toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing, bool byRef) {
    placeValue(out, backing, byRef, [value](VARIANT& v) {
        v.vt = VT_ERROR;
        v.scode = static_cast<SCODE>(value.integer());
    });
}

hos::HOSValue ArgUnsupportedConverter::fromVariant(const VARIANT&) {
    hmsgcore::raise(VELMAR::COM::invalidargumenttype());
}

void ArgUnsupportedConverter::toVariant(hos::HOSValue, VARIANT*, VARIANT*, bool) {
    hmsgcore::raise(VELMAR::COM::invalidargumenttype());
}

} // namespace axlink2
