// Arguments and outputs of another kind than declared.
#include "servers/kit/parameters.h"

#include "platform/element_size.h"

namespace kit {

namespace {

// VT_HRESULT is no kind that anything converts to; its value is that of a VT_I4.
VARTYPE conversionTarget(VARTYPE vt) { return vt == VT_HRESULT ? static_cast<VARTYPE>(VT_I4) : vt; }

// Of what no array can hold, the payload is a pointer.
std::size_t payloadSize(VARTYPE vt) {
    const ULONG size = platform::elementSize(conversionTarget(vt));
    return size ? size : sizeof(void*);
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
