// Changing a VARIANT's type on the way to the host.
#include "conversion/variant_access.h"

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

LONG codeOf(const VARIANT& v) {
    const bool isReference = v.vt & VT_BYREF;
    if (!isReference || v.byref) {
        switch (v.vt & ~VT_BYREF) {
        case VT_ERROR:
        case VT_HRESULT:
        case VT_I4:
        case VT_UI4:
            return isReference ? *v.plVal : v.lVal;
        case VT_VARIANT:
            if (isReference && v.pvarVal->vt != v.vt) return codeOf(*v.pvarVal);
        }
    }
    return ReadAs(v, VT_I4)->lVal;
}

} // namespace axlink2
