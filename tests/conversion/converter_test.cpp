// The converters of one COM type each: which serves a type, both directions, by reference.
#include "comruntime/system_message.h"
#include "conversion/arg_converter.h"
#include "host/text.h"
#include "support/alive_check.h"
#include "support/errors.h"
#include "support/registered_module.h"
#include "support/values.h"

#include <cmath>

namespace {

using namespace axlink2;
using namespace axlink2::test;
using hos::HOSValue;
using test::Array;

ArgVarConverter& arg(const COMMemberType& type) { return *getArgConverter(type); }
ArgVarConverter& arg(VARTYPE vt) { return *getArgConverter(vt); }
ArgVarConverter& prop(VARTYPE vt) { return *getPropConverter(vt); }
HOSValue integer(std::int64_t i) { return HOSValue::ofInteger(i); }
HOSValue number(double x) { return HOSValue::ofDouble(x); }

std::string receivedText(VARTYPE vt, const VARIANT& v) {
    const std::unique_ptr<std::u16string> text(arg(vt).fromVariant(v).pointer<std::u16string>());
    return hsys::i18n::to_string(*text);
}

// Whether the value becomes that VARIANT, and by reference a view of it.
void expectSent(ArgVarConverter& converter, HOSValue value, const VARIANT& expected) {
    SCOPED_TRACE(described(expected));
    VARIANT out{};
    VARIANT backing{};
    converter.toVariant(value, &out, &backing, false);
    EXPECT_EQ(out.vt, expected.vt);
    EXPECT_EQ(out.llVal, expected.llVal);
    EXPECT_EQ(backing.vt, VT_EMPTY);

    converter.toVariant(value, &out, &backing, true);
    EXPECT_EQ(out.vt, expected.vt | VT_BYREF);
    EXPECT_EQ(out.byref, static_cast<void*>(&backing.llVal));
    EXPECT_EQ(backing.vt, expected.vt);
    EXPECT_EQ(backing.llVal, expected.llVal);
}

struct Row {
    ArgVarConverter& converter;
    ScopedVariant v;
    HOSValue value;
};

struct Converters : AliveCheck {};

TEST_F(Converters, AreSharedByEnumerationsOfOneNameAndRefusedOnlyWhenUsedForUnknownTypes) {
    ArgVarConverter& color = arg(COMEnumerationType{"ChoiceColor"});
    EXPECT_EQ(&color, getPropConverter(COMEnumerationType{"ChoiceColor"}));
    EXPECT_NE(&color, &arg(COMEnumerationType{"OtherColor"}));
    EXPECT_EQ(color.getDataType().getID().str(), "ChoiceColor");
    EXPECT_EQ(color.vartype, VT_I4);

    const COMMemberType unknown[] = {VARTYPE{VT_EMPTY}, VARTYPE{VT_NULL}, VARTYPE{VT_CARRAY},
                                     VARTYPE{VT_RECORD}, COMUnsupportedType()};
    for (const COMMemberType& type : unknown) {
        ArgVarConverter& converter = arg(type);
        EXPECT_EQ(converter.getDataType().getID().str(), "double scalar");
        EXPECT_EQ(converter.vartype, 0);
        EXPECT_EQ(&converter, getPropConverter(type));
        VARIANT v{};
        EXPECT_EQ(errorOf([&] { converter.fromVariant(v); }), "VELMAR:COM:invalidargumenttype");
        EXPECT_EQ(errorOf([&] { converter.toVariant({}, &v, nullptr, false); }),
                  "VELMAR:COM:invalidargumenttype");
    }
}

TEST_F(Converters, CarryNumbersBothWays) {
    const Row rows[] = {
        {arg(VT_I2), variant(VT_I2, 0x8000), integer(-32768)},
        {arg(VT_UI2), variant(VT_UI2, 65535), integer(65535)},
        {arg(VT_I4), variant(VT_I4, 0x80000000), integer(-2147483648LL)},
        {arg(VT_INT), variant(VT_I4, 0xFFFFFFFB), integer(-5)},
        {arg(VT_UI4), variant(VT_UI4, 0xFFFFFFFF), integer(4294967295)},
        {arg(VT_UINT), variant(VT_UI4, 3), integer(3)},
        {arg(VT_I8), variant(VT_I8, -5000000000), integer(-5000000000)},
        {arg(VT_UI8), variant(VT_UI8, -1), integer(-1)},
        {arg(VT_R4), single(0.5F), number(0.5)},
        {arg(VT_R8), real(0.1), number(0.1)},
        {arg(VT_BOOL), variant(VT_BOOL, 0xFFFF), integer(1)},
        {arg(VT_BOOL), variant(VT_BOOL), integer(0)},
        {arg(COMEnumerationType{"AnyColor"}), variant(VT_I4, 0xFFFFFFFF), integer(-1)},
        {prop(VT_I2), variant(VT_I2, 0xFFFD), number(-3)},
        {prop(VT_I4), variant(VT_I4, 0xFFFFFFFD), number(-3)},
        {prop(VT_R4), single(0.5F), number(0.5)},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.converter.fromVariant(row.v.get()).word(), row.value.word());
        expectSent(row.converter, row.value, row.v.get());
    }
    expectSent(arg(VT_CY), number(2), real(2).get());
    expectSent(arg(VT_HRESULT), integer(E_FAIL), variant(VT_ERROR, 0x80004005).get());
}

