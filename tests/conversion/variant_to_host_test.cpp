// What a server hands out on its way to the host: every VARTYPE, and arrays of them.
#include "comruntime/system_message.h"
#include "conversion/variant_to_host.h"
#include "support/alive_check.h"
#include "support/registered_module.h"
#include "support/values.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;
using test::Array;

const std::string unsupported = "VELMAR:COM:unsupportedVARIANTtype";
const std::string failed = "VELMAR:COM:variant_conversion_failed";
const std::string noArray = "VELMAR:COM:unsupported_safearray_type";
const std::string noElements = "VELMAR:COM:invalidargumenttype " + noArray;
const std::string nan = "double nan";

// What the host gets: the answer, the value and, in brackets, the warnings.
std::string received(VARIANT* v, bool warn = true) {
    Warnings warnings;
    hxArray* raw = nullptr;
    const int answer = variantToHost(v, &raw, {.warn = warn});
    const Array out(raw);
    const std::string seen = warnings.take();
    return std::to_string(answer) + ": " + described(out) + (seen.empty() ? "" : " [" + seen + "]");
}
std::string received(ScopedVariant v, bool warn = true) { return received(v.inOut(), warn); }

struct VariantToHost : AliveCheck {};

TEST_F(VariantToHost, EveryScalarTypeHasItsClass) {
    const Array error = harray::create(u"ActiveX VT_ERROR: " + systemMessageText(E_FAIL));
    struct Row {
        ScopedVariant v;
        std::string expected;
    };
    Row rows[] = {
        {variant(VT_EMPTY), "1: " + nan},
        {variant(VT_NULL), "1: " + nan},
        {variant(VT_I2, -2), "1: int16 -2"},
        {variant(VT_I4, -2), "1: int32 -2"},
        {variant(VT_INT, -2), "1: int32 -2"},
        {single(0.5F), "1: single 0.5"},
        {real(0.1), "1: double 0.1"},
        {variant(VT_CY, 12345), "1: double 1.2345"},
        {variant(VT_HRESULT, E_FAIL), "1: double -2147467259"},
        {real(37623.5, VT_DATE), "1: '1/2/2003 12:00:00 PM'"},
        {decimal(42), "1: '42'"},
        {bstr(OLESTR("ab")), "1: 'ab'"},
        {bstr({OLESTR("a\0b"), 3}), "1: 'a'"},
        {variant(VT_BSTR), "1: char 0x0 ''"},
        {variant(VT_ERROR, E_FAIL), "1: " + described(error)},
        {variant(VT_BOOL, 0xFFFF), "1: logical 1"},
        {variant(VT_BOOL, 1), "1: logical 1"},
        {variant(VT_BOOL), "1: logical 0"},
        {variant(VT_I1, -2), "1: int8 -2"},
        {variant(VT_UI1, 200), "1: uint8 200"},
        {variant(VT_UI2, 65535), "1: uint16 65535"},
        {variant(VT_UI4, 4294967295), "1: uint32 4294967295"},
        {variant(VT_UINT, 4294967295), "1: uint32 4294967295"},
        {variant(VT_I8, -5000000000), "1: int64 -5000000000"},
        {variant(VT_UI8, -1), "1: uint64 18446744073709551615"},
        // Neither an object nor a reason to warn.
        {variant(VT_DISPATCH), "0: " + nan},
    };
    for (Row& row : rows)
        EXPECT_EQ(received(std::move(row.v)), row.expected);
    for (const VARTYPE vt : {VT_UNKNOWN, VT_VARIANT, VT_VOID, VT_PTR, VT_RECORD, VT_SAFEARRAY,
                             VT_CARRAY, VT_USERDEFINED, VT_BLOB, VT_CF, VARENUM(73), VARENUM(4095)})
        EXPECT_EQ(received(variant(vt)), "0: " + nan + " [" + unsupported + "]") << vt;
    for (const VARTYPE vt : {VT_LPSTR, VT_LPWSTR, VT_FILETIME, VT_CLSID})
        EXPECT_EQ(received(variant(vt)), "0: " + nan + " [" + failed + "]") << vt;
}

