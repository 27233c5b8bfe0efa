// Descriptions of methods, properties and events that a module hands to a class. The host calls
// their virtual operations by position: none may be removed or moved.
#pragma once

#include "host/data_type.h"
#include "host/interface.h"
#include "host/value.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace hos {

// Who may use a member. 0 lets every program, 2 none; 1 lies between.
using MemberAccess = int;

// What a method takes and gives, in names of data types.
class HOSMethodSignature {
  public:
    // A new, empty signature.
    static std::unique_ptr<HOSMethodSignature> createMethodSignature();

    virtual ~HOSMethodSignature() = default;
    // The declared names, in declaration order. Returns `out`.
    virtual Enumeration<id>* getInputs(Enumeration<id>* out) const = 0;
    virtual Enumeration<id>* getOutputs(Enumeration<id>* out) const = 0;
    virtual void addInput(id type) = 0;
    virtual void addInput(id type, id label) = 0; // which only people read
    virtual void addOutput(id type) = 0;
    // The last declared input may repeat, or be absent.
    virtual void setVariableInput() = 0;
    // The last `count` inputs may be left out.
    virtual void setOptionalInputCount(std::size_t count) = 0;
    // The last declared output may repeat.
    virtual void setVariableOutput() = 0;
    virtual void addOutput(id type, id label) = 0;
};

using HOSMethodSignaturePtr = std::unique_ptr<HOSMethodSignature>;

// Among methods of one name the first of these whose inputs fit a call is called, whatever form is
// closer; within one of them the closest form is.
enum class Precedence { First, Usual, Last };

class HOSMethodInfo {
  public:
    // Descriptions that a class takes over come from the host's own heap.
    static void* operator new(std::size_t size);
    static void operator delete(void* block);

    HOSMethodInfo() = default;
    HOSMethodInfo(const HOSMethodInfo&) = delete;
    HOSMethodInfo& operator=(const HOSMethodInfo&) = delete;

    virtual ~HOSMethodInfo() = default;
    virtual const char* getName() const = 0;
    virtual const char* getDescription() const { return ""; }
    virtual bool isLookupScope() const { return false; }
    virtual const char* getDetailedDescription() const { return ""; }
    virtual MemberAccess getMemberAccess() const { return 0; }
    virtual void* getExtendedAccess() const { return nullptr; }
    virtual HOSMethodSignature* getSignature() const = 0;
    // Runs the method. `inputs[0]` is the object array; the others are in the value form of their
    // declared types and stay the caller's. On entry `*outputCount` is the number of outputs asked
    // for, on return the number produced; `outputs` has room for every declared output and at
    // least one, null at first; what stands in it belongs to the caller, also when this raises.
    virtual void invoke(const HOSClient* client, std::uint32_t* outputCount, HOSValue* outputs,
                        std::int32_t inputCount, HOSValue* inputs) = 0;
    virtual bool isFirstArgDispatch() const { return true; }
    virtual bool isStatic() const { return false; }
    virtual bool isAbstract() const { return false; }
    virtual bool isSealed() const { return false; }
    virtual bool isVisible() const { return true; }
    virtual bool isDestructible() const { return true; }
    virtual bool isLocked() const { return false; }
    virtual bool isExplicit() const { return false; }
    virtual bool doesMethodOverrideAllSignatures() const { return false; }
    virtual Precedence getPrecedence() const { return Precedence::Usual; }
};

class HOSPropInfo {
  public:
    HOSPropInfo() = default;
    HOSPropInfo(const HOSPropInfo&) = delete;
    HOSPropInfo& operator=(const HOSPropInfo&) = delete;

