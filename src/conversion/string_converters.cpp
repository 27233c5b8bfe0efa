// Text to and from COM.
#include "conversion/string_converters.h"

#include "comruntime/system_message.h"
#include "conversion/com_text.h"
#include "conversion/variant_access.h"
#include "host/text.h"

#include <string>

namespace axlink2 {
namespace {

hos::HOSValue textValue(std::u16string text) {
    return hos::HOSValue::ofPointer(new std::u16string(std::move(text)));
}

} // namespace

hos::HOSValue ArgStringConv::fromVariant(const VARIANT& v) {
    const ReadAs read(v, VT_BSTR);
    return textValue(hsys::i18n::to_ustring(read->bstrVal));
}

void ArgStringConv::toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing, bool byRef) {
    const std::u16string* text = value.text();
    VARIANT variant{};
    variant.bstrVal = text ? newBstr(*text) : nullptr; // null for a value without text
    variant.vt = VT_BSTR;
    placeVariant(variant, out, backing, byRef);
}

hos::HOSValue ArgErrorConv::fromVariant(const VARIANT& v) {
    return textValue(u"ActiveX VT_ERROR: " + systemMessageText(codeOf(v)));
}

} // namespace axlink2
