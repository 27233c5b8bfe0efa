// The fixed methods of generated classes: what every one of them shares.
#pragma once

#include "host/class.h"

#include <cstddef>
#include <span>
#include <string>

namespace axlink2 {

// One call on the signature, made while a built-in method declares itself.
struct SignatureStep {
    enum Kind { Input, Output, OptionalInputs, VariableInput, VariableOutput };
    Kind kind;
    const char* type = nullptr;  // Input, Output; `ownClass` for the generated class itself
    const char* label = nullptr; // Input only
    std::size_t count = 0;       // OptionalInputs only
};

inline constexpr const char* ownClass = "";

// A method's name, null for the class's own, what it does when the server has a method of that name
// that fits the call, too, and its signature step by step.
struct BuiltinDeclaration {
    const char* name;
    hos::Precedence precedence;
    std::span<const SignatureStep> steps;
};

class COMBuiltinMethodInfo : public hos::HOSMethodInfo {
  public:
    const char* getName() const override { return name.c_str(); }
    hos::HOSMethodSignature* getSignature() const override { return signature.get(); }
    hos::Precedence getPrecedence() const override { return precedence; }

  protected:
    COMBuiltinMethodInfo(hos::HOSClass* owner, const BuiltinDeclaration& declaration);

    std::string name;
    hos::HOSClass* ownerClass;
    const hos::Precedence precedence;
    hos::HOSMethodSignaturePtr signature;
};

// A method that can be called and isn't listed.
class HiddenBuiltinMethodInfo : public COMBuiltinMethodInfo {
  public:
    bool isVisible() const override { return false; }

  protected:
    using COMBuiltinMethodInfo::COMBuiltinMethodInfo;
};

// The base of the application data members.
class COMAppdataBaseMethodInfo : public HiddenBuiltinMethodInfo {
  protected:
    using HiddenBuiltinMethodInfo::HiddenBuiltinMethodInfo;
};

// The base of the method that `declaration` describes.
template <const BuiltinDeclaration& declaration, class Base = COMBuiltinMethodInfo>
class Builtin : public Base {
  public:
    explicit Builtin(hos::HOSClass* owner) : Base(owner, declaration) {}
};

} // namespace axlink2
