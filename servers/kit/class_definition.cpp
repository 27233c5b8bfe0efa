// Looking members up, and making the type information that describes them.
#include "servers/kit/class_definition.h"

#include "servers/kit/type_library.h"

#include <algorithm>

namespace kit {

namespace {

// DISPIDs below this are looked up by index.
constexpr DISPID lowDispids = 4096;

platform::OleString folded(platform::OleView name) {
    platform::OleString result(name);
    for (auto& unit : result)
        if (unit >= OLECHAR('A') && unit <= OLECHAR('Z')) unit = static_cast<OLECHAR>(unit + 32);
    return result;
}

// Appends the parts of one class; types and interfaces that two classes share are written once.
template <class Spec>
void append(std::vector<Spec>& all, const std::vector<Spec>& more) {
    for (const auto& spec : more)
        if (std::ranges::find(all, spec.name, &Spec::name) == all.end()) all.push_back(spec);
}

LibrarySpec describe(std::string name, const GUID& guid,
                     const std::vector<const ClassParts*>& classes) {
    LibrarySpec spec{.name = std::move(name), .guid = guid};
    for (const ClassParts* parts : classes) {
        append(spec.types, parts->types);
        append(spec.interfaces, parts->interfaces);
        spec.coclasses.push_back(parts->coclass);
    }
    return spec;
}

// A library's identity for a class that has it to itself: its CLSID with one bit turned.
GUID ownLibraryGuid(const CLSID& clsid) {
    GUID guid = clsid;
    guid.Data1 ^= 0x80000000u;
    return guid;
}

} // namespace

ClassDefinition::ClassDefinition(ClassParts parts, std::vector<BoundHandler> handlers,
                                 const std::vector<std::pair<std::string, DISPID>>& names,
                                 const Library* library)
    : parts_(std::move(parts)), handlers_(std::move(handlers)), library_(library) {
    for (const auto& bound : handlers_) {
        Member& member = memberFor(bound.dispid);
        if (bound.kinds & INVOKE_FUNC) member.method = bound.handler.get();
        if (bound.kinds & INVOKE_PROPERTYGET) member.get = bound.handler.get();
        if (bound.kinds & INVOKE_PROPERTYPUT) member.put = bound.handler.get();
        if (bound.kinds & INVOKE_PROPERTYPUTREF) member.putRef = bound.handler.get();
    }
    for (const auto& [name, dispid] : names)
        names_.emplace(folded(platform::toOle(name)), dispid);
}

Member& ClassDefinition::memberFor(DISPID dispid) {
    if (dispid < 0 || dispid >= lowDispids) return otherMembers_[dispid];
    const auto index = static_cast<std::size_t>(dispid);
    if (index >= lowMembers_.size()) lowMembers_.resize(index + 1);
    return lowMembers_[index];
}

const Handler* ClassDefinition::find(DISPID dispid, WORD flags, bool& isPut) const {
    const auto index = static_cast<std::size_t>(static_cast<ULONG>(dispid));
    const Member* member = nullptr;
    if (index < lowMembers_.size()) {
        member = &lowMembers_[index];
    } else {
        const auto found = otherMembers_.find(dispid);
        if (found == otherMembers_.end()) return nullptr;
        member = &found->second;
    }
    isPut = false;
    if (flags & DISPATCH_METHOD && member->method) return member->method;
    if (flags & DISPATCH_PROPERTYGET && member->get) return member->get;
    isPut = true;
    if (flags & DISPATCH_PROPERTYPUT && member->put) return member->put;
    if (flags & DISPATCH_PROPERTYPUTREF && member->putRef) return member->putRef;
    return nullptr;
}

DISPID ClassDefinition::dispidOf(platform::OleView name) const {
    const auto found = names_.find(folded(name));
    return found == names_.end() ? DISPID_UNKNOWN : found->second;
}

ITypeInfo* ClassDefinition::typeInfo() const {
    if (!parts_.hasTypeInfo) return nullptr;
    std::call_once(once_, [this] { makeTypeInfo(); });
    return typeInfo_.get();
}

ITypeInfo* ClassDefinition::classInfo() const { return typeInfo() ? classInfo_.get() : nullptr; }

void ClassDefinition::makeTypeInfo() const {
    platform::ComPtr<ITypeLib> library;
    if (library_)
        library = platform::ComPtr<ITypeLib>::borrow(library_->get());
    else
        library = makeTypeLibrary(
            describe(name() + "Lib", ownLibraryGuid(parts_.coclass.clsid), {&parts_}));
    check(library->GetTypeInfoOfGuid(parts_.coclass.clsid, classInfo_.put()));
    check(library->GetTypeInfoOfGuid(parts_.mainInterface, typeInfo_.put()));
}

ITypeLib* Library::get() const {
    std::call_once(once_, [this] {
        std::vector<const ClassParts*> parts;
        for (const auto getter : classes_)
            parts.push_back(&getter().parts());
        library_ = makeTypeLibrary(describe(name_, guid_, parts));
    });
    return library_.get();
}

} // namespace kit