TEST_F(Converters, ChangeWhatIsOfAnotherTypeThanDeclared) {
    LONG six = 6;
    LONG failure = E_FAIL;
    ScopedVariant held = variant(VT_ERROR, E_FAIL);
    const Row rows[] = {
        {arg(VT_I2), real(2.5), integer(2)}, // rounded half to even
        {arg(VT_I4), real(3.5), integer(4)},
        {arg(VT_UI2), variant(VT_I4, 7), integer(7)},
        {arg(VT_UINT), variant(VT_UINT, 4294967295), integer(4294967295)},
        {arg(VT_HRESULT), variant(VT_HRESULT, E_FAIL), integer(E_FAIL)},
        {arg(VT_HRESULT), variant(VT_ERROR, E_FAIL), integer(E_FAIL)},
        {arg(VT_HRESULT), variant(VT_UI4, 0x80004005), integer(E_FAIL)},
        {arg(VT_HRESULT), reference(VT_ERROR, &failure), integer(E_FAIL)},
        {arg(VT_HRESULT), reference(VT_HRESULT, &failure), integer(E_FAIL)},
        {arg(VT_HRESULT), reference(VT_VARIANT, held.inOut()), integer(E_FAIL)},
        {arg(VT_HRESULT), real(5.2), integer(5)},
        {arg(VT_CY), variant(VT_CY, 12345), number(1.2345)},
        {arg(VT_R8), reference(VT_I4, &six), number(6)},
        {arg(VT_BOOL), variant(VT_BOOL, 1), integer(1)},
        {arg(VT_BOOL), variant(VT_I4, 12), integer(1)},
        {arg(VT_BOOL), variant(VT_I4), integer(0)},
        {arg(COMEnumerationType{"AnyColor"}), variant(VT_I2, 7), integer(7)},
        {arg(COMEnumerationType{"AnyColor"}), bstr(OLESTR("9")), integer(9)},
        {prop(VT_UI4), variant(VT_UI4, 4000000000), number(4e9)},
        {prop(VT_R4), real(0.25), number(0.25)},
    };
    for (const Row& row : rows)
        EXPECT_EQ(row.converter.fromVariant(row.v.get()).word(), row.value.word())
            << described(row.v.get());

    const auto error = [](VARTYPE vt, const ScopedVariant& v) {
        return errorOf([&] { arg(vt).fromVariant(v.get()); });
    };
    EXPECT_EQ(error(VT_I2, variant(VT_I4, 70000)), "VELMAR:COM:E2147614730");
    EXPECT_EQ(error(VT_R8, bstr(OLESTR("no number"))), "VELMAR:COM:E2147614725");
    EXPECT_EQ(error(VT_BSTR, variant(VT_NULL)), "VELMAR:COM:E2147614725");
    EXPECT_EQ(error(VT_HRESULT, bstr(OLESTR("x"))), "VELMAR:COM:E2147614725");
    EXPECT_NE(error(VT_HRESULT, reference(VT_ERROR, nullptr)), "");
    EXPECT_NE(error(VT_R8, variant(0x0FFF)), "");
}

