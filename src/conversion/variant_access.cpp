// Changing a VARIANT's type on the way to the host.
#include "conversion/variant_access.h"

#include "platform/guarded_call.h"
#include "platform/holders.h"

namespace axlink2 {

void ReadAs::change(const VARIANT& v, VARTYPE target) {
    platform::ScopedVariant source;
    platform::ScopedVariant result;
    HRESULT hr = platform::copyVariant(*source.put(), v);
    if (SUCCEEDED(hr)) hr = platform::changeVariant(*result.put(), source.get(), target);
    if (FAILED(hr)) _com_issue_error(hr);
    copy_ = result.detach();
    value_ = &copy_;
}

namespace {

constexpr bool isCode(int vt) {
    return vt == VT_ERROR || vt == VT_HRESULT || vt == VT_I4 || vt == VT_UI4;
}

} // namespace

LONG codeOf(const VARIANT& v) {
    if (isCode(v.vt)) return v.lVal;
    if (v.vt == (VT_BYREF | VT_VARIANT)) {
        platform::ScopedVariant referred;
        const HRESULT hr = platform::copyReferred(*referred.inOut(), v);
        if (FAILED(hr)) _com_issue_error(hr);
        return codeOf(referred.get());
    }
    if (!(v.vt & VT_BYREF) || !isCode(v.vt & ~VT_BYREF)) return ReadAs(v, VT_I4)->lVal;
    LONG code = 0;
    if (!v.plVal || platform::guarded([&] { code = *v.plVal; })) _com_issue_error(E_POINTER);
    return code;
}

} // namespace axlink2
