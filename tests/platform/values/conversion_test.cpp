// Conversions between all automation types.
#include "recorded_table.h"
#include "variant_text.h"

#include <array>
#include <chrono>
#include <cmath>

using namespace values_test;
using platform::ScopedVariant;

using ConversionTest = ValuesTest;

namespace {

std::string convert(const char* type, const char* value, USHORT flags, VARTYPE vt) {
    const WrittenVariant source(type, value);
    ScopedVariant target;
    const HRESULT result = VariantChangeType(target.put(), &source.get(), flags, vt);
    return outcome(result, target.get());
}

} // namespace

TEST_F(ConversionTest, EveryPairOfTypesConvertsAsRecorded) {
    RecordedTable table("variant_change_type");
    for (const Row& row : table.rows()) {
        const WrittenVariant source(row[0], row[1]);
        ScopedVariant target;
        const HRESULT result = VariantChangeType(target.put(), &source.get(), 0, parseType(row[2]));
        table.check(row[0] + ' ' + row[1] + " to " + row[2], row[3] + ' ' + row[4] + ' ' + row[5],
                    outcome(result, target.get()));
    }
}

TEST_F(ConversionTest, TruthHasWordsWhenAskedFor) {
    for (const auto flag : std::array<USHORT, 2>{VARIANT_ALPHABOOL, VARIANT_LOCALBOOL}) {
        EXPECT_EQ(convert("BOOL", "-1", flag, VT_BSTR), "0x00000000 BSTR \"True\"");
        EXPECT_EQ(convert("BOOL", "0", flag, VT_BSTR), "0x00000000 BSTR \"False\"");
    }
}

TEST_F(ConversionTest, ObjectsKeepTheirValueWhenItIsNotWanted) {
    EXPECT_EQ(convert("DISPATCH", "object", VARIANT_NOVALUEPROP, VT_I4), "0x80020005 EMPTY -");
    EXPECT_EQ(convert("DISPATCH", "object", 0, VT_BSTR), "0x00000000 BSTR \"42\"");
}

TEST_F(ConversionTest, TextAndBytesConvertIntoEachOther) {
    const WrittenVariant text("BSTR \"A\\000b\"");
    ScopedVariant bytes;
    ASSERT_EQ(VariantChangeType(bytes.put(), &text.get(), 0, VT_ARRAY | VT_UI1), S_OK);
    EXPECT_EQ(bytes->parray->rgsabound[0].cElements, 6u);
    ASSERT_EQ(VariantChangeType(bytes.inOut(), &bytes.get(), 0, VT_BSTR), S_OK);
    EXPECT_EQ(outcome(S_OK, bytes.get()), "0x00000000 BSTR \"A\\000b\"");
}

TEST_F(ConversionTest, FailureLeavesTheDestinationAndSuccessReplacesIt) {
    const WrittenVariant text("BSTR \"no number\"");
    ScopedVariant target = ScopedVariant::borrow(WrittenVariant("BSTR \"kept\"").get());
    EXPECT_EQ(VariantChangeType(target.inOut(), &text.get(), 0, VT_I4), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(outcome(S_OK, target.get()), "0x00000000 BSTR \"kept\"");
    EXPECT_EQ(VariantChangeType(target.inOut(), &text.get(), 0, VT_BYREF | VT_I4),
              DISP_E_BADVARTYPE);
    EXPECT_EQ(VariantChangeType(target.inOut(), nullptr, 0, VT_I4), E_INVALIDARG);
    const WrittenVariant number("I4 7");
    EXPECT_EQ(VariantChangeType(target.inOut(), &number.get(), 0, VT_BSTR), S_OK);
    EXPECT_EQ(VariantChangeType(target.inOut(), &target.get(), 0, VT_R8), S_OK);
    EXPECT_EQ(outcome(S_OK, target.get()), "0x00000000 R8 7");
}

TEST_F(ConversionTest, TextOfDatesIsReadInItsManyForms) {
    const std::pair<const char*, const char*> dates[] = {
        {"2-Jan-03", "1/2/2003"},   {"Thursday, January 2, 2003 3 pm", "1/2/2003 3:00:00 PM"},
        {"2003 Jan 2", "1/2/2003"}, {"2/29/2000", "2/29/2000"},
        {"1/1/99", "1/1/1999"},     {"1/1/100", "1/1/100"},
    };
    for (const auto& [text, date] : dates) {
        const WrittenVariant source("BSTR", '"' + std::string(text) + '"');
        ScopedVariant target;
        EXPECT_EQ(VariantChangeType(target.put(), &source.get(), 0, VT_DATE), S_OK) << text;
        ASSERT_EQ(VariantChangeType(target.inOut(), &target.get(), 0, VT_BSTR), S_OK);
        EXPECT_EQ(platform::toNarrow(platform::viewOf(target->bstrVal)), date);
    }
    for (const char* text :
         {"2/29/1900", "1/1/10000", "13 PM", "24:00", "1:2:3:4", "3:04 PM 5:06", "1//2/2003",
          "1/2/2003,", "/1/2/2003", "Jan Feb 2003", "1/2/3/4", "99999999999999999999/1/1", ""})
        EXPECT_EQ(convert("BSTR", ('"' + std::string(text) + '"').c_str(), 0, VT_DATE),
                  "0x80020005 EMPTY -")
            << text;
}

TEST_F(ConversionTest, ADateWithoutAYearIsInTheCurrentOne) {
    const auto today = std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now());
    const auto year = static_cast<int>(std::chrono::year_month_day(today).year());
    const auto expected =
        convert("BSTR", ("\"1/2/" + std::to_string(year) + '"').c_str(), 0, VT_DATE);
    for (const char* text : {"\"1/2\"", "\"1 2\"", "\"2 January\""})
        EXPECT_EQ(convert("BSTR", text, 0, VT_DATE), expected) << text;
}

