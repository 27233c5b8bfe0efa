// The branches of variantToHost, by VARTYPE.
#include "conversion/variant_to_host.h"

#include "comruntime/server_call.h"
#include "comruntime/system_message.h"
#include "conversion/arg_converter.h"
#include "conversion/com_text.h"
#include "conversion/host_classes.h"
#include "conversion/nesting.h"
#include "conversion/wrapped_interface.h"
#include "host/message_ids.h"
#include "host/text.h"
#include "platform/text.h"

#include <bit>
#include <cstring>

namespace axlink2 {
namespace {

template <class Reason>
void warnOfFailure(const VariantConversionContext& context) {
    if (!context.warn) return;
    const std::u16string reason =
        hsys::i18n::MessageCatalog::get_message(Reason(), hsys::i18n::HsysLocale::global());
    hxWarningMsgId(VELMAR::COM::variant_conversion_failed(reason));
}

int numberToHost(const VARIANT& v, const NumericClass& row, hxArray** out) {
    constexpr std::size_t scalar[] = {1, 1};
    harray::unique_array array(hxCreateNumericArray(2, scalar, row.id, hxREAL));
    std::memcpy(hxGetWritableData(array.get()), &v.llVal, row.elementSize);
    *out = array.release();
    return 1;
}

// Currency, through the converter of the type; result codes as the number that they are.
int currencyToHost(const VARIANT& v, hxArray** out, const VariantConversionContext& context) {
    try {
        const hos::HOSValue value = getArgConverter(VARTYPE{VT_CY})->fromVariant(v);
        *out = hxCreateDoubleScalar(value.number());
        return 1;
    } catch (...) {
        warnOfFailure<VELMAR::COM::variant_conversion_failedCY>(context);
        return fallBackToNaN(out);
    }
}

int textToHost(VARIANT* v, hxArray** out, const VariantConversionContext& context) {
    if (v->vt != VT_BSTR && FAILED(VariantChangeType(v, v, 0, VT_BSTR))) {
        warnOfFailure<VELMAR::COM::variant_conversion_failedString>(context);
        return fallBackToNaN(out);
    }
    *out = charRow(v->bstrVal).release();
    return 1;
}

int errorToHost(const VARIANT& v, hxArray** out) {
    *out = harray::to_velmar(harray::create(u"ActiveX VT_ERROR: " + systemMessageText(v.scode)));
    return 1;
}

// Arrays may hold themselves by reference, and more than once: as many are followed.
constexpr int mostReferences = 1000;

// The new object has a reference of its own.
int interfaceToHost(const VARIANT& v, hxArray** out, const VariantConversionContext& context) {
    VARIANT own = v;
    own.punkVal = ServerPtr<IUnknown>::borrow(v.punkVal).detach();
    *out = wrapInterface(&own, context.owner, "Handle_Unknown");
    return *out ? 1 : fallBackToNaN(out);
}

bool travelsAsText(VARTYPE vt) {
    return vt == VT_BSTR || vt == VT_DATE || vt == VT_DECIMAL || vt == VT_LPSTR ||
           vt == VT_LPWSTR || vt == VT_FILETIME || vt == VT_CLSID;
}

} // namespace

bool becomesCell(VARTYPE vt) {
    return vt == VT_BSTR || vt == VT_DISPATCH || vt == VT_VARIANT || vt == VT_UNKNOWN;
}

int fallBackToNaN(hxArray** out) {
    *out = hxCreateDoubleScalar(std::bit_cast<double>(0xFFF8000000000000));
    return 0;
}

int unknownToHost(const VARIANT& v, hxArray** out, const VariantConversionContext& context) {
    return interfaceToHost(v, out, context);
}

bool isChangedByConversion(const VARIANT& v) {
    return (v.vt & VT_BYREF) || (v.vt != VT_BSTR && travelsAsText(v.vt));
}

int variantScalarToHost(VARIANT* v, hxArray** out, const VariantConversionContext& context) {
    const VARTYPE vt = v->vt & VT_TYPEMASK;
    if (vt == VT_EMPTY || vt == VT_NULL) {
        fallBackToNaN(out);
        return 1;
    }
    if (vt == VT_BOOL) {
        *out = hxCreateLogicalScalar(v->boolVal != VARIANT_FALSE);
        return 1;
    }
    if (travelsAsText(vt)) return textToHost(v, out, context);
    if (const NumericClass* row = numericClassOf(vt)) return numberToHost(*v, *row, out);
    switch (vt) {
    case VT_CY:
        return currencyToHost(*v, out, context);
    case VT_HRESULT:
        *out = hxCreateDoubleScalar(v->lVal);
        return 1;
    case VT_DISPATCH:
        return interfaceToHost(*v, out, context);
    case VT_ERROR:
        return errorToHost(*v, out);
    default:
        if (context.warn) hxWarningMsgId(VELMAR::COM::unsupportedVARIANTtype());
        return fallBackToNaN(out);
    }
}

int variantToHost(VARIANT* v, hxArray** out, const VariantConversionContext& context) {
    if (!v) return 0;
    if ((v->vt & VT_BYREF) && (!v->byref || FAILED(platform::copyReferred(*v, *v)))) {
        warnOfFailure<VELMAR::COM::variant_conversion_failedBYREF>(context);
        return fallBackToNaN(out);
    }
    if (v->vt & VT_VECTOR) { // a form of property sets, not of arguments
        if (context.warn) hxWarningMsgId(VELMAR::COM::unsupported_safearray_type());
        return fallBackToNaN(out);
    }
    if (!(v->vt & VT_ARRAY)) return variantScalarToHost(v, out, context);
    const VARTYPE element = v->vt & VT_TYPEMASK;
    if (!becomesCell(element)) return safeArrayToNumeric(v->parray, element, out, context);
    if (context.depth >= deepestNesting) {
        if (context.warn) hxWarningMsgId(VELMAR::COM::unsupported_safearray_type());
        return fallBackToNaN(out);
    }
    int references = mostReferences;
    safeArrayToCell(v->parray, element, out,
                    {context.warn, context.owner, context.depth + 1,
                     context.referencesLeft ? context.referencesLeft : &references});
    return 1;
}

} // namespace axlink2
