// The property members of generated classes: one read or write is one IDispatch::Invoke.
#pragma once

#include "comruntime/type_description.h"
#include "conversion/arg_converter.h"
#include "host/member_info.h"

#include <cstdint>
#include <string>

namespace axlink2 {

class COMIDispPropInfo : public hos::HOSPropInfo {
  public:
    // Copies what it needs from `entry`, for which `isProperty` holds and `isMethod` doesn't.
    COMIDispPropInfo(DISPID dispid, const COMMemberEntry& entry);

    const char* getName() const override { return name.c_str(); }
    hos::HOSValue* getDefaultValue(hos::HOSValue* out) const override;
    hos::HOSDataTypePtr* getDataType(hos::HOSDataTypePtr* out) const override;
    hos::MemberAccess getGetAccess() const override;
    hos::MemberAccess getSetAccess() const override;
    bool propertyTrait1() const override { return false; }
    bool propertyTrait2() const override { return false; }
    bool propertyTrait3() const override { return false; }
    bool propertyTrait4() const override { return true; }
    bool propertyTrait5() const override { return false; }
    bool propertyTrait6() const override { return false; }
    bool propertyTrait7() const override { return false; }
    bool propertyTrait8() const override { return false; }
    bool propertyTrait9() const override { return false; }
    bool propertyTrait10() const override { return true; }
    bool propertyTrait11() const override { return false; }
    bool propertyTrait12() const override { return false; }
    // Raises the error of a failed call, also of a VT_ERROR that the server gave as the value.
    hos::HOSValue* getValue(hos::HOSValue* out, hos::HOSInterface* object) override;
    // A plain put where the property has one, else a put by reference. Raises
    // "VELMAR:COM:invalidargumenttype" for a property whose type isn't known.
    void setValue(hos::HOSInterface* object, hos::HOSValue value) override;
    void destroyValue(hos::HOSInterface* object, hos::HOSValue value) override;
    bool propertyTrait13() const override { return false; }

  private:
    std::string name;
    DISPID dispid;
    ArgVarConverter* converter;
    std::uint16_t access; // DISPATCH_PROPERTYGET, -PUT and -PUTREF: the halves that are there
};

} // namespace axlink2
