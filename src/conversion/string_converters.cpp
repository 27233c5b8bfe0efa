// Text to and from COM.
#include "conversion/string_converters.h"

#include "comruntime/system_message.h"
#include "conversion/variant_access.h"
#include "host/text.h"

#include <string>

namespace axlink2 {
namespace {

hos::HOSValue textValue(std::u16string text) {
    return hos::HOSValue::ofPointer(new std::u16string(std::move(text)));
}

// Null for a value without text.
BSTR newBstr(const std::u16string* text) {
    if (!text) return nullptr;
    const platform::OleString wide = hsys::i18n::to_wstring(*text);
    // A text ends at its first zero, as everywhere where COM takes a text without a length.
    const BSTR bstr = SysAllocString(wide.c_str());
    if (!bstr) _com_issue_error(E_OUTOFMEMORY);
    return bstr;
}

} // namespace

hos::HOSValue ArgStringConv::fromVariant(const VARIANT& v) {
    const ReadAs read(v, VT_BSTR);
    return textValue(hsys::i18n::to_ustring(read->bstrVal));
}

void ArgStringConv::toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing, bool byRef) {
    VARIANT variant{};
    variant.bstrVal = newBstr(value.text());
    variant.vt = VT_BSTR;
    placeVariant(variant, out, backing, byRef);
}

hos::HOSValue ArgErrorConv::fromVariant(const VARIANT& v) {
    return textValue(u"ActiveX VT_ERROR: " + systemMessageText(v.scode));
}

} // namespace axlink2
