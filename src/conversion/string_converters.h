// Converters of what is text on the host's side.
#pragma once

#include "conversion/arg_converter.h"

namespace axlink2 {

// Text, and the types that travel as text: dates, decimals, C strings. They go out as VT_BSTR, and
// the server or its dispatch layer makes of them what it needs.
class ArgStringConv : public ArgVarConverter {
  public:
    explicit ArgStringConv(VARTYPE vartype) : ArgVarConverter(vartype, "unicodeString") {}

    hos::HOSValue fromVariant(const VARIANT& v) override;
    void toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing, bool byRef) override;
};

// An error code: "ActiveX VT_ERROR: " and the system's text of it.
class ArgErrorConv : public ArgStringConv {
  public:
    using ArgStringConv::ArgStringConv;

    hos::HOSValue fromVariant(const VARIANT& v) override;
};

} // namespace axlink2
