// VARIANT values in the host.
#include "conversion/variant_type.h"

#include "comruntime/interned.h"
#include "conversion/host_to_variant.h"
#include "conversion/variant_instance.h"
#include "conversion/variant_to_host.h"

namespace axlink2 {
namespace {

void convertTextCell(const hxArray* cell, bool byRef, COMVariantInstance& instance) {
    VARIANT& owner = byRef ? instance.references->add() : *instance.variant;
    owner.parray = cellToSafeArray(cell, VT_BSTR);
    owner.vt = VT_ARRAY | VT_BSTR;
    if (!byRef) return;
    instance.variant->vt = VT_BYREF | VT_ARRAY | VT_BSTR;
    instance.variant->pparray = &owner.parray;
}

} // namespace

hos::HOSValue COMVariantType::cloneValue(hos::HOSValue value) const {
    const auto* instance = value.pointer<const COMVariantInstance>();
    if (!instance) return {};
    auto copy = std::make_unique<COMVariantInstance>(*instance->variant);
    copy->references = instance->references;
    return hos::HOSValue::ofPointer(copy.release());
}

void COMVariantType::releaseValue(hos::HOSValue value) const {
    delete value.pointer<COMVariantInstance>();
}

void COMTypeConversionVariant::convertToHost(hxArray** out, hos::HOSValue value) {
    *out = nullptr;
    if (const auto* instance = value.pointer<COMVariantInstance>())
        variantToHost(instance->variant.get(), out, {.warn = true});
}

void COMTypeConversionVariant::convertFromHost(hos::HOSValue* out, const hxArray* array) {
    auto instance = std::make_unique<COMVariantInstance>();
    instance->references = std::make_shared<ReferenceHolders>();
    if (vartype == VT_BSTR && array && hxGetClassID(array) == hxCELL_CLASS)
        convertTextCell(array, byRef, *instance);
    else // where a server expects an array by reference, one number is an array of one
        hostToVariant(instance->variant.get(), array, byRef, 0, 0, 0, forceArray || byRef,
                      instance->references.get());
    *out = hos::HOSValue::ofPointer(instance.release());
}

hos::HOSDataTypePtr variantType(const std::string& name, VARTYPE vartype, bool forceArray,
                                bool byRef) {
    const hos::HOSDataTypePtr known(knownId(name.c_str()));
    // A type without a conversion is what an attempt that failed has left.
    if (hos::HOSDataTypePtrHelper::getObject(known) &&
        hos::HOSTypeRepository::getConversion(internedId("any"), known.getID()))
        return known;
    hos::HOSTypeRepository::addGlobalType(new COMVariantType(name));
    const hos::id any = internedId("any");
    const hos::id type = internedId(name);
    hos::HOSTypeRepository::addConversion(any, type,
                                          new COMTypeConversionVariant(vartype, forceArray, byRef));
    return hos::HOSDataTypePtr(type);
}

} // namespace axlink2
