// From an interface to an object: identity, class, instance, link.
#include "conversion/wrapped_interface.h"

#include "classmodel/class_description.h"
#include "classmodel/namespaces.h"
#include "classmodel/object_creation.h"
#include "classmodel/object_tree.h"
#include "comruntime/interned.h"
#include "comruntime/server_call.h"
#include "comruntime/type_reader.h"
#include "platform/typeinfo_holders.h"

#include <boost/thread/locks.hpp>
#include <boost/thread/shared_mutex.hpp>

#include <map>

namespace axlink2 {
namespace {

// Which interface classes exist, by key. Grows only.
std::map<_bstr_t, std::string> interfaceClasses;
boost::shared_mutex interfaceClassesLock;

// The interface of a VARIANT, whose reference is taken over.
ServerPtr<IDispatch> takeInterface(const VARIANT& v) {
    if ((v.vt & VT_TYPEMASK) != VT_UNKNOWN) return ServerPtr<IDispatch>::adopt(v.pdispVal);
    const auto unknown = ServerPtr<IUnknown>::adopt(v.punkVal);
    return queryServer<IDispatch>(unknown.get(), IID_IDispatch);
}

// The IID's text in braces; null for an interface without type information.
_bstr_t identityOf(IDispatch* server) {
    const auto info = typeInfoOf(server);
    const platform::TypeAttrHolder attributes(info.get(), &ITypeInfo::GetTypeAttr);
    OLECHAR text[39];
    if (!attributes || IsEqualGUID(attributes->guid, GUID_NULL) ||
        !StringFromGUID2(attributes->guid, text, std::size(text)))
        return _bstr_t();
    return _bstr_t(text);
}

// Whether a class is one of those that have no type information, and came from that member. Only
// theirs are names that were keys as they are.
bool isAnonymousOf(hos::HOSClass& owner, const std::string& name, const std::string& memberName) {
    if (!dynamic_cast<COMInterfaceClassInfo*>(owner.getClassInfo())) return false;
    if (name != memberName && !name.ends_with("_" + memberName)) return false;
    const boost::shared_lock<boost::shared_mutex> lock(interfaceClassesLock);
    return interfaceClasses.contains(_bstr_t(name.c_str()));
}

// Interfaces without type information are told apart by the member that returned them. One that
// comes out of its like by the same member is of the same class: a list must not make a class for
// each of its links.
_bstr_t anonymousKey(const hos::HOSInterfacePtr& owner, const std::string& memberName) {
    hos::HOSClass* ownerClass = owner ? owner->getClass() : nullptr;
    if (!ownerClass) return _bstr_t(memberName.c_str());
    const std::string ownerName = ownerClass->getName();
    const bool isSame = isAnonymousOf(*ownerClass, ownerName, memberName);
    return _bstr_t((isSame ? ownerName : ownerName + "_" + memberName).c_str());
}

} // namespace

hxArray* wrapInterface(VARIANT* v, const hos::HOSInterfacePtr& owner, const char* memberName) {
    ServerPtr<IDispatch> server = takeInterface(*v);
    if (!server) return nullptr;
    _bstr_t key = identityOf(server.get());
    if (!key) key = anonymousKey(owner, memberName);

    const std::string className = interfaceClassForIID(key);
    const NewObject made = makeObjectFrom(findClass(interfaceNamespace, className), server.get());
    made.record->dispatch = server.detach();
    if (owner) linkToOwner(made.object, owner);
    return harray::to_velmar(objectArray(made));
}

std::string interfaceClassForIID(const _bstr_t& key) {
    boost::upgrade_lock<boost::shared_mutex> lock(interfaceClassesLock);
    if (const auto found = interfaceClasses.find(key); found != interfaceClasses.end())
        return found->second;
    std::string name = interfaceClassName(key);
    const boost::upgrade_to_unique_lock<boost::shared_mutex> exclusive(lock);
    if (const auto found = interfaceClasses.find(key); found != interfaceClasses.end())
        return found->second;
    // Two interfaces may be registered under one name; the later goes by its IID.
    if (findClass(interfaceNamespace, name)) name = nameAfterKey(key);
    // Its first object brings the server that it is populated from.
    addClass(interfaceNamespace, std::make_unique<COMInterfaceClassInfo>(name, nullptr));
    interfaceClasses.emplace(key, name);
    return name;
}

} // namespace axlink2
