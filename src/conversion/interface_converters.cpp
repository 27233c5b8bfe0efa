// Objects to servers.
#include "conversion/interface_converters.h"

#include "classmodel/class_description.h"
#include "classmodel/instance_record.h"
#include "comruntime/server_call.h"
#include "conversion/variant_to_host.h"
#include "conversion/wrapped_interface.h"
#include "host/object_array.h"

#include <utility>

namespace axlink2 {
namespace {

IDispatch* serverOf(const hxArray* array) {
    if (hoMeansNoObject(array)) return nullptr;
    if (IDispatch* server = passedServerOf(array)) return server;
    raiseInvalidHandle();
}

// What stands where a pointer is declared that isn't one to an interface.
hos::HOSValue anyValue(VARIANT& v, const hos::HOSInterfacePtr& owner) {
    hxArray* array = nullptr;
    variantToHost(&v, &array, {.warn = true, .owner = owner});
    return hos::HOSValue::ofPointer(array);
}

} // namespace

hos::HOSValue ArgInterfaceConverter::fromVariant(const VARIANT&) { return hos::HOSValue(); }

hos::HOSValue ArgInterfaceConverter::fromVariantFor(VARIANT& v, const hos::HOSInterfacePtr& owner,
                                                    const char* memberName) {
    if ((v.vt & VT_BYREF) && (!v.byref || FAILED(platform::copyReferred(v, v)))) return {};
    // Whatever the server declared: only this is known to be an interface.
    if (v.vt != VT_DISPATCH && v.vt != VT_UNKNOWN && v.vt != VT_PTR)
        return vartype == VT_PTR ? anyValue(v, owner) : hos::HOSValue();
    VARIANT taken = std::exchange(v, VARIANT{});
    return hos::HOSValue::ofPointer(wrapInterface(&taken, owner, memberName));
}

void ArgInterfaceConverter::toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing,
                                      bool byRef) {
    VARIANT variant{};
    variant.vt = sent_;
    variant.pdispVal = serverOf(value.array());
    placeVariant(variant, out, backing, byRef);
}

void ArgInterfaceConverter::retainForPut(VARIANT* v) {
    if (v->vt == VT_DISPATCH || v->vt == VT_UNKNOWN)
        (void)ServerPtr<IUnknown>::borrow(v->punkVal).detach();
}

} // namespace axlink2
