// VARIANTs and arrays as parameters.
#include "conversion/array_converters.h"

#include "conversion/variant_instance.h"
#include "conversion/variant_type.h"

#include <utility>

namespace axlink2 {
namespace {

struct TypeWord {
    const char* word;
    std::initializer_list<VARTYPE> vartypes;
};

const TypeWord typeWords[] = {
    {"int16", {VT_I2}},
    {"int32", {VT_I4, VT_INT}},
    {"single", {VT_R4}},
    {"double", {VT_R8, VT_CY, VT_HRESULT}},
    {"string",
     {VT_DATE, VT_BSTR, VT_ERROR, VT_DECIMAL, VT_LPSTR, VT_LPWSTR, VT_FILETIME, VT_CLSID}},
    {"handle", {VT_DISPATCH, VT_UNKNOWN, VT_PTR}},
    {"bool", {VT_BOOL}},
    {"Variant",
     {VT_VARIANT, VT_CARRAY, VT_USERDEFINED, VT_BLOB, VT_STREAM, VT_STORAGE, VT_STREAMED_OBJECT,
      VT_STORED_OBJECT, VT_BLOB_OBJECT, VT_CF}},
    {"char", {VT_I1, VT_UI1}},
    {"uint16", {VT_UI2}},
    {"uint32", {VT_UI4, VT_UINT}},
    {"int64", {VT_I8}},
    {"uint64", {VT_UI8}},
    {"void", {VT_VOID}},
    {"SafeArray", {VT_SAFEARRAY}},
};

bool isPlainArray(const VARIANT& v) { return (v.vt & VT_ARRAY) && !(v.vt & VT_BYREF); }

// A value is good for one call, so that a large array needn't be copied for it.
void handOver(hos::HOSValue value, VARIANT* out) {
    const auto* instance = value.pointer<COMVariantInstance>();
    if (!instance) return;
    if (isPlainArray(*instance->variant))
        *out = std::exchange(*instance->variant, VARIANT{});
    else
        platform::copyVariant(*out, *instance->variant);
}

// What is no array goes on as it stands; a reference leads to `backing`, from where what the server
// puts there is read.
void passOnOther(const VARIANT& held, VARIANT* out, VARIANT* backing) {
    if (!(held.vt & VT_BYREF)) {
        platform::copyVariant(*out, held);
        return;
    }
    platform::copyReferred(*backing, held);
    makeByRefVariant(out, backing);
}

// An array of nothing; null for an element type that there are no arrays of.
SAFEARRAY* arrayOfNone(VARTYPE elementType) {
    SAFEARRAYBOUND bounds[2]{};
    return SafeArrayCreate(elementType, 2, bounds);
}

// Nothing that has a type which a reference could name.
bool isBlank(const VARIANT& v) { return v.vt == VT_EMPTY || v.vt == VT_NULL || v.vt == VT_ERROR; }

std::string typeName(const char* kind, VARTYPE elementType) {
    return std::string(kind).append("(").append(vartypeName(elementType)).append(")");
}

} // namespace

std::string vartypeName(VARTYPE vt) {
    for (const TypeWord& row : typeWords)
        for (const VARTYPE vartype : row.vartypes)
            if (vartype == (vt & VT_TYPEMASK)) return row.word;
    return "Unsupported-Type";
}

hos::HOSValue ArgInstanceConverter::fromVariant(const VARIANT& v) {
    return hos::HOSValue::ofPointer(new COMVariantInstance(v));
}

hos::HOSValue ArgInstanceConverter::fromVariantFor(VARIANT& v, const hos::HOSInterfacePtr&,
                                                   const char*) {
    // What a reference leads to may be gone when the value is read.
    if (v.vt & VT_BYREF) platform::copyReferred(v, v);
    auto* instance = new COMVariantInstance();
    *instance->variant = std::exchange(v, VARIANT{});
    return hos::HOSValue::ofPointer(instance);
}

ArgVariantConverter::ArgVariantConverter(VARTYPE vartype) : ArgInstanceConverter(vartype, "") {
    dataType = variantType("Variant", VT_VARIANT, false, false);
}

void ArgVariantConverter::toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing,
                                    bool byRef) {
    if (!byRef) return handOver(value, out);
    handOver(value, backing);
    if (backing->vt & VT_BYREF) platform::copyReferred(*backing, *backing);
    if (!isBlank(*backing)) return makeByRefVariant(out, backing);
    // What stands for a missing argument arrives as a whole: servers behind a type library take no
    // reference into it.
    out->vt = VT_BYREF | VT_VARIANT;
    out->pvarVal = backing;
}

void ArgSafeArrayConverter::toVariant(hos::HOSValue value, VARIANT* out, VARIANT*, bool) {
    handOver(value, out);
}

hos::HOSDataTypePtr ArgSafeArrayConverter::getDataType() {
    if (!dataType) dataType = variantType(typeName("SafeArray", vartype), vartype, true, false);
    return dataType;
}

void ArgRefSafeArrayConverter::toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing,
                                         bool) {
    const auto* instance = value.pointer<COMVariantInstance>();
    if (!instance) return;
    const VARIANT& held = *instance->variant;
    if (held.vt == (VT_BYREF | VT_VARIANT)) { // an empty value
        backing->parray = arrayOfNone(elementVartype);
        backing->vt = vartype;
    } else if ((held.vt & VT_BYREF) && (held.vt & VT_ARRAY)) {
        backing->parray = held.pparray ? std::exchange(*held.pparray, nullptr) : nullptr;
        backing->vt = static_cast<VARTYPE>((held.vt & VT_TYPEMASK) | VT_ARRAY);
    } else {
        return passOnOther(held, out, backing);
    }
    makeByRefVariant(out, backing);
}

hos::HOSDataTypePtr ArgRefSafeArrayConverter::getDataType() {
    if (!dataType)
        dataType =
            variantType(typeName("SafeArray Pointer", elementVartype), elementVartype, false, true);
    return dataType;
}

} // namespace axlink2
