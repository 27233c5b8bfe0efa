// Numbers and characters, in both directions and by reference.
#include "conversion/arg_converter.h"
#include "host/array.h"
#include "platform/holders.h"
#include "support/alive_check.h"
#include "support/errors.h"
#include "support/registered_module.h"

#include <cmath>
#include <limits>

namespace {

using namespace axlink2;
using hos::HOSValue;

template <class T>
VARIANT variantOf(VARTYPE vt, T VARIANT::*field, T value) {
    VARIANT v{};
    v.vt = vt;
    v.*field = value;
    return v;
}

VARIANT i4(LONG value) { return variantOf(VT_I4, &VARIANT::lVal, value); }
VARIANT r8(double value) { return variantOf(VT_R8, &VARIANT::dblVal, value); }
VARIANT boolean(VARIANT_BOOL value) { return variantOf(VT_BOOL, &VARIANT::boolVal, value); }

HOSValue converted(VARTYPE vt, const VARIANT& v) { return getArgConverter(vt)->fromVariant(v); }

struct NumberConverters : test::AliveCheck {};

TEST_F(NumberConverters, TakeIntegersInTheWordExtendedByTheirSign) {
    struct Row {
        VARTYPE vt;
        VARIANT v;
        std::int64_t integer;
    };
    const Row rows[] = {
        {VT_I2, variantOf(VT_I2, &VARIANT::iVal, SHORT{-32768}), -32768},
        {VT_UI2, variantOf(VT_UI2, &VARIANT::uiVal, USHORT{65535}), 65535},
        {VT_I4, i4(-2147483647 - 1), -2147483648LL},
        {VT_INT, i4(-5), -5},
        {VT_UI4, variantOf(VT_UI4, &VARIANT::ulVal, ULONG{4294967295}), 4294967295LL},
        {VT_UINT, variantOf(VT_UINT, &VARIANT::uintVal, UINT{4294967295}), 4294967295LL},
        {VT_I8, variantOf(VT_I8, &VARIANT::llVal, LONGLONG{-5000000000}), -5000000000LL},
        {VT_UI8, variantOf(VT_UI8, &VARIANT::ullVal, ULONGLONG{0xFFFFFFFFFFFFFFFF}), -1},
        // Of another type than declared: changed, rounded half to even.
        {VT_I2, r8(2.5), 2},
        {VT_I4, r8(3.5), 4},
        {VT_UI2, i4(7), 7},
    };
    for (const Row& row : rows)
        EXPECT_EQ(converted(row.vt, row.v).integer(), row.integer) << row.vt;
}

TEST_F(NumberConverters, TakeFloatsAndCurrencyAsDoubles) {
    EXPECT_EQ(converted(VT_R8, r8(0.1)).number(), 0.1);
    EXPECT_EQ(converted(VT_R4, variantOf(VT_R4, &VARIANT::fltVal, 0.5F)).number(), 0.5);
    VARIANT currency{};
    currency.vt = VT_CY;
    currency.cyVal.int64 = 12345;
    EXPECT_EQ(converted(VT_CY, currency).number(), 1.2345);
    LONG number = 6;
    VARIANT reference = variantOf(VT_BYREF | VT_I4, &VARIANT::plVal, &number);
    EXPECT_EQ(converted(VT_R8, reference).number(), 6.0);
}

TEST_F(NumberConverters, ReadAnyNonZeroBooleanAsTrue) {
    EXPECT_EQ(converted(VT_BOOL, boolean(VARIANT_TRUE)).integer(), 1);
    EXPECT_EQ(converted(VT_BOOL, boolean(1)).integer(), 1);
    EXPECT_EQ(converted(VT_BOOL, boolean(0)).integer(), 0);
    EXPECT_EQ(converted(VT_BOOL, i4(12)).integer(), 1);
    EXPECT_EQ(converted(VT_BOOL, i4(0)).integer(), 0);
}

TEST_F(NumberConverters, RaiseTheCodeOfAFailedChangeAndLoseNothing) {
    const auto overflow = test::errorOf([] { converted(VT_I2, i4(70000)); });
    EXPECT_EQ(overflow, "VELMAR:COM:E2147614730");
    platform::ScopedVariant text;
    text->vt = VT_BSTR;
    text->bstrVal = SysAllocString(OLESTR("no number"));
    EXPECT_EQ(test::errorOf([&] { converted(VT_R8, text.get()); }), "VELMAR:COM:E2147614725");
    VARIANT nonsense{};
    nonsense.vt = 0x0FFF;
    EXPECT_NE(test::errorOf([&] { converted(VT_R8, nonsense); }), "");
}

struct SentRow {
    VARTYPE vt;
    HOSValue value;
    VARTYPE sent;
    LONGLONG payload;
};

void expectSent(ArgVarConverter* converter, const SentRow& row) {
    VARIANT out{};
    VARIANT backing{};
    converter->toVariant(row.value, &out, &backing, false);
    EXPECT_EQ(out.vt, row.sent) << row.vt;
    EXPECT_EQ(out.llVal, row.payload) << row.vt;
    EXPECT_EQ(backing.vt, VT_EMPTY);

    converter->toVariant(row.value, &out, &backing, true);
    EXPECT_EQ(out.vt, row.sent | VT_BYREF) << row.vt;
    EXPECT_EQ(out.byref, static_cast<void*>(&backing.llVal));
    EXPECT_EQ(backing.vt, row.sent);
    EXPECT_EQ(backing.llVal, row.payload) << row.vt;
}

TEST_F(NumberConverters, SendTheLowBitsOfAnInteger) {
    const SentRow rows[] = {
        {VT_I2, HOSValue::ofInteger(-2), VT_I2, 0xFFFE},
        {VT_UI2, HOSValue::ofInteger(65535), VT_UI2, 0xFFFF},
        {VT_I4, HOSValue::ofInteger(-2), VT_I4, 0xFFFFFFFE},
        {VT_INT, HOSValue::ofInteger(3), VT_I4, 3},
        {VT_UI4, HOSValue::ofInteger(4294967295), VT_UI4, 0xFFFFFFFF},
        {VT_UINT, HOSValue::ofInteger(3), VT_UI4, 3},
        {VT_I8, HOSValue::ofInteger(-2), VT_I8, -2},
        {VT_UI8, HOSValue::ofInteger(-2), VT_UI8, -2},
        {VT_R4, HOSValue::ofDouble(0.5), VT_R4, std::bit_cast<std::int32_t>(0.5F)},
        {VT_R8, HOSValue::ofDouble(0.1), VT_R8, std::bit_cast<LONGLONG>(0.1)},
        {VT_CY, HOSValue::ofDouble(2), VT_R8, std::bit_cast<LONGLONG>(2.0)},
        {VT_BOOL, HOSValue::ofInteger(1), VT_BOOL, 0xFFFF},
        {VT_BOOL, HOSValue::ofInteger(0), VT_BOOL, 0},
    };
    for (const SentRow& row : rows)
        expectSent(getArgConverter(row.vt), row);
}

TEST_F(NumberConverters, RoundAndClampPropertiesAwayFromZero) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    struct Row {
        VARTYPE vt;
        double x;
        LONGLONG payload;
    };
    const Row rows[] = {
        {VT_I2, 2.5, 3},
        {VT_I2, -2.5, 0xFFFD},
        {VT_I2, 0.49, 0},
        {VT_I2, -0.49, 0},
        {VT_I2, nan, 0},
        {VT_I2, 1e9, 32767},
        {VT_I2, -1e9, 0x8000},
        {VT_I2, 32767, 32767},
        {VT_UI2, -0.7, 0},
        {VT_UI2, 65535, 65535},
        {VT_UI2, 65534.5, 65535},
        {VT_I4, 2147483647, 2147483647},
        {VT_I4, infinity, 2147483647},
        {VT_I4, -2147483648.0, 0x80000000},
        {VT_INT, -0.5, 0xFFFFFFFF},
        // The unsigned 32-bit range travels in the bits of the signed type.
        {VT_UI4, 4294967295.0, 0xFFFFFFFF},
        {VT_UINT, 3e9, 3000000000},
        {VT_UI4, -1, 0},
    };
    for (const Row& row : rows) {
        const VARTYPE sent = row.vt == VT_I2 || row.vt == VT_UI2 ? row.vt : VARTYPE{VT_I4};
        expectSent(getPropConverter(row.vt),
                   {row.vt, HOSValue::ofDouble(row.x), sent, row.payload});
    }
    expectSent(getPropConverter(VARTYPE{VT_R4}),
               {VT_R4, HOSValue::ofDouble(0.5), VT_R4, std::bit_cast<std::int32_t>(0.5F)});
}

