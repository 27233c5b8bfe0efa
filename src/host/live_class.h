// Live classes: what a class description has been populated with.
#pragma once

#include "host/class.h"
#include "host/face.h"
#include "host/method_group.h"

#include <memory>
#include <unordered_map>

namespace velmar {

// A member with its name and, once somebody asked for it, its face.
template <class Info>
struct Member {
    std::unique_ptr<Info> info;
    hos::id name;
    hos::HOSInterfacePtr face;
};

class LiveClass final : public hos::HOSClass {
  public:
    // `package` is null for a class outside any.
    LiveClass(std::unique_ptr<hos::HOSClassInfo> info, hos::HOSPackage* package,
              const std::string& qualifiedName);
    ~LiveClass() override;

    hos::HOSInterfacePtr* newInstance(hos::HOSInterfacePtr* out) override;
    void prepareInstance(hos::HOSInterfacePtr object) override;
    void completeInstance(hos::HOSInterfacePtr object) override;
    const char* getName() const override { return info_->getName(); }
    hos::id* getID(hos::id* out) const override;
    hos::HOSClassInfo* getClassInfo() const override { return info_.get(); }
    hos::Enumeration<hos::id>* getSuperclassIDs(hos::Enumeration<hos::id>* out) override;
    hos::HOSPackage* getPackage() const override { return package_; }
    hos::HOSInterfacePtr* findClassProperty(hos::HOSInterfacePtr* out, hos::id name) override;
    hos::HOSIterator* findMethods(hos::HOSIterator* out, hos::id name) override;
    hos::HOSIterator* getProperties(hos::HOSIterator* out) override;
    hos::HOSIterator* getMethods(hos::HOSIterator* out) override;
    hos::HOSIterator* getEvents(hos::HOSIterator* out) override;
    void addSuperclass(hos::id* superclass, bool first, void* reserved, bool second) override;
    void addProperty(hos::HOSPropInfo* property) override;
    void addMethod(hos::HOSMethodInfo* method) override;
    void addEvent(hos::HOSEventInfo* event) override;

    hos::id classId() const { return id_; }
    const hos::HOSInterfacePtr& face() const { return face_; }
    // Adds the members, once. An attempt that fails leaves none, and the next one starts over.
    void populate();

    struct Property : Member<hos::HOSPropInfo> {
        const TypeEntry* type = nullptr; // found at the first access
    };
    // The property of that name, of this class or the nearest superclass; null without one.
    Property* property(hos::id name);
    // The callable methods of that name, those of superclasses behind; null without one.
    MethodGroup* methods(hos::id name);
    // The event of that name, of this class or a superclass; null without one.
    hos::HOSEventInfo* event(hos::id name);
    // The first method of that name whatever its access, of this class or the nearest superclass.
    hos::HOSMethodInfo* anyMethod(hos::id name);
    // The class's name written as a function.
    Hfunction_handle& constructor() { return *constructor_; }
    // Every method, superclasses' behind.
    std::vector<hos::HOSMethodInfo*> allMethods();

  private:
    void forgetMembers();
    void requirePopulating(const char* operation) const;
    std::vector<LiveClass*> superclasses() const;
    void collect(hos::id name, std::vector<hos::HOSMethodInfo*>& methods);

    enum class State { Empty, Populating, Populated };

    std::unique_ptr<hos::HOSClassInfo> info_;
    hos::HOSPackage* package_;
    hos::id id_;
    State state_ = State::Empty;
    hos::HOSInterfacePtr face_;
    std::vector<hos::id> superclasses_;
    std::vector<Property> properties_;
    std::vector<Member<hos::HOSMethodInfo>> methods_;
    std::vector<Member<hos::HOSEventInfo>> events_;
    std::unordered_map<hos::id, std::size_t> propertiesByName_;
    std::unordered_map<hos::id, boost::container::small_vector<std::size_t, 2>> methodsByName_;
    std::unordered_map<hos::id, std::unique_ptr<MethodGroup>> groups_; // made when asked for
    std::unique_ptr<Hfunction_handle> constructor_;
};

// The class of a name, null without one.
LiveClass* findLiveClass(hos::id name);

// The class by whose members an array of objects is handled: that of its first element, else its
// own; null for anything else.
LiveClass* classOfArray(const hxArray* array);

// The handle behind `LiveClass::constructor`.
std::unique_ptr<Hfunction_handle> makeConstructor(LiveClass& owner);

} // namespace velmar