    virtual ~HOSPropInfo() = default;
    virtual const char* getName() const = 0;
    virtual const char* getDescription() const { return ""; }
    virtual const char* getDetailedDescription() const { return ""; }
    virtual HOSValue* getDefaultValue(HOSValue* out) const = 0;
    virtual HOSDataTypePtr* getDataType(HOSDataTypePtr* out) const = 0;
    virtual MemberAccess getGetAccess() const { return 0; }
    virtual void* getExtendedGetAccess() const { return nullptr; }
    virtual MemberAccess getSetAccess() const { return 0; }
    virtual void* getExtendedSetAccess() const { return nullptr; }
    virtual bool isSealed() const { return false; }
    virtual bool hasInternalDefault() const { return false; }
    virtual bool propertyTrait1() const { return false; }
    virtual bool isDefaultAllowed() const { return false; }
    virtual bool propertyTrait2() const { return false; }
    virtual bool propertyTrait3() const { return false; }
    virtual bool propertyTrait4() const { return true; }
    virtual bool propertyTrait5() const { return false; }
    virtual bool isWarnOnCopyError() const { return false; }
    virtual bool propertyTrait6() const { return false; }
    virtual bool propertyTrait7() const { return false; }
    virtual bool propertyTrait8() const { return false; }
    virtual bool propertyTrait9() const { return false; }
    virtual bool propertyTrait10() const { return true; }
    virtual bool isNeverAmbiguous() const { return false; }
    virtual int getPartialMatchPriority() const { return 0; }
    virtual bool propertyTrait11() const { return false; }
    virtual bool propertyTrait12() const { return false; }
    virtual bool isGrandfathered() const { return false; }
    virtual bool isWeakReference() const { return false; }
    // Reads; the value belongs to the caller, who ends it with `destroyValue`. Returns `out`.
    virtual HOSValue* getValue(HOSValue* out, HOSInterface* object) = 0;
    // Writes; the value stays the caller's. Doesn't look at `getSetAccess`.
    virtual void setValue(HOSInterface* object, HOSValue value) = 0;
    virtual void destroyValue(HOSInterface* object, HOSValue value) = 0;
    virtual bool propertyTrait13() const { return false; }
    virtual bool isDestructible() const { return true; }
    virtual std::vector<HOSInterfacePtr> getInterfaces(const HOSClient*, HOSInterface*) {
        return {};
    }
    virtual std::vector<hxArray*> getVLArrays(const HOSClient*, HOSInterface*) { return {}; }
};

class HOSEventInfo {
  public:
    HOSEventInfo() = default;
    HOSEventInfo(const HOSEventInfo&) = delete;
    HOSEventInfo& operator=(const HOSEventInfo&) = delete;

    virtual ~HOSEventInfo() = default;
    virtual const char* getName() const = 0;
    virtual const char* getDescription() const { return ""; }
    virtual const char* getDetailedDescription() const { return ""; }
    virtual bool eventTrait() const { return false; }
    virtual id* getEventDataType(id* out) const = 0;
    virtual MemberAccess getSendAccess() const { return 0; }
    virtual void* getExtendedSendAccess() const { return nullptr; }
    virtual MemberAccess getListenAccess() const { return 0; }
    virtual void* getExtendedListenAccess() const { return nullptr; }
    // Called for the first listener of the event on that object, with a weak handle. What it raises
    // reaches whoever adds the listener, and the listener is not added.
    virtual void addListener(HOSInterfacePtr source) = 0;
    // Called when the last listener of the event on that object has left.
    virtual void removeListener(HOSInterfacePtr source) = 0;
    virtual bool isDestructible() const { return true; }
};

// What a listener receives.
class HOSEventData {
  public:
    HOSEventData() = default;
    HOSEventData(const HOSEventData&) = default;
    HOSEventData& operator=(const HOSEventData&) = delete;

    virtual ~HOSEventData() = default;
    virtual id* getEventName(id* out) const = 0;
    virtual HOSInterfacePtr* getSource(HOSInterfacePtr* out) const = 0;
    // A copy on the heap that belongs to the caller.
    virtual HOSEventData* clone() const = 0;
    virtual void eventDataNotification1() {}
    // The event's structure, still the event's.
    virtual hxArray* getEventData() const = 0;
    virtual void eventDataNotification2() {}
    virtual void incrementNotifyCount() { ++notifyCount_; }
    virtual void decrementNotifyCount() { --notifyCount_; }
    virtual bool isOkToDestroy() const { return notifyCount_ == 0; }
    virtual HOSInterface* getSourceWeak() const;

  private:
    int notifyCount_ = 0;
};

} // namespace hos