TEST_F(Converters, RoundAndClampPropertiesAwayFromZero) {
    struct Row {
        VARTYPE vt;
        double x;
        LONGLONG payload;
        VARTYPE sent = vt;
    };
    const Row rows[] = {
        {VT_I2, 2.5, 3},
        {VT_I2, -2.5, 0xFFFD},
        {VT_I2, 0.49, 0},
        {VT_I2, -0.49, 0},
        {VT_I2, NAN, 0},
        {VT_I2, 1e9, 32767},
        {VT_I2, -1e9, 0x8000},
        {VT_I2, 32767, 32767},
        {VT_UI2, -0.7, 0},
        {VT_UI2, 65535, 65535},
        {VT_UI2, 65534.5, 65535},
        {VT_I4, 2147483647, 2147483647},
        {VT_I4, INFINITY, 2147483647},
        {VT_I4, -2147483648.0, 0x80000000},
        {VT_INT, -0.5, 0xFFFFFFFF, VT_I4},
        // The unsigned 32-bit range travels in the bits of the signed type.
        {VT_UI4, 4294967295.0, 0xFFFFFFFF, VT_I4},
        {VT_UINT, 3e9, 3000000000, VT_I4},
        {VT_UI4, -1, 0, VT_I4},
    };
    for (const Row& row : rows)
        expectSent(prop(row.vt), number(row.x), variant(row.sent, row.payload).get());
}

TEST_F(Converters, CarryBytesAsCharacters) {
    struct Row {
        VARTYPE vt;
        LONGLONG byte;
        const char* text;
    };
    const Row rows[] = {{VT_UI1, 0xE4, "'\\e4'"}, {VT_I1, 'a', "'a'"}, {VT_I1, 0xFF, "'\\ffff'"}};
    for (const Row& row : rows) {
        const ScopedVariant v = variant(row.vt, row.byte);
        const Array character(arg(row.vt).fromVariant(v.get()).array());
        EXPECT_EQ(described(character), row.text);
        expectSent(arg(row.vt), HOSValue::ofPointer(character.get()), v.get());
    }
    const Array word = text("ab");
    VARIANT out{};
    const auto error = describedErrorOf(
        [&] { arg(VT_UI1).toVariant(HOSValue::ofPointer(word.get()), &out, nullptr, false); });
    EXPECT_EQ(error.identifier, "VELMAR:class:MustBeScalar");
    EXPECT_NE(error.text.find("Parameter must be scalar."), std::string::npos);
}

TEST_F(Converters, CarryTextAndWhatTravelsAsText) {
    EXPECT_EQ(receivedText(VT_BSTR, bstr(OLESTR("a\u00E4")).get()), "a\u00E4");
    EXPECT_EQ(receivedText(VT_BSTR, variant(VT_BSTR).get()), "");
    EXPECT_EQ(receivedText(VT_BSTR, bstr({OLESTR("a\0b"), 3}).get()), "a");
    EXPECT_EQ(receivedText(VT_BSTR, variant(VT_I4, -12).get()), "-12");
    EXPECT_EQ(receivedText(VT_DATE, real(37623.5, VT_DATE).get()), "1/2/2003 12:00:00 PM");
    const std::u16string text = u"a\u00E4";
    for (const VARTYPE vt : {VT_BSTR, VT_DATE, VT_DECIMAL, VT_LPSTR, VT_LPWSTR, VT_ERROR})
        for (const bool byRef : {false, true}) {
            ScopedVariant out;
            ScopedVariant backing;
            arg(vt).toVariant(HOSValue::ofPointer(&text), out.inOut(), backing.inOut(), byRef);
            EXPECT_EQ(described(out.get()), byRef ? "&BSTR 'a\\e4'" : "BSTR 'a\\e4'");
            EXPECT_EQ(backing->vt, byRef ? VT_BSTR : VT_EMPTY);
        }
}