TEST_F(VariantToHost, FollowsReferencesInPlace) {
    LONG number = 6;
    ScopedVariant v = reference(VT_I4, &number);
    EXPECT_EQ(received(v.inOut()), "1: int32 6");
    EXPECT_EQ(described(v.get()), "I4 6");
    ScopedVariant word = bstr(OLESTR("in"));
    EXPECT_EQ(received(reference(VT_VARIANT, word.inOut())), "1: 'in'");
    EXPECT_EQ(described(word.get()), "BSTR 'in'");
    ScopedVariant date = real(2.0, VT_DATE);
    EXPECT_EQ(received(date.inOut()), "1: '1/1/1900'");
    EXPECT_EQ(described(date.get()), "BSTR '1/1/1900'");
    ScopedSafeArray array = safeArray(VT_UI1, {{2}}, "\1\2");
    SAFEARRAY* slot = array.get();
    EXPECT_EQ(received(reference(VT_ARRAY | VT_UI1, &slot)), "1: uint8 1x2 [1 2]");
}

TEST_F(VariantToHost, FailuresAreNaNsWithTheirReasonAndOnRequestSilent) {
    VARIANT itself{};
    itself.vt = VT_BYREF | VT_VARIANT;
    itself.pvarVal = &itself;
    const std::string warned = "0: " + nan + " [" + failed + "]";
    EXPECT_EQ(received(&itself), warned);
    EXPECT_EQ(received(reference(VT_I4, nullptr)), warned);
    ScopedVariant date = real(1e300, VT_DATE);
    EXPECT_EQ(received(date.inOut()), warned);
    EXPECT_EQ(received(&itself, false), "0: " + nan);
    EXPECT_EQ(received(real(1e300, VT_DATE), false), "0: " + nan);
    EXPECT_EQ(received(variant(VT_VOID), false), "0: " + nan);
    EXPECT_EQ(received(variant(VT_ARRAY | VT_R8), false), "0: " + nan);

    Warnings warnings;
    hxArray* out = nullptr;
    variantToHost(&itself, &out, {.warn = true});
    harray::destroyArray(out);
    const std::u16string byReference = warnings.lastText();
    variantToHost(date.inOut(), &out, {.warn = true});
    harray::destroyArray(out);
    EXPECT_NE(byReference, warnings.lastText());
    EXPECT_NE(byReference, u"");

    Array kept = scalar(1);
    hxArray* untouched = kept.get();
    EXPECT_EQ(variantToHost(nullptr, &untouched, {.warn = true}), 0);
    EXPECT_EQ(untouched, kept.get());
}

TEST_F(VariantToHost, NumericArraysKeepTheirClassAndOrder) {
    const struct {
        VARTYPE vt;
        const char* className;
    } rows[] = {
        {VT_I1, "int8"},  {VT_UI1, "uint8"},  {VT_I2, "int16"},   {VT_UI2, "uint16"},
        {VT_I4, "int32"}, {VT_INT, "int32"},  {VT_UI4, "uint32"}, {VT_UINT, "uint32"},
        {VT_I8, "int64"}, {VT_UI8, "uint64"},
    };
    for (const auto& [vt, className] : rows) {
        const auto expect = [vt = vt, name = std::string(className)](
                                const std::vector<Bound>& bounds, const std::string& elements) {
            ScopedSafeArray array = safeArray(vt, bounds);
            ULONG count = 1;
            for (const Bound& bound : bounds)
                count *= bound.count;
            for (std::size_t i = 0; i < count; ++i)
                static_cast<char*>(array->pvData)[i * array->cbElements] = static_cast<char>(i + 1);
            EXPECT_EQ(received(variantOf(vt, std::move(array))), "1: " + name + elements);
        };
        expect({{2}, {3}}, " 2x3 [1 2 3 4 5 6]");
        // One dimension is a row, whatever its bounds.
        expect({{3, -1}}, " 1x3 [1 2 3]");
        expect({{2, 5}, {2, 1}}, " 2x2 [1 2 3 4]");
        expect({{0}, {3}}, " 0x3 []");
        expect({{1}}, " 1");
        EXPECT_EQ(received(variantOf(vt, safeArray(vt, {{2}, {2}, {2}}))),
                  "0: " + nan + " [" + noArray + "]");
    }
    const double doubles[] = {1, 0.5};
    const float singles[] = {1, 0.5};
    const VARIANT_BOOL booleans[] = {VARIANT_TRUE, 0, 1};
    EXPECT_EQ(received(variantOf(VT_R8, safeArray(VT_R8, {{2}}, doubles))),
              "1: double 1x2 [1 0.5]");
    EXPECT_EQ(received(variantOf(VT_R4, safeArray(VT_R4, {{2}}, singles))),
              "1: single 1x2 [1 0.5]");
    EXPECT_EQ(received(variantOf(VT_BOOL, safeArray(VT_BOOL, {{3}}, booleans))),
              "1: logical 1x3 [1 0 0]");
}

