// Converters of enumerations and codes, of no value, and of types that can't be converted.
#pragma once

#include "conversion/arg_converter.h"

namespace axlink2 {

// A constant of an enumeration, by the host type that has the enumeration's name.
class ArgEnumConverter : public ArgVarConverter {
  public:
    explicit ArgEnumConverter(const char* enumeration) : ArgVarConverter(VT_I4, enumeration) {}

    hos::HOSValue fromVariant(const VARIANT& v) override;
    void toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing, bool byRef) override;
};

// An HRESULT: the plain 32-bit code in both directions. No VARIANT of a call holds a VT_HRESULT, so
// it goes out as the VT_ERROR that servers take for one.
class ArgHResultConv : public ArgVarConverter {
  public:
    explicit ArgHResultConv(VARTYPE vartype) : ArgVarConverter(vartype, "int32 scalar") {}

    hos::HOSValue fromVariant(const VARIANT& v) override;
    void toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing, bool byRef) override;
};

// No value.
class ArgVoidConverter : public ArgVarConverter {
  public:
    explicit ArgVoidConverter(VARTYPE vartype) : ArgVarConverter(vartype, "double") {}

    hos::HOSValue fromVariant(const VARIANT&) override { return hos::HOSValue(); }
    void toVariant(hos::HOSValue, VARIANT*, VARIANT*, bool) override {}
};

// Lets a member of an unknown type be declared. Its use raises "VELMAR:COM:invalidargumenttype".
class ArgUnsupportedConverter : public ArgVarConverter {
  public:
    ArgUnsupportedConverter() : ArgVarConverter(VT_EMPTY, "double scalar") {}

    hos::HOSValue fromVariant(const VARIANT& v) override;
    void toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing, bool byRef) override;
};

} // namespace axlink2