TEST_F(ConversionTest, HexadecimalBitsFillAnIntegerOfTheirWidth) {
    struct {
        const char* text;
        VARTYPE vt;
        const char* ours;
    } const cases[] = {
        {"\"&HFFFFFFFFFFFFFFFF\"", VT_I8, "0x00000000 I8 -1"},
        {"\"&HFFFFFFFFFFFFFFFF\"", VT_UI8, "0x00000000 UI8 18446744073709551615"},
        {"\"&H8000000000000000\"", VT_I8, "0x00000000 I8 -9223372036854775808"},
        {"\"&H10000000000000000\"", VT_UI8, "0x80020005 EMPTY -"},
        {"\"&H8000\"", VT_I2, "0x00000000 I2 -32768"},
        {"\"&H18000\"", VT_I2, "0x8002000A EMPTY -"},
        {"\" &HFF \"", VT_I1, "0x00000000 I1 -1"},
        {"\"&HFF G\"", VT_I4, "0x80020005 EMPTY -"},
    };
    for (const auto& row : cases)
        EXPECT_EQ(convert("BSTR", row.text, 0, row.vt), row.ours) << row.text;
}

TEST_F(ConversionTest, TextBecomesADecimalWithAsManyDigitsAsFit) {
    const std::pair<const char*, const char*> cases[] = {
        {"\"7.92281625142643375935439503355\"",
         "0x00000000 DECIMAL 7.922816251426433759354395034{sign=0x00 scale=27}"},
        {"\"79228162514264337593543950335.4\"",
         "0x00000000 DECIMAL 79228162514264337593543950335{sign=0x00 scale=0}"},
        {"\"79228162514264337593543950335.5\"", "0x8002000A EMPTY -"},
        {"\"0.00000000000000000000000000005\"", "0x00000000 DECIMAL 0{sign=0x00 scale=0}"},
        {"\"0.000000000000000000000000000051\"",
         "0x00000000 DECIMAL 0.0000000000000000000000000001{sign=0x00 scale=28}"},
        {"\"-1e-99999999999\"", "0x00000000 DECIMAL 0{sign=0x00 scale=0}"},
        {"\"1e99999999999\"", "0x8002000A EMPTY -"},
    };
    for (const auto& [text, ours] : cases)
        EXPECT_EQ(convert("BSTR", text, 0, VT_DECIMAL), ours) << text;
}

TEST_F(ConversionTest, CalendarTimesGoThereAndBack) {
    SYSTEMTIME leap{2004, 2, 0, 29, 23, 59, 59, 0};
    double date = 0;
    ASSERT_TRUE(SystemTimeToVariantTime(&leap, &date));
    SYSTEMTIME back{};
    ASSERT_TRUE(VariantTimeToSystemTime(date, &back));
    EXPECT_EQ(back.wDay, 29);
    EXPECT_EQ(back.wSecond, 59);
    EXPECT_EQ(back.wDayOfWeek, 0);

    SYSTEMTIME overlong{2001, 2, 0, 29, 0, 0, 0, 0};
    ASSERT_TRUE(SystemTimeToVariantTime(&overlong, &date));
    EXPECT_EQ(date, 36951); // 1 March 2001
    SYSTEMTIME twoDigits{29, 1, 0, 1, 0, 0, 0, 0};
    ASSERT_TRUE(SystemTimeToVariantTime(&twoDigits, &date));
    EXPECT_EQ(date, 47119); // 2029
    SYSTEMTIME noMonth{2001, 13, 0, 1, 0, 0, 0, 0};
    EXPECT_FALSE(SystemTimeToVariantTime(&noMonth, &date));
    for (const double outside : {2958466.0, -657435.0, double(NAN)})
        EXPECT_FALSE(VariantTimeToSystemTime(outside, &back));
    ASSERT_TRUE(VariantTimeToSystemTime(2958465.9999999, &back));
    EXPECT_EQ(back.wYear, 9999);
}
