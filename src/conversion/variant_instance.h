// The value form of the data types "Variant", "SafeArray(...)" and "SafeArray Pointer(...)".
#pragma once

#include "conversion/reference_holders.h"
#include "platform/com.h"

#include <memory>

namespace axlink2 {

// Owns one VARIANT on the heap and a share of what it refers to.
class COMVariantInstance {
  public:
    // An empty one.
    COMVariantInstance() : variant(new VARIANT{}) {}
    // A copy of `v`; empty when it can't be copied.
    explicit COMVariantInstance(const VARIANT& v) : COMVariantInstance() {
        platform::copyVariant(*variant, v);
    }
    COMVariantInstance(const COMVariantInstance&) = delete;
    COMVariantInstance& operator=(const COMVariantInstance&) = delete;
    virtual ~COMVariantInstance() { platform::clearVariant(*variant); }

    const std::unique_ptr<VARIANT> variant;
    std::shared_ptr<ReferenceHolders> references;
};

} // namespace axlink2
