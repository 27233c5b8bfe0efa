// Property members: access, reads and writes.
#include "dispatch/property_info.h"

#include "classmodel/instance_record.h"
#include "conversion/variant_access.h"
#include "dispatch/invoke_or_throw.h"
#include "dispatch/member_value.h"
#include "host/exception.h"
#include "host/message_ids.h"

namespace axlink2 {
namespace {

constexpr hos::MemberAccess everybody = 0;
constexpr hos::MemberAccess nobody = 2;

std::uint16_t accessOf(const COMMemberEntry& entry) {
    int access = 0;
    if (entry.propertyGet) access |= DISPATCH_PROPERTYGET;
    if (entry.propertyPut) access |= DISPATCH_PROPERTYPUT;
    if (entry.propertyPutRef) access |= DISPATCH_PROPERTYPUTREF;
    return static_cast<std::uint16_t>(access);
}

inline IDispatch* serverOf(hos::HOSInterface* object) {
    const COMInstanceRecord* record = recordOf(object);
    if (!record) raiseInvalidHandle();
    return record->dispatch;
}

} // namespace

COMIDispPropInfo::COMIDispPropInfo(DISPID dispid, const COMMemberEntry& entry)
    : name(entry.name), dispid(dispid), converter(getPropConverter(entry.resultType())),
      access(accessOf(entry)) {}

hos::HOSValue* COMIDispPropInfo::getDefaultValue(hos::HOSValue* out) const {
    *out = hos::HOSValue();
    return out;
}

hos::HOSDataTypePtr* COMIDispPropInfo::getDataType(hos::HOSDataTypePtr* out) const {
    *out = converter->getDataType();
    return out;
}

hos::MemberAccess COMIDispPropInfo::getGetAccess() const {
    return access & DISPATCH_PROPERTYGET ? everybody : nobody;
}

hos::MemberAccess COMIDispPropInfo::getSetAccess() const {
    return access & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF) ? everybody : nobody;
}

hos::HOSValue* COMIDispPropInfo::getValue(hos::HOSValue* out, hos::HOSInterface* object) {
    IDispatch* server = serverOf(object);
    platform::ScopedVariant result;
    DISPPARAMS params{};
    invokeOrThrow(server, dispid, DISPATCH_PROPERTYGET, params, &result);
    const bool holdsCodes = converter->vartype == VT_ERROR || converter->vartype == VT_HRESULT;
    if ((result->vt & ~VT_BYREF) == VT_ERROR && !holdsCodes)
        throwCOMError(codeOf(result.get()), COMExcepInfo(false), 0, 0);
    *out = propertyValue(*converter, *result.inOut(), object, name.c_str());
    return out;
}

void COMIDispPropInfo::setValue(hos::HOSInterface* object, hos::HOSValue hostValue) {
    if (converter->vartype == VT_VOID) hmsgcore::raise(VELMAR::COM::invalidargumenttype());
    platform::ScopedVariant backing; // of a value that goes by reference
    platform::ScopedVariant value;
    converter->toVariant(hostValue, value.inOut(), backing.inOut(), false);
    if (platform::ownsContent(value->vt)) converter->retainForPut(value.inOut());

    IDispatch* server = serverOf(object); // only now, as the value's own server may have run
    const WORD flags =
        access & DISPATCH_PROPERTYPUT ? DISPATCH_PROPERTYPUT : DISPATCH_PROPERTYPUTREF;
    DISPID named = DISPID_PROPERTYPUT;
    DISPPARAMS params{value.inOut(), &named, 1, 1};
    invokeOrThrow(server, dispid, flags, params, nullptr);
}

void COMIDispPropInfo::destroyValue(hos::HOSInterface*, hos::HOSValue value) {
    if (const hos::HOSDataTypePtr type = converter->getDataType()) type->releaseValue(value);
}

} // namespace axlink2
