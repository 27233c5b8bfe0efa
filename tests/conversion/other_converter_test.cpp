// Text, codes, enumerations and interfaces.
#include "comruntime/system_message.h"
#include "conversion/arg_converter.h"
#include "host/array.h"
#include "host/text.h"
#include "platform/holders.h"
#include "support/alive_check.h"
#include "support/errors.h"
#include "support/registered_module.h"

namespace {

using namespace axlink2;
using hos::HOSValue;
using platform::ScopedVariant;

ScopedVariant textVariant(const OLECHAR* text) {
    ScopedVariant v;
    v->bstrVal = SysAllocString(text);
    v->vt = VT_BSTR;
    return v;
}

std::string received(VARTYPE vt, const VARIANT& v) {
    const std::unique_ptr<std::u16string> text(
        getArgConverter(vt)->fromVariant(v).pointer<std::u16string>());
    return hsys::i18n::to_string(*text);
}

struct OtherConverters : test::AliveCheck {};

TEST_F(OtherConverters, TakeTextAndWhatTravelsAsText) {
    EXPECT_EQ(received(VT_BSTR, textVariant(OLESTR("a\u00E4")).get()), "a\u00E4");
    EXPECT_EQ(received(VT_BSTR, textVariant(nullptr).get()), "");
    ScopedVariant withZero;
    withZero->bstrVal = SysAllocStringLen(OLESTR("a\0b"), 3);
    withZero->vt = VT_BSTR;
    EXPECT_EQ(received(VT_BSTR, withZero.get()), "a");
    VARIANT date{};
    date.vt = VT_DATE;
    date.date = 37623.5; // noon, 2 January 2003
    EXPECT_EQ(received(VT_DATE, date), "1/2/2003 12:00:00 PM");
    VARIANT number{};
    number.vt = VT_I4;
    number.lVal = -12;
    EXPECT_EQ(received(VT_BSTR, number), "-12");
    VARIANT null{};
    null.vt = VT_NULL;
    EXPECT_EQ(test::errorOf([&] { received(VT_BSTR, null); }), "VELMAR:COM:E2147614725");
}

TEST_F(OtherConverters, SendEveryKindOfTextAsBstr) {
    const std::u16string text = u"a\u00E4";
    for (const VARTYPE vt : {VT_BSTR, VT_DATE, VT_DECIMAL, VT_LPSTR, VT_LPWSTR, VT_ERROR}) {
        ScopedVariant out;
        ScopedVariant backing;
        getArgConverter(vt)->toVariant(HOSValue::ofPointer(&text), out.put(), backing.put(), false);
        ASSERT_EQ(out->vt, VT_BSTR);
        EXPECT_EQ(platform::viewOf(out->bstrVal), OLESTR("a\u00E4"));

        getArgConverter(vt)->toVariant(HOSValue::ofPointer(&text), out.put(), backing.put(), true);
        EXPECT_EQ(out->vt, VT_BSTR | VT_BYREF);
        EXPECT_EQ(platform::viewOf(*out->pbstrVal), OLESTR("a\u00E4"));
        EXPECT_EQ(backing->vt, VT_BSTR);
    }
}

TEST_F(OtherConverters, GiveErrorsAsTheirText) {
    VARIANT error{};
    error.vt = VT_ERROR;
    error.scode = DISP_E_PARAMNOTFOUND;
    const std::string text = hsys::i18n::to_string(systemMessageText(DISP_E_PARAMNOTFOUND));
    EXPECT_FALSE(text.empty());
    EXPECT_EQ(received(VT_ERROR, error), "ActiveX VT_ERROR: " + text);
    error.scode = static_cast<SCODE>(0x8BADF00D);
    EXPECT_EQ(received(VT_ERROR, error), "ActiveX VT_ERROR: ");
}

TEST_F(OtherConverters, ReadResultCodesAsNumbersAndLeaveTargetsThatCannotHoldOne) {
    VARIANT code{};
    code.vt = VT_HRESULT;
    code.scode = E_FAIL;
    ArgVarConverter* converter = getArgConverter(VARTYPE{VT_HRESULT});
    EXPECT_EQ(converter->fromVariant(code).integer(), E_FAIL);
    VARIANT out{};
    VARIANT backing{};
    converter->toVariant(HOSValue::ofInteger(5), &out, &backing, false);
    EXPECT_EQ(out.vt, VT_EMPTY);
}

TEST_F(OtherConverters, CarryEnumerationsAsTheirConstant) {
    ArgVarConverter* converter = getArgConverter(COMEnumerationType{"AnyColor"});
    VARIANT v{};
    v.vt = VT_I4;
    v.lVal = -1;
    EXPECT_EQ(converter->fromVariant(v).integer(), -1);
    v.vt = VT_I2;
    v.lVal = 0;
    v.iVal = 7;
    EXPECT_EQ(converter->fromVariant(v).integer(), 7);
    EXPECT_EQ(converter->fromVariant(textVariant(OLESTR("9")).get()).integer(), 9);
    VARIANT out{};
    VARIANT backing{};
    converter->toVariant(HOSValue::ofInteger(-1), &out, &backing, true);
    EXPECT_EQ(backing.lVal, -1);
    EXPECT_EQ(out.plVal, &backing.lVal);
}

TEST_F(OtherConverters, RefuseWhatIsNoObjectWhereAnInterfaceIsWanted) {
    const harray::unique_array number(hxCreateDoubleScalar(1));
    VARIANT out{};
    for (const VARTYPE vt : {VT_DISPATCH, VT_UNKNOWN, VT_PTR})
        for (const hxArray* array :
             {static_cast<const hxArray*>(nullptr), static_cast<const hxArray*>(number.get())}) {
            const auto send = [&] {
                getArgConverter(vt)->toVariant(HOSValue::ofPointer(array), &out, nullptr, false);
            };
            EXPECT_EQ(test::errorOf(send), "VELMAR:class:InvalidHandle");
            EXPECT_EQ(out.vt, VT_EMPTY);
        }
}

TEST_F(OtherConverters, OfNoValueDoNothing) {
    ArgVarConverter* converter = getArgConverter(VARTYPE{VT_VOID});
    VARIANT v{};
    EXPECT_TRUE(converter->fromVariant(v).isNull());
    converter->toVariant(HOSValue::ofInteger(1), &v, nullptr, true);
    EXPECT_EQ(v.vt, VT_EMPTY);
}

} // namespace
