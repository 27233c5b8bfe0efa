// Conversion of VARIANTs between all automation types.
#include "platform/answer.h"
#include "platform/holders.h"
#include "platform/portable/bstr.h"
#include "platform/portable/date_text.h"
#include "platform/portable/number.h"
#include "platform/portable/safearray.h"
#include "platform/portable/variant.h"
#include "platform/portable/variant_storage.h"

#include <algorithm>
#include <new>

namespace {

constexpr auto byteVector = static_cast<VARTYPE>(VT_ARRAY | VT_UI1);

HRESULT convert(const VARIANT& source, LCID locale, USHORT flags, VARTYPE vt, VARIANT& target);

HRESULT storeText(std::string_view text, VARIANT& target) {
    target.bstrVal = SysAllocStringLen(nullptr, static_cast<UINT>(text.size()));
    if (!target.bstrVal) return E_OUTOFMEMORY;
    std::copy(text.begin(), text.end(), target.bstrVal); // ASCII
    target.vt = VT_BSTR;
    return S_OK;
}

std::u16string_view textOf(const VARIANT& source) {
    return source.bstrVal ? std::u16string_view(source.bstrVal, SysStringLen(source.bstrVal))
                          : std::u16string_view();
}

bool equalIgnoringCase(std::u16string_view text, std::u16string_view lower) {
    return std::equal(text.begin(), text.end(), lower.begin(), lower.end(),
                      [](char16_t a, char16_t b) { return (a < 0x80 ? a | 0x20 : a) == b; });
}

bool storeTruthWord(std::u16string_view text, VARIANT& target) {
    const bool isTrue = equalIgnoringCase(text, u"true");
    if (!isTrue && !equalIgnoringCase(text, u"false")) return false;
    target.vt = VT_BOOL;
    target.boolVal = isTrue ? VARIANT_TRUE : VARIANT_FALSE;
    return true;
}

HRESULT numberToTextValue(const VARIANT& source, USHORT flags, VARIANT& target) {
    if (source.vt == VT_EMPTY) return storeText("", target);
    if (source.vt == VT_BOOL && (flags & (VARIANT_ALPHABOOL | VARIANT_LOCALBOOL)))
        return storeText(source.boolVal ? "True" : "False", target);
    if (source.vt == VT_DATE) {
        std::string text;
        const HRESULT result = dateToText(source.date, text);
        return FAILED(result) ? result : storeText(text, target);
    }
    Number number;
    const HRESULT result = loadNumber(source, number);
    return FAILED(result) ? result : storeText(numberToText(number), target);
}

HRESULT convertText(const VARIANT& source, VARTYPE vt, VARIANT& target) {
    if (vt == byteVector) {
        const HRESULT result = VectorFromBstr(source.bstrVal, &target.parray);
        if (SUCCEEDED(result)) target.vt = vt;
        return result;
    }
    const NumberKind& kind = numberKind(vt);
    if (kind.form == NumberForm::none) return DISP_E_TYPEMISMATCH;
    const std::u16string_view text = textOf(source);
    if (kind.form == NumberForm::boolean && storeTruthWord(text, target)) return S_OK;
    Number number;
    const HRESULT result = loadNumberText(text, kind, number);
    return FAILED(result) ? result : storeNumber(number, vt, target);
}

HRESULT convertNumber(const VARIANT& source, USHORT flags, VARTYPE vt, VARIANT& target) {
    if (vt == VT_BSTR) return numberToTextValue(source, flags, target);
    if (numberKind(vt).form == NumberForm::none) return DISP_E_TYPEMISMATCH;
    if (copyIntegerBits(source, vt, target)) return S_OK;
    Number number;
    const HRESULT result = loadNumber(source, number);
    return FAILED(result) ? result : storeNumber(number, vt, target);
}

// An object's default property, asked for once: a value that again is an object isn't asked.
HRESULT convertValueOf(IDispatch* object, LCID locale, USHORT flags, VARTYPE vt, VARIANT& target) {
    platform::ScopedVariant value;
    DISPPARAMS none{};
    const HRESULT result =
        object->Invoke(DISPID_VALUE, IID_NULL, locale, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                       &none, value.put(), nullptr, nullptr);
    if (FAILED(result)) {
        (void)value.detach(); // an out-parameter of a failed call is not to be trusted
        return result;
    }
    const auto once = static_cast<USHORT>(flags | VARIANT_NOVALUEPROP);
    return convert(value.get(), locale, once, vt, target);
}

HRESULT convertObject(const VARIANT& source, LCID locale, USHORT flags, VARTYPE vt,
                      VARIANT& target) {
    IUnknown* const object = source.punkVal;
    if (vt == VT_UNKNOWN || vt == VT_DISPATCH) {
        void* found = nullptr;
        const IID& iid = vt == VT_UNKNOWN ? IID_IUnknown : IID_IDispatch;
        if (object && FAILED(object->QueryInterface(iid, &found))) return DISP_E_TYPEMISMATCH;
        target.vt = vt;
        target.punkVal = static_cast<IUnknown*>(found);
        return S_OK;
    }
    const bool hasForm = vt == VT_BSTR || numberKind(vt).form != NumberForm::none;
    if (!hasForm || (flags & VARIANT_NOVALUEPROP)) return DISP_E_TYPEMISMATCH;
    if (source.vt == VT_DISPATCH)
        return source.pdispVal ? convertValueOf(source.pdispVal, locale, flags, vt, target)
                               : DISP_E_BADVARTYPE;
    const auto dispatch = platform::queryInterface<IDispatch>(object, IID_IDispatch);
    return dispatch ? convertValueOf(dispatch.get(), locale, flags, vt, target)
                    : DISP_E_TYPEMISMATCH;
}

HRESULT convertByteVector(const VARIANT& source, VARIANT& target) {
    const HRESULT result = BstrFromVector(source.parray, &target.bstrVal);
    if (SUCCEEDED(result)) target.vt = VT_BSTR;
    return result;
}

// Whether the value may be given up for VT_EMPTY or VT_NULL.
bool canBeDropped(VARTYPE vt) { return vt != VT_NULL && vt != VT_ERROR && !(vt & ~VT_TYPEMASK); }

// From a value that isn't a reference to an empty VARIANT.
HRESULT convert(const VARIANT& source, LCID locale, USHORT flags, VARTYPE vt, VARIANT& target) {
    if (source.vt == vt) return VariantCopy(&target, &source);
    if (vt == VT_EMPTY || vt == VT_NULL) {
        if (!canBeDropped(source.vt)) return DISP_E_TYPEMISMATCH;
        target.vt = vt;
        return S_OK;
    }
    switch (storageOf(source.vt)) {
    case VariantStorage::text:
        return convertText(source, vt, target);
    case VariantStorage::object:
        return convertObject(source, locale, flags, vt, target);
    case VariantStorage::array:
        return source.vt == byteVector && vt == VT_BSTR ? convertByteVector(source, target)
                                                        : DISP_E_TYPEMISMATCH;
    default:
        return numberKind(source.vt).form == NumberForm::none
                   ? DISP_E_TYPEMISMATCH
                   : convertNumber(source, flags, vt, target);
    }
}

// Scalars have modifiers neither in a target nor in what a reference leads to; arrays have one.
bool isTarget(VARTYPE vt) { return !(vt & VT_BYREF) && storageOf(vt) != VariantStorage::invalid; }

} // namespace

HRESULT VariantChangeTypeEx(VARIANTARG* destination, const VARIANTARG* source, LCID locale,
                            USHORT flags, VARTYPE vt) {
    if (!destination || !source) return E_INVALIDARG;
    if (source->vt == vt && storageOf(vt) == VariantStorage::plain)
        return VariantCopy(destination, source);
    if (!isTarget(vt) || storageOf(source->vt) == VariantStorage::invalid) return DISP_E_BADVARTYPE;
    VARIANT value;
    if (FAILED(viewThroughReference(*source, value))) return DISP_E_TYPEMISMATCH;
    if (storageOf(value.vt) == VariantStorage::invalid) return DISP_E_BADVARTYPE;
    return platform::answer([&] {
        VARIANT target{};
        HRESULT result = convert(value, locale, flags, vt, target);
        if (FAILED(result)) return result;
        result = VariantClear(destination);
        if (FAILED(result)) {
            VariantClear(&target);
            return result;
        }
        *destination = target;
        return S_OK;
    });
}

HRESULT VariantChangeType(VARIANTARG* destination, const VARIANTARG* source, USHORT flags,
                          VARTYPE vt) {
    return VariantChangeTypeEx(destination, source, LOCALE_USER_DEFAULT, flags, vt);
}