TEST_F(NumberConverters, ReadPropertiesAsDoubles) {
    const auto read = [](VARTYPE vt, const VARIANT& v) {
        return getPropConverter(vt)->fromVariant(v).number();
    };
    EXPECT_EQ(read(VT_I2, variantOf(VT_I2, &VARIANT::iVal, SHORT{-3})), -3.0);
    EXPECT_EQ(read(VT_I4, i4(-3)), -3.0);
    EXPECT_EQ(read(VT_UI4, variantOf(VT_UI4, &VARIANT::ulVal, ULONG{4000000000})), 4e9);
    EXPECT_EQ(read(VT_R4, r8(0.25)), 0.25);
}

TEST_F(NumberConverters, CarryBytesAsCharacters) {
    struct Row {
        VARTYPE vt;
        VARIANT v;
        char16_t character;
    };
    const Row rows[] = {
        {VT_UI1, variantOf(VT_UI1, &VARIANT::bVal, BYTE{0xE4}), u'\u00E4'},
        {VT_I1, variantOf(VT_I1, &VARIANT::cVal, CHAR{'a'}), u'a'},
        {VT_I1, variantOf(VT_I1, &VARIANT::cVal, static_cast<CHAR>(-1)), u'\uFFFF'},
    };
    for (const Row& row : rows) {
        const harray::unique_array array(converted(row.vt, row.v).array());
        ASSERT_EQ(hxGetClassID(array.get()), hxCHAR_CLASS);
        EXPECT_EQ(*static_cast<const char16_t*>(hxGetData(array.get())), row.character);
        expectSent(getArgConverter(row.vt), {row.vt, HOSValue::ofPointer(array.get()), row.vt,
                                             static_cast<LONGLONG>(row.character & 0xFF)});
    }
    const harray::unique_array word(hxCreateString("ab"));
    VARIANT out{};
    const auto error = test::describedErrorOf([&] {
        getArgConverter(VARTYPE{VT_UI1})
            ->toVariant(HOSValue::ofPointer(word.get()), &out, nullptr, false);
    });
    EXPECT_EQ(error.identifier, "VELMAR:class:MustBeScalar");
    EXPECT_NE(error.text.find("Parameter must be scalar."), std::string::npos);
}

} // namespace
