// Converters of VARIANT and SAFEARRAY parameters. Their value form is a COMVariantInstance.
#pragma once

#include "conversion/arg_converter.h"

#include <string>

namespace axlink2 {

// The word for an element type in the names of array types: "double", "string", "Variant".
std::string vartypeName(VARTYPE vt);

// What the three share: a value comes in as a copy, or, where the VARIANT may be emptied, as
// itself.
class ArgInstanceConverter : public ArgVarConverter {
  public:
    hos::HOSValue fromVariant(const VARIANT& v) override;
    hos::HOSValue fromVariantFor(VARIANT& v, const hos::HOSInterfacePtr& owner,
                                 const char* memberName) override;

  protected:
    using ArgVarConverter::ArgVarConverter;
};

// Any value. Making one registers the host type "Variant".
class ArgVariantConverter : public ArgInstanceConverter {
  public:
    explicit ArgVariantConverter(VARTYPE vartype);

    void toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing, bool byRef) override;
};

// An array that goes in. Its host type is registered when it is first asked for.
class ArgSafeArrayConverter : public ArgInstanceConverter {
  public:
    explicit ArgSafeArrayConverter(VARTYPE elementType) : ArgInstanceConverter(elementType, "") {}

    void toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing, bool byRef) override;
    hos::HOSDataTypePtr getDataType() override;
};

// An array that comes out, or goes both ways: the server sees a slot that it may put another array
// into. An empty double is an array of none.
class ArgRefSafeArrayConverter : public ArgInstanceConverter {
  public:
    explicit ArgRefSafeArrayConverter(VARTYPE elementType)
        : ArgInstanceConverter(static_cast<VARTYPE>(elementType | VT_ARRAY), ""),
          elementVartype(elementType) {}

    void toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing, bool byRef) override;
    hos::HOSDataTypePtr getDataType() override;

    const VARTYPE elementVartype;
};

} // namespace axlink2
