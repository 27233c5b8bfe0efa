// The tables of built-in methods.
#include "builtins/builtin_tables.h"

#include "builtins/appdata.h"
#include "builtins/coclass_constructor.h"
#include "builtins/dynamic_properties.h"
#include "builtins/get.h"
#include "builtins/interface_objects.h"
#include "builtins/introspection.h"
#include "builtins/invoke.h"
#include "builtins/persistence.h"
#include "builtins/release_delete.h"
#include "builtins/server_members.h"
#include "builtins/set.h"
#include "classmodel/custom_display.h"

namespace axlink2 {
namespace {

template <class Method>
hos::HOSMethodInfo* make(hos::HOSClass* owner) {
    return new Method(owner);
}
template <class Method>
hos::HOSMethodInfo* makeForAny(hos::HOSClass*) {
    return new Method();
}

constexpr MakeMethod everyClass[] = {
    make<COMReleaseMethodInfo>,
    make<COMDeleteMethodInfo>,
    make<COMEventsMethodInfo>,
    make<COMInvokeMethodInfo>,
    make<COMAddpropertyMethodInfo>,
    make<COMDeletepropertyMethodInfo>,
    make<COMGet1MethodInfo>,
    make<COMGet2MethodInfo>,
    make<COMGet3MethodInfo>,
    make<COMGet4MethodInfo>,
    make<COMSet1MethodInfo>,
    make<COMSet2MethodInfo>,
    make<COMSet3MethodInfo>,
    makeForAny<COMGetHeaderMethodInfo>,
    makeForAny<COMGetPropertyGroupsMethod>,
    make<COMMehtodsMethodInfo>,
    make<COMIspropMethodInfo>,
    make<COMSetappdataMethodInfo>,
    make<COMGetappdataMethodInfo>,
    make<COMRmappdataMethodInfo>,
    make<COMIsappdataMethodInfo>,
};

constexpr MakeMethod coclass[] = {
    make<COMCoclassConstructorInfo>, make<COMSaveMethodInfo>, make<COMLoadMethodInfo>,
    make<COMMoveMethodInfo>,         make<COMSendMethodInfo>, make<COMPropeditMethodInfo>,
    make<COMInterfacesMethodInfo>,
};

constexpr MakeMethod interfaceClass[] = {
    make<COMSaveobjMethodInfo>,
    make<COMLoadobjMethodInfo>,
};

} // namespace

std::span<const MakeMethod> everyClassBuiltins() { return everyClass; }
std::span<const MakeMethod> coclassBuiltins() { return coclass; }
std::span<const MakeMethod> interfaceBuiltins() { return interfaceClass; }

void addBuiltins(hos::HOSClass* target, std::span<const MakeMethod> builtins) {
    for (const MakeMethod makeMethod : builtins)
        target->addMethod(makeMethod(target));
}

} // namespace axlink2
