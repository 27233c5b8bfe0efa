// A class definition in the making: the untyped half of ClassBuilder.
#pragma once

#include "servers/kit/class_definition.h"

#include <functional>

namespace kit {

// One FUNCDESC or VARDESC to be, with its handler.
struct MemberDraft {
    enum class Role { Function, Variable, Event };

    FunctionSpec spec; // of a variable: name, dispid, result and flags only
    Role role = Role::Function;
    std::shared_ptr<const Handler> handler = nullptr; // null for an event
    bool known = true;                                // to GetIDsOfNames
};

class DefinitionDraft {
  public:
    DefinitionDraft(std::string className, const CLSID& clsid, std::string interfaceName,
                    const IID& iid);

    // Members and handlers of a base interface; automatic DISPIDs go on from there.
    void inherit(const DefinitionDraft& base);
    // A further interface of the coclass, without handlers.
    void implement(const DefinitionDraft& other);
    // The default source interface, to which events are added.
    void openSource(std::string name, const IID& iid);

    void addType(UserTypeSpec type) { parts_.types.push_back(std::move(type)); }

    // A new group of members, to which what follows applies.
    void beginGroup() { group_ = members_.size(); }
    // Adds to the group. A member without a DISPID gets that of the member of the same name, or
    // the next free one.
    void add(MemberDraft member);
    // Changes the members of the last group.
    void change(const std::function<void(MemberDraft&)>& change);

    InterfaceSpec& mainInterface() { return main_; }
    void dropTypeInfo() { parts_.hasTypeInfo = false; }

    std::unique_ptr<const ClassDefinition> finish(const Library* library);

  private:
    // An interface with the members of the draft that belong to it.
    InterfaceSpec complete(InterfaceSpec spec, bool events) const;
    DISPID dispidFor(const MemberDraft& member);

    ClassParts parts_;
    InterfaceSpec main_;
    std::optional<InterfaceSpec> source_;
    std::vector<MemberDraft> inherited_;
    std::vector<MemberDraft> members_;
    std::size_t group_ = 0;
    DISPID nextDispid_ = 1;
    DISPID nextEvent_ = 1;
};

// Sets the declared type of a result, of a put's value, of a variable.
void declareValue(MemberDraft& member, const TypeSpec& type);

} // namespace kit
