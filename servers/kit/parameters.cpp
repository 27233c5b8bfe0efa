// Arguments and outputs of another kind than declared.
#include "servers/kit/parameters.h"

namespace kit {

namespace {

// VT_HRESULT is no kind that anything converts to; its value is that of a VT_I4.
VARTYPE conversionTarget(VARTYPE vt) { return vt == VT_HRESULT ? static_cast<VARTYPE>(VT_I4) : vt; }

std::size_t payloadSize(VARTYPE vt) {
    switch (vt) {
    case VT_I1:
    case VT_UI1:
        return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
        return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
    case VT_HRESULT:
        return 4;
    default:
        return 8;
    }
}

} // namespace

void coerce(VARIANTARG& argument, VARTYPE vt, VARIANT& converted, UINT index) {
    const HRESULT result = VariantChangeType(&converted, &argument, 0, conversionTarget(vt));
    if (result == DISP_E_BADVARTYPE) throw ComFailure{DISP_E_TYPEMISMATCH, index};
    if (FAILED(result)) throw ComFailure{result, index};
}

void storeConverted(VARIANTARG& argument, VARIANT& value, UINT index) {
    const auto base = static_cast<VARTYPE>(argument.vt & ~VT_BYREF);
    if (base == VT_VARIANT) {
        VariantClear(argument.pvarVal);
        *argument.pvarVal = std::exchange(value, VARIANT{});
        return;
    }
    coerce(value, base, value, index);
    if (base == VT_DECIMAL)
        *argument.pdecVal = value.decVal;
    else
        std::memcpy(argument.byref, &value.llVal, payloadSize(base));
    value = VARIANT{};
}

} // namespace kit
