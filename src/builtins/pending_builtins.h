// Built-in methods whose work is still to come. They are declared as they will be, and a call says
// that the function isn't available yet.
#pragma once

#include "builtins/builtin_declarations.h"
#include "builtins/builtin_method.h"
#include "host/exception.h"
#include "host/message_ids.h"

namespace axlink2 {

template <const BuiltinDeclaration& declaration, class Base = COMBuiltinMethodInfo>
class PendingBuiltin final : public Base {
  public:
    explicit PendingBuiltin(hos::HOSClass* owner) : Base(owner, declaration) {}

    // Raises "VELMAR:COM:notavailable".
    void invoke(const hos::HOSClient*, std::uint32_t*, hos::HOSValue*, std::int32_t,
                hos::HOSValue*) override {
        hmsgcore::raise(VELMAR::COM::notavailable(this->name));
    }
};

using COMReleaseMethodInfo = PendingBuiltin<declarations::release>;
using COMDeleteMethodInfo = PendingBuiltin<declarations::deleteObject>;
using COMEventsMethodInfo = PendingBuiltin<declarations::events>;
using COMInvokeMethodInfo = PendingBuiltin<declarations::invoke>;
using COMAddpropertyMethodInfo = PendingBuiltin<declarations::addproperty>;
using COMDeletepropertyMethodInfo = PendingBuiltin<declarations::deleteproperty>;
using COMGet1MethodInfo = PendingBuiltin<declarations::get1>;
using COMGet2MethodInfo = PendingBuiltin<declarations::get2>;
using COMGet3MethodInfo = PendingBuiltin<declarations::get3>;
using COMGet4MethodInfo = PendingBuiltin<declarations::get4>;
using COMSet1MethodInfo = PendingBuiltin<declarations::set1>;
using COMSet2MethodInfo = PendingBuiltin<declarations::set2>;
using COMSet3MethodInfo = PendingBuiltin<declarations::set3>;
using COMMehtodsMethodInfo = PendingBuiltin<declarations::methods, HiddenBuiltinMethodInfo>;
using COMIspropMethodInfo = PendingBuiltin<declarations::isprop, HiddenBuiltinMethodInfo>;
using COMSetappdataMethodInfo = PendingBuiltin<declarations::setappdata, COMAppdataBaseMethodInfo>;
using COMGetappdataMethodInfo = PendingBuiltin<declarations::getappdata, COMAppdataBaseMethodInfo>;
using COMRmappdataMethodInfo = PendingBuiltin<declarations::rmappdata, COMAppdataBaseMethodInfo>;
using COMIsappdataMethodInfo = PendingBuiltin<declarations::isappdata, COMAppdataBaseMethodInfo>;

using COMSaveMethodInfo = PendingBuiltin<declarations::save>;
using COMLoadMethodInfo = PendingBuiltin<declarations::load>;
using COMMoveMethodInfo = PendingBuiltin<declarations::move>;
using COMSendMethodInfo = PendingBuiltin<declarations::send>;
using COMPropeditMethodInfo = PendingBuiltin<declarations::propedit>;
using COMInterfacesMethodInfo = PendingBuiltin<declarations::interfaces>;

using COMSaveobjMethodInfo = PendingBuiltin<declarations::saveobj>;
using COMLoadobjMethodInfo = PendingBuiltin<declarations::loadobj>;

} // namespace axlink2
