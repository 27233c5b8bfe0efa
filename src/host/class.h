// Live classes, packages, dynamic properties, and the casts from handles to what they stand for.
#pragma once

#include "host/class_info.h"
#include "host/interface.h"
#include "host/member_info.h"

#include <string>

namespace hos {

// A live class. Operations that look at members populate the class first, once.
class HOSClass {
  public:
    // The class of that qualified name ("COM.Sample_Server_1"); null when there is none.
    static HOSClass* getClass(id name);

    // A new object, by `createInstanceData` of the description. `prepareInstance` and
    // `completeInstance` follow, in this order, with nothing between. Returns `out`.
    virtual HOSInterfacePtr* newInstance(HOSInterfacePtr* out) = 0;
    virtual void prepareInstance(HOSInterfacePtr object) = 0;
    virtual void completeInstance(HOSInterfacePtr object) = 0;
    // The bare name.
    virtual const char* getName() const = 0;
    // The interned qualified name. Returns `out`.
    virtual id* getID(id* out) const = 0;
    virtual HOSClassInfo* getClassInfo() const = 0;
    virtual Enumeration<id>* getSuperclassIDs(Enumeration<id>* out) = 0;
    // Null for a class outside any package.
    virtual HOSPackage* getPackage() const = 0;
    // The property of that exact name; a null handle when there is none. Returns `out`.
    virtual HOSInterfacePtr* findClassProperty(HOSInterfacePtr* out, id name) = 0;
    virtual HOSIterator* findMethods(HOSIterator* out, id name) = 0;
    // All of them, in the order in which they were added. Returns `out`.
    virtual HOSIterator* getProperties(HOSIterator* out) = 0;
    virtual HOSIterator* getMethods(HOSIterator* out) = 0;
    // Only during `populateClass`. The class takes ownership of members.
    virtual void addSuperclass(id* superclass, bool first, void* reserved, bool second) = 0;
    virtual void addProperty(HOSPropInfo* property) = 0;
    virtual void addMethod(HOSMethodInfo* method) = 0;
    virtual void addEvent(HOSEventInfo* event) = 0;
    virtual HOSIterator* getEvents(HOSIterator* out) = 0;

  protected:
    virtual ~HOSClass() = default;
};

// A namespace with its classes.
class HOSPackage {
  public:
    // Takes ownership. With a name that is known already the package stays as it is and the new
    // description is destroyed, so registration can be tried again.
    static void addNamespace(HOSNamespaceInfo* info);
    // Null when there is none.
    static HOSPackage* getNamespace(id name);

    virtual const char* getName() const = 0;
    // The class of that bare name; a null handle when there is none. Returns `out`.
    virtual HOSInterfacePtr* findClass(HOSInterfacePtr* out, const std::string& name, int) = 0;
    // Adds a class without populating it, and takes ownership of the description.
    virtual void addClass(HOSClassInfo* info, int, int) = 0;

  protected:
    virtual ~HOSPackage() = default;
};

// A name given to the object system.
using HOSString = id;

// A property of one object, kept by the host, with a value of type "any".
class HOSGenericProp : public HOSPropInfo {
  public:
    // A property without a value. `addDynamicProperty` takes ownership of it.
    static HOSGenericProp* createNewDynamicProp(HOSString name, id type, id group);

    ~HOSGenericProp() override;
    const char* getName() const override { return name_.c_str(); }
    HOSValue* getDefaultValue(HOSValue* out) const override;
    HOSDataTypePtr* getDataType(HOSDataTypePtr* out) const override;
    // The array that the property holds, not a copy: null at first. It stays the property's.
    HOSValue* getValue(HOSValue* out, HOSInterface* object) override;
    // Takes a shared copy of the array.
    void setValue(HOSInterface* object, HOSValue value) override;
    void destroyValue(HOSInterface* object, HOSValue value) override;

  private:
    HOSGenericProp(id name, id type);

    id name_;
    id type_;
    hxArray* value_ = nullptr;
};

// What a handle stands for; null when it stands for something else or is null.
HOSClass* hosiToClass(HOSInterface* handle);
HOSPropInfo* hosiToProp(HOSInterface* handle);
HOSMethodInfo* hosiToMethod(HOSInterface* handle);
HOSEventInfo* hosiToEvent(HOSInterface* handle);

struct HOSClassPtrHelper {
    static HOSClass* getObject(const HOSInterfacePtr& handle) { return hosiToClass(handle); }
};
struct HOSPropInfoPtrHelper {
    static HOSPropInfo* getObject(const HOSInterfacePtr& handle) { return hosiToProp(handle); }
};

} // namespace hos
