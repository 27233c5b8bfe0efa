// Changing a VARIANT's type on the way to the host.
#include "conversion/variant_access.h"

#include "platform/holders.h"

namespace axlink2 {

void ReadAs::change(const VARIANT& v, VARTYPE target) {
    platform::ScopedVariant source;
    platform::ScopedVariant result;
    HRESULT hr = VariantCopy(source.put(), &v);
    if (SUCCEEDED(hr)) hr = VariantChangeType(result.put(), source.inOut(), 0, target);
    if (FAILED(hr)) _com_issue_error(hr);
    copy_ = result.detach();
    value_ = &copy_;
}

} // namespace axlink2
