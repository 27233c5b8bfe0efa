// The two methods through which the host asks a generated class how to show an object.
#pragma once

#include "host/member_info.h"

namespace axlink2 {

class COMCustomDispMethodBase : public hos::HOSMethodInfo {
  public:
    hos::MemberAccess getMemberAccess() const override { return 1; }
    hos::HOSMethodSignature* getSignature() const override { return signature.get(); }
    bool doesMethodOverrideAllSignatures() const override { return true; }

  protected:
    explicit COMCustomDispMethodBase(const char* output);

    hos::HOSMethodSignaturePtr signature;
};

// One line: a tab, the id of the object's class, a line feed. The server isn't asked.
class COMGetHeaderMethodInfo : public COMCustomDispMethodBase {
  public:
    COMGetHeaderMethodInfo() : COMCustomDispMethodBase("unicodeString") {}
    const char* getName() const override { return "getHeader"; }
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

// Null: the host has no groups of properties to show.
class COMGetPropertyGroupsMethod : public COMCustomDispMethodBase {
  public:
    COMGetPropertyGroupsMethod() : COMCustomDispMethodBase("any") {}
    const char* getName() const override { return "getPropertyGroups"; }
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

} // namespace axlink2