TEST_F(VariantToHost, ArraysWithoutANumericClassAreNaNs) {
    for (const VARTYPE vt : {VT_CY, VT_DATE, VT_DECIMAL, VT_ERROR})
        EXPECT_EQ(received(variantOf(vt, safeArray(vt, {{2}}))),
                  "0: " + nan + " [" + noElements + "]");
    EXPECT_EQ(received(variantOf(VT_CY, safeArray(VT_CY, {{2}})), false), "0: " + nan);
    for (const VARTYPE vt : {VT_R8, VT_BOOL})
        EXPECT_EQ(received(variant(static_cast<VARTYPE>(VT_ARRAY | vt))),
                  "0: " + nan + " [" + noArray + "]");
    EXPECT_EQ(received(variant(VT_VECTOR | VT_R8)), "0: " + nan + " [" + noArray + "]");
}

TEST_F(VariantToHost, TextAndVariantsBecomeCellsOfAnyShape) {
    const auto strings = [](const std::vector<Bound>& bounds) {
        ScopedSafeArray array = safeArray(VT_BSTR, bounds);
        static_cast<BSTR*>(array->pvData)[0] = SysAllocString(OLESTR("a"));
        static_cast<BSTR*>(array->pvData)[2] = SysAllocString(OLESTR("c"));
        return variantOf(VT_BSTR, std::move(array));
    };
    const std::string none = "char 0x0 ''";
    EXPECT_EQ(received(strings({{3}})), "1: cell 3x1 {'a', " + none + ", 'c'}");
    EXPECT_EQ(received(strings({{1, 7}, {3, -1}})), "1: cell 1x3 {'a', " + none + ", 'c'}");
    const auto variants = [](const std::vector<Bound>& bounds) {
        ScopedSafeArray array = safeArray(VT_VARIANT, bounds);
        auto* elements = static_cast<VARIANT*>(array->pvData);
        for (int i = 0; i < 4; ++i)
            elements[i] = variant(VT_I4, i).detach();
        elements[1] = bstr(OLESTR("b")).detach();
        elements[2] = variantOf(VT_UI1, safeArray(VT_UI1, {{2}}, "\1\2")).detach();
        return variantOf(VT_VARIANT, std::move(array));
    };
    const std::string four = "{int32 0, 'b', uint8 1x2 [1 2], int32 3";
    EXPECT_EQ(received(variants({{2}, {2}})), "1: cell 2x2 " + four + "}");
    EXPECT_EQ(received(variants({{2, 1}, {2, 1}, {1, 1}, {2, 1}})).substr(0, 46),
              "1: cell 2x2x1x2 " + four.substr(0, 30));
    EXPECT_EQ(received(variantOf(VT_VARIANT, safeArray(VT_VARIANT, {{0}, {2}}))), "1: cell 0x2 {}");
    EXPECT_EQ(received(variant(VT_ARRAY | VT_VARIANT)), "1: cell 0x0 {}");
    EXPECT_EQ(received(variant(VT_ARRAY | VT_BSTR)), "1: cell 0x0 {}");
}

TEST_F(VariantToHost, WhatStandsInAnArrayStaysAsItIs) {
    LONG number = 9;
    ScopedVariant v = variantOf(VT_VARIANT, safeArray(VT_VARIANT, {{5}}));
    auto* elements = static_cast<VARIANT*>(v->parray->pvData);
    elements[0] = real(2, VT_DATE).detach();
    elements[1] = reference(VT_I4, &number).detach();
    elements[2] = decimal(5).detach();
    elements[3].vt = VT_BYREF | VT_VARIANT;
    elements[3].pvarVal = &elements[3];
    elements[4] = variant(VT_VOID).detach();
    EXPECT_EQ(received(v.inOut()), "1: cell 5x1 {'1/1/1900', int32 9, '5', " + nan + ", " + nan +
                                       "} [" + failed + " " + unsupported + "]");
    EXPECT_EQ(elements[0].vt, VT_DATE);
    EXPECT_EQ(elements[1].vt, VT_BYREF | VT_I4);
    EXPECT_EQ(elements[2].vt, VT_DECIMAL);
}

TEST_F(VariantToHost, ArraysInArraysEndAtAThousand) {
    const auto nest = [](int depth) {
        ScopedVariant v = variant(VT_I4, 7);
        for (int i = 0; i < depth; ++i) {
            ScopedSafeArray array = safeArray(VT_VARIANT, {{1}});
            static_cast<VARIANT*>(array->pvData)[0] = v.detach();
            v = variantOf(VT_VARIANT, std::move(array));
        }
        return v;
    };
    EXPECT_EQ(received(nest(2)), "1: cell 1x1 {cell 1x1 {int32 7}}");
    EXPECT_NE(received(nest(1000)).find("{int32 7}"), std::string::npos);
    const std::string deeper = received(nest(200000)); // which ends, too
    EXPECT_NE(deeper.find("{" + nan + "}"), std::string::npos);
    EXPECT_TRUE(deeper.ends_with("[" + noArray + "]"));
}

