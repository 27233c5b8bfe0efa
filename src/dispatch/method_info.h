// The method members of generated classes: one host call is one IDispatch::Invoke.
#pragma once

#include "comruntime/type_description.h"
#include "dispatch/call_arguments.h"
#include "host/class.h"

#include <string>
#include <vector>

namespace axlink2 {

// A method, or a property that can't be read without an argument.
class COMIDispMethodInfo : public hos::HOSMethodInfo {
  public:
    // Declares the member to `owner`; copies what it needs from `entry`, for which `isMethod`
    // holds.
    COMIDispMethodInfo(hos::HOSClass* owner, DISPID dispid, const COMMemberEntry& entry);

    const char* getName() const override { return name.c_str(); }
    hos::HOSMethodSignature* getSignature() const override { return signature.get(); }
    // Outputs are the result, then the [out] parameters from left to right. Raises
    // "VELMAR:class:InvalidHandle", what the converters raise, and the error of a failed call.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;

  private:
    void declareSignature(const std::vector<std::string>& names);
    bool hasResult() const { return resultConverter->vartype != VT_VOID; }
    bool takesAnyNumber() const { return !arguments.empty() && arguments.back().variable; }

    hos::HOSClass* ownerClass;
    std::string name;
    hos::HOSMethodSignaturePtr signature;
    DISPID dispid;
    ArgVarConverter* resultConverter;
    std::vector<COMArgInfo> arguments;
    WORD invokeKind;
};

} // namespace axlink2
