// Populating a class and answering questions about its members.
#include "host/live_class.h"

#include "host/host_messages.h"
#include "host/live_object.h"

#include <utility>

namespace velmar {
namespace {

// The handle of a member, made when it is first asked for.
template <class Info>
const hos::HOSInterfacePtr& faceOf(Member<Info>& member, hos::FaceKind kind) {
    if (!member.face) member.face = new hos::Face(kind, member.info.get());
    return member.face;
}

template <class Members>
hos::HOSIterator facesOf(Members& members, hos::FaceKind kind) {
    std::vector<hos::HOSInterfacePtr> faces;
    faces.reserve(members.size());
    for (auto& member : members)
        faces.push_back(faceOf(member, kind));
    return hos::HOSIterator(std::move(faces));
}

} // namespace

LiveClass::LiveClass(std::unique_ptr<hos::HOSClassInfo> info, hos::HOSPackage* package,
                     const std::string& qualifiedName)
    : info_(std::move(info)), package_(package),
      id_(hos::internal::makeInterned(std::string(qualifiedName))),
      face_(new hos::Face(hos::FaceKind::Class, static_cast<hos::HOSClass*>(this))),
      constructor_(makeConstructor(*this)) {}

LiveClass::~LiveClass() = default;

hos::id* LiveClass::getID(hos::id* out) const {
    *out = id_;
    return out;
}

void LiveClass::populate() {
    if (state_ != State::Empty) return;
    state_ = State::Populating;
    try {
        info_->populateClass(this, nullptr);
        state_ = State::Populated;
    } catch (...) {
        forgetMembers();
        state_ = State::Empty;
        throw;
    }
}

void LiveClass::forgetMembers() {
    superclasses_.clear();
    propertiesByName_.clear();
    methodsByName_.clear();
    groups_.clear();
    properties_.clear();
    methods_.clear();
    events_.clear();
}

hos::HOSInterfacePtr* LiveClass::newInstance(hos::HOSInterfacePtr* out) {
    populate();
    if (info_->isAbstract() || info_->classIsAbstract()) fail(keys::AbstractClass, id_.str());
    *out = new LiveObject(*this);
    return out;
}

void LiveClass::prepareInstance(hos::HOSInterfacePtr object) { requireAlive(object); }

void LiveClass::completeInstance(hos::HOSInterfacePtr object) { requireAlive(object); }

hos::Enumeration<hos::id>* LiveClass::getSuperclassIDs(hos::Enumeration<hos::id>* out) {
    populate();
    *out = hos::Enumeration<hos::id>(superclasses_);
    return out;
}

std::vector<LiveClass*> LiveClass::superclasses() const {
    std::vector<LiveClass*> found;
    for (hos::id name : superclasses_)
        if (LiveClass* live = findLiveClass(name); live && live != this) found.push_back(live);
    return found;
}

LiveClass::Property* LiveClass::property(hos::id name) {
    populate();
    const auto at = propertiesByName_.find(name);
    if (at != propertiesByName_.end()) return &properties_[at->second];
    for (LiveClass* superclass : superclasses())
        if (Property* found = superclass->property(name)) return found;
    return nullptr;
}

void LiveClass::collect(hos::id name, std::vector<hos::HOSMethodInfo*>& found) {
    populate();
    const auto at = methodsByName_.find(name);
    if (at != methodsByName_.end()) {
        bool overridesAll = false;
        for (std::size_t index : at->second) {
            found.push_back(methods_[index].info.get());
            overridesAll = overridesAll || found.back()->doesMethodOverrideAllSignatures();
        }
        if (overridesAll) return;
    }
    for (LiveClass* superclass : superclasses())
        superclass->collect(name, found);
}

MethodGroup* LiveClass::methods(hos::id name) {
    if (const auto at = groups_.find(name); at != groups_.end()) return at->second.get();
    std::vector<hos::HOSMethodInfo*> found;
    collect(name, found);
    if (found.empty()) return nullptr;
    std::vector<MethodPlan> plans;
    plans.reserve(found.size());
    for (hos::HOSMethodInfo* method : found)
        plans.emplace_back(*method);
    auto group = std::make_unique<MethodGroup>(name, std::move(plans));
    if (!group->isCallable() || state_ == State::Populating) return nullptr;
    return (groups_[name] = std::move(group)).get();
}

hos::HOSMethodInfo* LiveClass::anyMethod(hos::id name) {
    std::vector<hos::HOSMethodInfo*> found;
    collect(name, found);
    return found.empty() ? nullptr : found.front();
}

std::vector<hos::HOSMethodInfo*> LiveClass::allMethods() {
    populate();
    std::vector<hos::HOSMethodInfo*> all;
    for (const auto& member : methods_)
        all.push_back(member.info.get());
    for (LiveClass* superclass : superclasses())
        for (hos::HOSMethodInfo* method : superclass->allMethods())
            all.push_back(method);
    return all;
}

hos::HOSEventInfo* LiveClass::event(hos::id name) {
    populate();
    for (const auto& member : events_)
        if (member.name == name) return member.info.get();
    for (LiveClass* superclass : superclasses())
        if (hos::HOSEventInfo* found = superclass->event(name)) return found;
    return nullptr;
}

hos::HOSInterfacePtr* LiveClass::findClassProperty(hos::HOSInterfacePtr* out, hos::id name) {
    Property* found = property(name);
    *out = found ? faceOf(*found, hos::FaceKind::Property) : hos::HOSInterfacePtr();
    return out;
}

hos::HOSIterator* LiveClass::findMethods(hos::HOSIterator* out, hos::id name) {
    populate();
    std::vector<hos::HOSInterfacePtr> faces;
    if (const auto at = methodsByName_.find(name); at != methodsByName_.end())
        for (std::size_t index : at->second)
            faces.push_back(faceOf(methods_[index], hos::FaceKind::Method));
    for (LiveClass* superclass : superclasses()) {
        hos::HOSIterator inherited;
        superclass->findMethods(&inherited, name);
        while (inherited.hasMoreElements())
            faces.push_back(inherited.nextElement());
    }
    *out = hos::HOSIterator(std::move(faces));
    return out;
}

hos::HOSIterator* LiveClass::getProperties(hos::HOSIterator* out) {
    populate();
    *out = facesOf(properties_, hos::FaceKind::Property);
    return out;
}

hos::HOSIterator* LiveClass::getMethods(hos::HOSIterator* out) {
    populate();
    *out = facesOf(methods_, hos::FaceKind::Method);
    return out;
}

hos::HOSIterator* LiveClass::getEvents(hos::HOSIterator* out) {
    populate();
    *out = facesOf(events_, hos::FaceKind::Event);
    return out;
}

void LiveClass::requirePopulating(const char* operation) const {
    if (state_ != State::Populating) fail(keys::ClassIsClosed, std::string(operation), id_.str());
}

void LiveClass::addSuperclass(hos::id* superclass, bool, void*, bool) {
    requirePopulating("addSuperclass");
    superclasses_.push_back(*superclass);
}

void LiveClass::addProperty(hos::HOSPropInfo* property) {
    std::unique_ptr<hos::HOSPropInfo> owned(property);
    requirePopulating("addProperty");
    const hos::id name = hos::internal::makeInterned(owned->getName());
    properties_.push_back({{std::move(owned), name, {}}, nullptr});
    propertiesByName_.try_emplace(name, properties_.size() - 1);
}

void LiveClass::addMethod(hos::HOSMethodInfo* method) {
    std::unique_ptr<hos::HOSMethodInfo> owned(method);
    requirePopulating("addMethod");
    const hos::id name = hos::internal::makeInterned(owned->getName());
    methods_.push_back({std::move(owned), name, {}});
    methodsByName_[name].push_back(methods_.size() - 1);
}

void LiveClass::addEvent(hos::HOSEventInfo* event) {
    std::unique_ptr<hos::HOSEventInfo> owned(event);
    requirePopulating("addEvent");
    const hos::id name = hos::internal::makeInterned(owned->getName());
    events_.push_back({std::move(owned), name, {}});
}

} // namespace velmar
