// Converters of interfaces: objects of generated classes on the host's side.
#pragma once

#include "conversion/arg_converter.h"

namespace axlink2 {

// What both kinds of interface share: an object goes out as the interface in its record, without a
// reference of its own until `retainForPut`, and no object as a null interface. An interface comes
// in as a new object, which needs the member that it came from: without one it is a null value.
class ArgInterfaceConverter : public ArgVarConverter {
  public:
    hos::HOSValue fromVariant(const VARIANT& v) override;
    // Takes the interface over. A null value for a null interface and for what is none; behind a
    // VT_PTR, which may point at anything, what is none is converted like any VARIANT.
    hos::HOSValue fromVariantFor(VARIANT& v, const hos::HOSInterfacePtr& owner,
                                 const char* memberName) override;
    // Raises "VELMAR:class:InvalidHandle" for an object that has ended and for what is no object of
    // a generated class, "VELMAR:COM:invalidmethodname" for an object without server.
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
