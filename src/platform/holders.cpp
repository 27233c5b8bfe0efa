// Copies that holders.h makes, with failures raised.
#include "platform/holders.h"

namespace platform {

namespace {

void raiseUnlessCopied(HRESULT result) {
    if (result == E_OUTOFMEMORY) throw std::bad_alloc();
    if (FAILED(result)) throw std::invalid_argument("a COM value of this kind can't be copied");
}

BSTR checked(BSTR text) {
    if (!text) throw std::bad_alloc();
    return text;
}

} // namespace

BSTR BstrTraits::duplicate(BSTR text) {
    if (!text) return nullptr;
    // By bytes: a BSTR may hold an odd number of them.
    return checked(
        SysAllocStringByteLen(reinterpret_cast<const char*>(text), SysStringByteLen(text)));
}

SAFEARRAY* SafeArrayTraits::duplicate(SAFEARRAY* array) {
    SAFEARRAY* copy = nullptr;
    if (array) raiseUnlessCopied(SafeArrayCopy(array, &copy));
    return copy;
}

VARIANT VariantTraits::duplicate(const VARIANT& value) {
    VARIANT copy{};
    raiseUnlessCopied(copyVariant(copy, value));
    return copy;
}

ScopedBstr makeBstr(OleView text) {
    if (text.size() > UINT32_MAX) throw std::bad_alloc();
    const auto units = static_cast<UINT>(text.size());
    return ScopedBstr::adopt(
        checked(SysAllocStringLen(text.data() ? text.data() : OLESTR(""), units)));
}

} // namespace platform