TEST_F(VariantToHost, LockedArraysAreReadAndStayLocked) {
    for (const VARTYPE vt : {VT_I4, VT_BSTR}) {
        ScopedVariant v = variantOf(vt, safeArray(vt, {{2}}));
        ASSERT_EQ(SafeArrayLock(v->parray), S_OK);
        EXPECT_TRUE(received(v.inOut()).starts_with("1: "));
        EXPECT_EQ(v->parray->cLocks, 1u);
        SafeArrayUnlock(v->parray);
    }
    ScopedVariant full = variantOf(VT_I4, safeArray(VT_I4, {{2}}));
    full->parray->cLocks = 0xFFFF; // as often as can be
    EXPECT_EQ(received(full.inOut()), "0: " + nan + " [" + noArray + "]");
    full->parray->cLocks = 0;
}

// Descriptors that say what isn't so.
TEST_F(VariantToHost, ArraysThatLieAboutThemselvesAreNotRead) {
    const std::string refused = "0: " + nan + " [" + noArray + "]";
    const std::string refusedCell = "1: " + nan + " [" + noArray + "]";
    // An array of 2-by-2 with another element size, pointer to the data or extents.
    const auto lie = [](VARTYPE vt, ULONG size, bool hasData, ULONG rows, ULONG columns) {
        ScopedVariant v = variantOf(vt, safeArray(vt, {{2}, {2}}));
        SAFEARRAY& array = *v->parray;
        const ULONG oldSize = std::exchange(array.cbElements, size ? size : array.cbElements);
        void* const data = std::exchange(array.pvData, hasData ? array.pvData : nullptr);
        array.rgsabound[1].cElements = rows;
        array.rgsabound[0].cElements = columns;
        const std::string result = received(v.inOut());
        array.pvData = data;
        array.cbElements = oldSize;
        array.rgsabound[0].cElements = array.rgsabound[1].cElements = 2;
        return result;
    };
    constexpr ULONG huge = 0x7FFFFFFF;
    EXPECT_EQ(lie(VT_VARIANT, 0, true, huge, huge),
              "1: " + nan + " [VELMAR:COM:hxCreateCellArray_Failed]");
    for (const VARTYPE vt : {VT_R8, VT_BOOL, VT_BSTR, VT_VARIANT, VT_DISPATCH}) {
        const bool isCell = vt != VT_R8 && vt != VT_BOOL;
        const std::string& answer = isCell ? refusedCell : refused;
        EXPECT_EQ(lie(vt, 0, false, 2, 2), answer);
        EXPECT_EQ(lie(vt, 1, true, 2, 2), answer);
        EXPECT_EQ(lie(vt, 0, false, huge, huge), answer);
        EXPECT_EQ(lie(vt, 0, true, 2, 0xFFFFFFFF), isCell ? "1: cell 2x0 {}" : refused);
    }
    // The VARIANT says VARIANTs, the array holds numbers.
    ScopedVariant numbers = variantOf(VT_VARIANT, safeArray(VT_I4, {{2}}));
    EXPECT_EQ(received(numbers.inOut()), refusedCell);
    numbers->vt = VT_ARRAY | VT_I4;
    // The other way round the size gives it away.
    ScopedVariant variants = variantOf(VT_R8, safeArray(VT_VARIANT, {{2}}));
    EXPECT_EQ(received(variants.inOut()), refused);
    variants->vt = VT_ARRAY | VT_VARIANT;
}

TEST_F(VariantToHost, ArraysThatDoNotSayWhatTheyHoldHoldWhatIsDeclared) {
    ScopedVariant texts = variantOf(VT_BSTR, safeArray(VT_BSTR, {{1}}));
    static_cast<BSTR*>(texts->parray->pvData)[0] = SysAllocString(OLESTR("a"));
    const USHORT features = std::exchange(texts->parray->fFeatures, USHORT{0});
    EXPECT_EQ(received(texts.inOut()), "1: cell 1x1 {'a'}");
    texts->vt = VT_ARRAY | VT_VARIANT; // which are larger
    EXPECT_EQ(received(texts.inOut()), "1: " + nan + " [" + noArray + "]");
    texts->vt = VT_ARRAY | VT_BSTR;
    texts->parray->fFeatures = features;
}

} // namespace
