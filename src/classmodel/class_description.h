// Descriptions of generated classes: one for a server, one for an interface that a member returned.
#pragma once

#include "classmodel/event_descriptor.h"
#include "classmodel/instance_record.h"
#include "host/class.h"
#include "platform/com.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace axlink2 {

class COMTypeDescription;

class COMBaseClassInfo : public hos::HOSClassInfo {
  public:
    // `server` is not counted: it is read during population only, and somebody else keeps it alive
    // until then.
    COMBaseClassInfo(const std::string& name, IDispatch* server)
        : className(name), server(server) {}

    const char* getName() const override { return className.c_str(); }
    // Adds all members, from the built-in methods and the server's type information.
    void populateClass(hos::HOSClass* target, void* extra) override;
    void* createInstanceData() override;
    void destroyInstanceData(hos::HOSInterface* object, void* record) override;
    bool classTrait1() const override { return true; }
    bool classTrait2() const override { return true; }
    bool classTrait3() const override { return true; }
    bool classTrait4() const override { return true; }
    bool classTrait5() const override { return true; }
    bool classTrait6() const override { return true; }
    // The members that only this kind of class gets.
    virtual void addClassSpecificMembers(hos::HOSClass* target, void* extra,
                                         COMTypeDescription& description) = 0;

    std::string className; // bare, in its namespace
    IDispatch* server;
    GUID sourceIID{}; // of the default source interface, all zero without one
    std::vector<std::unique_ptr<COMEventDescriptor>> eventDescriptors; // by ascending DISPID
    std::unordered_map<DISPID, COMEventDescriptor*> eventsByDispid;
};

// The class of a ProgID, in the namespace COM.
class COMCoclassClassInfo : public COMBaseClassInfo {
  public:
    // `name` is the encoded class name. Raises "VELMAR:COM:invalidprogid" when the ProgID that it
    // decodes to has no class.
    COMCoclassClassInfo(const std::string& name, IDispatch* server);

    void addClassSpecificMembers(hos::HOSClass* target, void* extra,
                                 COMTypeDescription& description) override;

    CLSID classId{};
};

// The class of an interface, in the namespace Interface.
class COMInterfaceClassInfo : public COMBaseClassInfo {
  public:
    using COMBaseClassInfo::COMBaseClassInfo;

    void addClassSpecificMembers(hos::HOSClass* target, void* extra,
                                 COMTypeDescription& description) override;
};

// The server of the object in element 0, which goes to a server as a value. Null when there is no
// object, and for one of a class that isn't generated, whose data is something else. Raises
// "VELMAR:class:InvalidHandle" for an object that has ended, "VELMAR:COM:invalidmethodname" for one
// that never had a server.
IDispatch* passedServerOf(const hxArray* objects);

} // namespace axlink2
