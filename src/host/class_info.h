// Descriptions of classes and namespaces that a module hands to the object system. The host calls
// their virtual operations by position: none may be removed or moved.
#pragma once

#include "host/data_type.h"
#include "host/interface.h"
#include "host/value.h"

#include <cstddef>
#include <vector>

namespace hos {

class HOSPackage;
struct HOSLoadInfo;

// What stands behind a class: the host drives it through these operations.
class HOSClassInfo {
  public:
    static void* operator new(std::size_t size);
    static void operator delete(void* block);

    HOSClassInfo() = default;
    HOSClassInfo(const HOSClassInfo&) = delete;
    HOSClassInfo& operator=(const HOSClassInfo&) = delete;

    virtual ~HOSClassInfo() = default;
    virtual const char* getName() const = 0;
    virtual const char* getDescription() const { return ""; }
    virtual const char* getDetailedDescription() const { return ""; }
    virtual int getAccess() const { return 0; }
    // Adds superclasses and members to `target`. Called once, before the first object is made or
    // the first question about members is answered. The host passes null for `extra`.
    virtual void populateClass(HOSClass* target, void* extra) = 0;
    // The data of a new object, handed back by `getInstanceData` and ended by the next operation.
    virtual void* createInstanceData() = 0;
    virtual void destroyInstanceData(HOSInterface* object, void* data) = 0;
    virtual void updateInstance(void*) {}
    virtual bool isOkToDestroy(const HOSClient*, HOSInterface*) { return true; }
    virtual bool isHidden() const { return false; }
    virtual bool classTrait1() const { return false; }
    virtual bool isFullNameDisplayed() const { return true; }
    virtual bool isPropertyNameReservedByThisClass(const char*) const { return false; }
    virtual bool canOtherClassContainThisClass(id) const { return false; }
    virtual bool canThisClassContainOtherClass(id) const { return false; }
    virtual bool classTrait2() const { return false; }
    virtual bool isHandleCompatible() const { return true; }
    virtual bool isEnumeration() const { return false; }
    virtual int getConnectAccess() const { return 0; }
    virtual int getConnectivity() const { return 0; }
    virtual bool areChildrenSaved() const { return false; }
    virtual bool isAbstract() const { return false; }
    virtual bool useClassDefaultsOnLoad() const { return false; }
    virtual bool classTrait3() const { return false; }
    virtual bool classTrait4() const { return false; }
    virtual bool isConstructedOnLoad() const { return false; }
    virtual bool classTrait5() const { return false; }
    virtual bool isInstanceLeaf() const { return false; }
    virtual bool isDestructible() const { return true; }
    virtual bool isLocked() const { return false; }
    virtual void instanceLoaded(HOSInterfacePtr, const HOSLoadInfo*) {}
    virtual bool customSave(HOSInterfacePtr, HOSValue&, HOSDataTypePtr&) { return false; }
    virtual bool customLoad(HOSInterfacePtr&, HOSValue, HOSDataTypePtr) { return false; }
    virtual void* getModule() const { return nullptr; }
    virtual bool areClassFunctionsAllowed() const { return true; }
    virtual bool areExtensionMethodsAllowed() const { return false; }
    virtual bool usesRootRecords() const { return false; }
    virtual bool classTrait6() const { return false; }
    virtual bool doesInexactPropertyNameIssueWarning() const { return false; }
    virtual bool usesCustomChildrenList() const { return false; }
    virtual int getArrayNature() const { return 0; }
    virtual std::vector<HOSInterfacePtr> getChildrenOfInstance(HOSInterface*) { return {}; }
    virtual bool classIsAbstract() const { return false; }
    virtual bool allowInstanceUpdates() const { return false; }
    virtual bool isIDConsistent() const { return true; }
    virtual void copyData(const HOSInterface*, HOSInterface*, id) {}
    virtual bool willAllocateData() const { return true; }
};

class HOSNamespaceInfo {
  public:
    static void* operator new(std::size_t size);
    static void operator delete(void* block);

    HOSNamespaceInfo() = default;
    HOSNamespaceInfo(const HOSNamespaceInfo&) = delete;
    HOSNamespaceInfo& operator=(const HOSNamespaceInfo&) = delete;

    virtual ~HOSNamespaceInfo() = default;
    virtual const char* getName() const = 0;
    virtual const char* getDescription() const { return ""; }
    virtual const char* getDetailedDescription() const { return ""; }
    virtual bool attemptToLoadInnerNamespace(const char*) { return false; }
    virtual bool attemptToLoadSubPackage(const char*) { return false; }
    virtual void throwErrorForDefinitionOfExistingName(const char*) {}
    // Told of what happens to the namespace's content.
    virtual void namespaceNotification(int what, const char* name) = 0;
    virtual bool attemptToLoadFunction(const char*) { return false; }
    virtual bool attemptToLoadType(const char*) { return false; }
    virtual void* getMethodSelector() const { return nullptr; }
    // Given the package that stands for this namespace, before anything else happens to it.
    virtual void setPackage(HOSPackage* package) = 0;
    virtual void initializePackage(HOSPackage*) {}
    virtual bool isDestructible() const { return true; }
    virtual bool isLocked() const { return false; }
    virtual bool canLoadDynamicContent() const { return false; }
};

} // namespace hos
