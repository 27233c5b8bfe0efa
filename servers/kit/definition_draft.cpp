// Collecting members, numbering them, and turning them into a class definition.
#include "servers/kit/definition_draft.h"

#include <algorithm>

namespace kit {

namespace {

constexpr int putKinds = INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF;

bool isRetval(const ParamSpec& param) { return (param.flags & PARAMFLAG_FRETVAL) != 0; }

} // namespace

DefinitionDraft::DefinitionDraft(std::string className, const CLSID& clsid,
                                 std::string interfaceName, const IID& iid) {
    parts_.coclass.name = std::move(className);
    parts_.coclass.clsid = clsid;
    parts_.mainInterface = iid;
    main_.name = std::move(interfaceName);
    main_.iid = iid;
}

void DefinitionDraft::inherit(const DefinitionDraft& base) {
    main_.base = base.main_.name;
    std::ranges::copy(base.parts_.types, std::back_inserter(parts_.types));
    std::ranges::copy(base.parts_.interfaces, std::back_inserter(parts_.interfaces));
    parts_.interfaces.push_back(base.complete(base.main_, false));
    std::ranges::copy(base.inherited_, std::back_inserter(inherited_));
    std::ranges::copy(base.members_, std::back_inserter(inherited_));
    nextDispid_ = std::max(nextDispid_, base.nextDispid_);
}

void DefinitionDraft::implement(const DefinitionDraft& other) {
    parts_.interfaces.push_back(other.complete(other.main_, false));
    parts_.coclass.interfaces.push_back({other.main_.name});
}

void DefinitionDraft::openSource(std::string name, const IID& iid) {
    source_ = InterfaceSpec{.name = std::move(name), .iid = iid};
    parts_.sourceInterface = iid;
}

void DefinitionDraft::add(MemberDraft member) {
    member.spec.dispid = dispidFor(member);
    members_.push_back(std::move(member));
}

DISPID DefinitionDraft::dispidFor(const MemberDraft& member) {
    if (member.spec.dispid != DISPID_UNKNOWN) return member.spec.dispid;
    const bool event = member.role == MemberDraft::Role::Event;
    for (const auto& other : members_)
        if ((other.role == MemberDraft::Role::Event) == event &&
            other.spec.name == member.spec.name)
            return other.spec.dispid;
    return event ? nextEvent_++ : nextDispid_++;
}

void DefinitionDraft::change(const std::function<void(MemberDraft&)>& change) {
    for (std::size_t index = group_; index < members_.size(); ++index)
        change(members_[index]);
}

InterfaceSpec DefinitionDraft::complete(InterfaceSpec spec, bool events) const {
    const auto declare = [&](const MemberDraft& member) {
        if ((member.role == MemberDraft::Role::Event) != events) return;
        const FunctionSpec& function = member.spec;
        if (member.role == MemberDraft::Role::Variable)
            spec.variables.push_back(
                {function.name, function.dispid, function.result, function.flags});
        else
            spec.functions.push_back(function);
    };
    // A dispinterface extends nothing but IDispatch, so it repeats what it inherits.
    if (spec.kind == TKIND_DISPATCH && !spec.base.empty()) {
        spec.base.clear();
        std::ranges::for_each(inherited_, declare);
    }
    std::ranges::for_each(members_, declare);
    return spec;
}

std::unique_ptr<const ClassDefinition> DefinitionDraft::finish(const Library* library) {
    ClassParts parts = parts_;
    parts.interfaces.push_back(complete(main_, false));
    auto& listed = parts.coclass.interfaces;
    listed.insert(listed.begin(), {main_.name, IMPLTYPEFLAG_FDEFAULT});
    if (source_) {
        parts.interfaces.push_back(complete(*source_, true));
        listed.push_back({source_->name, IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE});
    }
    std::vector<BoundHandler> handlers;
    std::vector<std::pair<std::string, DISPID>> names;
    for (const auto* members : {&inherited_, &members_})
        for (const auto& member : *members) {
            if (!member.handler) continue;
            const bool variable = member.role == MemberDraft::Role::Variable;
            const bool readOnly = variable && member.spec.flags & VARFLAG_FREADONLY;
            const int kinds = readOnly   ? static_cast<int>(INVOKE_PROPERTYGET)
                              : variable ? INVOKE_PROPERTYGET | INVOKE_PROPERTYPUT
                                         : static_cast<int>(member.spec.kind);
            handlers.push_back({member.spec.dispid, kinds, member.handler});
            if (member.known) names.emplace_back(member.spec.name, member.spec.dispid);
        }
    return std::make_unique<const ClassDefinition>(std::move(parts), std::move(handlers), names,
                                                   library);
}

void declareValue(MemberDraft& member, const TypeSpec& type) {
    FunctionSpec& spec = member.spec;
    if (member.role == MemberDraft::Role::Function) {
        if (spec.kind & putKinds) {
            spec.params.back().type = type;
            return;
        }
        const auto result = std::ranges::find_if(spec.params, isRetval);
        if (result != spec.params.end()) {
            result->type = pointerTo(type);
            return;
        }
    }
    spec.result = type;
}

} // namespace kit
