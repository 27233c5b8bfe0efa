// Converters of interfaces: objects of generated classes on the host's side.
#pragma once

#include "conversion/arg_converter.h"

namespace axlink2 {

// What both kinds of interface share: an object goes out as the interface in its record, without a
// reference of its own until `retainForPut`. Nothing comes in: an interface needs an owner.
class ArgInterfaceConverter : public ArgVarConverter {
  public:
    hos::HOSValue fromVariant(const VARIANT& v) override;
    // Raises "VELMAR:class:InvalidHandle" when the value holds no object of a generated class.
    void toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing, bool byRef) override;
    void retainForPut(VARIANT* v) override;

  protected:
    ArgInterfaceConverter(VARTYPE vartype, const char* dataTypeName, VARTYPE sent)
        : ArgVarConverter(vartype, dataTypeName), sent_(sent) {}

  private:
    const VARTYPE sent_;
};

class ArgDispatchConverter : public ArgInterfaceConverter {
  public:
    explicit ArgDispatchConverter(VARTYPE vartype)
        : ArgInterfaceConverter(vartype, "handle", VT_DISPATCH) {}
};

class ArgUnknownConverter : public ArgInterfaceConverter {
  public:
    explicit ArgUnknownConverter(VARTYPE vartype)
        : ArgInterfaceConverter(vartype, "any", VT_UNKNOWN) {}
};

} // namespace axlink2