TEST_F(Converters, GiveErrorsAsTheirText) {
    const std::string message = hsys::i18n::to_string(systemMessageText(DISP_E_PARAMNOTFOUND));
    EXPECT_FALSE(message.empty());
    SCODE code = DISP_E_PARAMNOTFOUND;
    for (const VARIANT& v : {variant(VT_ERROR, code).get(), reference(VT_ERROR, &code).get()})
        EXPECT_EQ(receivedText(VT_ERROR, v), "ActiveX VT_ERROR: " + message);
    EXPECT_EQ(receivedText(VT_ERROR, variant(VT_ERROR, 0x8BADF00D).get()), "ActiveX VT_ERROR: ");
}

TEST_F(Converters, SendNoObjectForAnEmptyValueAndRefuseWhatIsNone) {
    const Array one = scalar(1);
    const Array empty = doubles({0, 0}, {});
    const Array noText = text("");
    for (const VARTYPE vt : {VT_DISPATCH, VT_UNKNOWN, VT_PTR}) {
        for (const Array* value : {&one, &noText}) {
            VARIANT out{};
            EXPECT_EQ(errorOf([&] {
                          arg(vt).toVariant(HOSValue::ofPointer(value->get()), &out, nullptr,
                                            false);
                      }),
                      "VELMAR:class:InvalidHandle");
        }
        for (const HOSValue value : {HOSValue(), HOSValue::ofPointer(empty.get())}) {
            VARIANT out{};
            arg(vt).toVariant(value, &out, nullptr, false);
            arg(vt).retainForPut(&out);
            EXPECT_EQ(out.vt, vt == VT_UNKNOWN ? VT_UNKNOWN : VT_DISPATCH);
            EXPECT_EQ(out.punkVal, nullptr);
        }
    }
}

TEST_F(Converters, SendNothingWhereNothingIsDeclared) {
    VARIANT out{};
    arg(VT_VOID).toVariant(integer(1), &out, nullptr, true);
    EXPECT_EQ(out.vt, VT_EMPTY);
    EXPECT_TRUE(arg(VT_VOID).fromVariant(out).isNull());
}

TEST_F(Converters, HaveNoViewOfSomeTypesAndAnEmptyOneOfVariants) {
    for (const VARTYPE vt : {VT_EMPTY, VT_NULL, VT_VOID, VT_PTR, VT_LPWSTR, VT_RECORD}) {
        VARIANT out{};
        VARIANT backing{};
        out.byref = &out;
        backing.vt = vt;
        makeByRefVariant(&out, &backing);
        EXPECT_EQ(out.vt, vt | VT_BYREF);
        EXPECT_EQ(out.byref, &out) << vt;
    }
    for (const VARTYPE vt : {VT_VARIANT, VT_DECIMAL}) {
        VARIANT out{};
        VARIANT backing{};
        backing.vt = vt;
        makeByRefVariant(&out, &backing);
        EXPECT_EQ(out.vt, vt | VT_BYREF);
        EXPECT_EQ(out.byref,
                  static_cast<void*>(&backing)); // a decimal is the whole VARIANT
        EXPECT_EQ(backing.vt, vt == VT_VARIANT ? VARTYPE{VT_EMPTY} : vt);
    }
}

} // namespace
