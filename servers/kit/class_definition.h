// A class of dispatch objects: its part of a type library, and what each member does.
#pragma once

#include "servers/kit/handler.h"
#include "servers/kit/type_spec.h"

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace kit {

class Library;

// The handlers of one DISPID; null where a kind of call isn't served.
struct Member {
    const Handler* method = nullptr;
    const Handler* get = nullptr;
    const Handler* put = nullptr;
    const Handler* putRef = nullptr;
};

// What a class adds to its library.
struct ClassParts {
    CoclassSpec coclass;
    std::vector<UserTypeSpec> types = {};
    std::vector<InterfaceSpec> interfaces = {}; // bases first
    IID mainInterface{};
    IID sourceInterface{}; // GUID_NULL when the class has no events
    bool hasTypeInfo = true;
};

// A handler and the calls that reach it.
struct BoundHandler {
    DISPID dispid;
    int kinds; // INVOKEKIND bits
    std::shared_ptr<const Handler> handler;
};

// Made once per class by a ClassBuilder and never changed after; threads may share it.
class ClassDefinition {
  public:
    // Names are those that GetIDsOfNames knows. Without a library the class has one of its own.
    ClassDefinition(ClassParts parts, std::vector<BoundHandler> handlers,
                    const std::vector<std::pair<std::string, DISPID>>& names,
                    const Library* library);
    ClassDefinition(const ClassDefinition&) = delete;

    const std::string& name() const { return parts_.coclass.name; }
    const ClassParts& parts() const { return parts_; }

    // The handler that a call means; null when the member is unknown or has none of that kind.
    const Handler* find(DISPID dispid, WORD flags, bool& isPut) const;

    // The DISPID of a name, without regard to case; DISPID_UNKNOWN when there is none.
    DISPID dispidOf(platform::OleView name) const;

    // The type information of the main interface and of the coclass, made on first use and kept.
    // Null for a class without. Raises ComFailure.
    ITypeInfo* typeInfo() const;
    ITypeInfo* classInfo() const;

  private:
    Member& memberFor(DISPID dispid);
    void makeTypeInfo() const;

    ClassParts parts_;
    std::vector<BoundHandler> handlers_;
    std::vector<Member> lowMembers_; // by DISPID
    std::unordered_map<DISPID, Member> otherMembers_;
    std::unordered_map<platform::OleString, DISPID> names_; // folded to lower case
    const Library* library_;
    mutable std::once_flag once_;
    mutable platform::ComPtr<ITypeInfo> typeInfo_;
    mutable platform::ComPtr<ITypeInfo> classInfo_;
};

// A type library that several classes share. It is made when the first of them needs it.
class Library {
  public:
    using DefinitionGetter = const ClassDefinition& (*)();

    Library(std::string name, const GUID& guid, std::vector<DefinitionGetter> classes)
        : name_(std::move(name)), guid_(guid), classes_(std::move(classes)) {}

    // The library; it lives as long as this object. Raises ComFailure.
    ITypeLib* get() const;

  private:
    std::string name_;
    GUID guid_;
    std::vector<DefinitionGetter> classes_;
    mutable std::once_flag once_;
    mutable platform::ComPtr<ITypeLib> library_;
};

} // namespace kit
