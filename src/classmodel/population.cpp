// Population: the members of a generated class, decided once from the first server it meets.
#include "builtins/builtin_tables.h"
#include "classmodel/class_description.h"
#include "classmodel/enum_conversion.h"
#include "comruntime/interned.h"
#include "comruntime/type_description.h"
#include "dispatch/method_info.h"
#include "dispatch/property_info.h"
#include "events/event_info.h"
#include "host/exception.h"
#include "host/message_ids.h"

#include <memory>

namespace axlink2 {
namespace {

void addSuperclasses(hos::HOSClass* target) {
    hos::id methods = internedId("velmar.internal.axlink.COMInterfaceMethods");
    target->addSuperclass(&methods, false, nullptr, true);
    hos::id display = internedId("velmar.mixin.CustomDisplay");
    target->addSuperclass(&display, true, nullptr, true);
}

// Names of types are the host's: the first class to bring an enumeration decides its constants.
void addEnumeration(const std::string& name, const std::vector<COMEnumValue>& constants) {
    // A type without a conversion is what an attempt that failed has left.
    if (hos::HOSTypeRepository::getType(internedId(name)) &&
        hos::HOSTypeRepository::getConversion(internedId("any"), internedId(name)))
        return;
    const hos::HOSDataTypePtr int32Type(
        hos::HOSTypeRepository::getType(internedId("int32 scalar")));
    auto* type =
        hos::TypedEnumStringType::createCaseInsensitiveInstance(int32Type, name.c_str(), nullptr);
    for (const COMEnumValue& constant : constants)
        type->addValue(constant.value, constant.name.c_str(), nullptr);
    const hos::id any = internedId("any");
    const hos::id made = knownId(name.c_str());
    hos::HOSTypeRepository::addConversion(any, made, new TypedEnumConversion(type));
}

void addMember(hos::HOSClass* target, DISPID dispid, const COMMemberEntry& entry) {
    if (entry.isMethod())
        target->addMethod(new COMIDispMethodInfo(target, dispid, entry));
    else if (entry.isProperty())
        target->addProperty(new COMIDispPropInfo(dispid, entry));
}

void addEvent(COMBaseClassInfo& info, hos::HOSClass* target, DISPID dispid,
              const COMMemberEntry& entry) {
    // The descriptor has its owner before anything points at it.
    info.eventDescriptors.push_back(std::make_unique<COMEventDescriptor>(entry));
    COMEventDescriptor* const descriptor = info.eventDescriptors.back().get();
    info.eventsByDispid.try_emplace(dispid, descriptor);
    target->addEvent(new COMEventInfo(target, dispid, descriptor));
}

} // namespace

void COMBaseClassInfo::populateClass(hos::HOSClass* target, void* extra) {
    // What an attempt that failed has left.
    eventsByDispid.clear();
    eventDescriptors.clear();
    // Asked for without an object, after an attempt that failed: the next object brings a server.
    if (!server) hmsgcore::raise(VELMAR::COM::invalidmethodname());
    addSuperclasses(target);
    addBuiltins(target, everyClassBuiltins());
    const auto description = COMTypeDescription::ofServer(server);
    if (!description) return;

    for (const auto& [name, constants] : description->enumerations)
        addEnumeration(name, constants);
    for (const auto& [dispid, entry] : description->members)
        addMember(target, dispid, *entry);
    sourceIID = description->sourceInterfaceIID;
    eventDescriptors.reserve(description->events.size());
    for (const auto& [dispid, entry] : description->events)
        if (entry->isMethod()) addEvent(*this, target, dispid, *entry);
    addClassSpecificMembers(target, extra, *description);
}

void COMCoclassClassInfo::addClassSpecificMembers(hos::HOSClass* target, void*,
                                                  COMTypeDescription&) {
    addBuiltins(target, coclassBuiltins());
}

void COMInterfaceClassInfo::addClassSpecificMembers(hos::HOSClass* target, void*,
                                                    COMTypeDescription&) {
    addBuiltins(target, interfaceBuiltins());
}

} // namespace axlink2
