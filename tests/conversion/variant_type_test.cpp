// The host's types "Variant" and "SafeArray(...)", and the converters whose values they are.
#include "comruntime/interned.h"
#include "conversion/array_converters.h"
#include "conversion/variant_instance.h"
#include "host/axlink.h"
#include "support/alive_check.h"
#include "support/errors.h"
#include "support/registered_module.h"
#include "support/values.h"

#include <limits>

namespace {

using namespace axlink2;
using namespace axlink2::test;
using hos::HOSValue;
using test::Array;

hos::HOSDataType& typeOf(ArgVarConverter& converter) {
    return *hos::HOSDataTypePtrHelper::getObject(converter.getDataType());
}

// A value of a data type, and its end.
class Value {
  public:
    Value(ArgVarConverter& converter, const hxArray* array) : type_(typeOf(converter)) {
        conversion().convertFromHost(&value_, array);
    }
    Value(hos::HOSDataType& type, HOSValue value) : type_(type), value_(value) {}
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;
    ~Value() { type_.releaseValue(value_); }

    HOSValue get() const { return value_; }
    const VARIANT& variant() const { return *value_.pointer<COMVariantInstance>()->variant; }
    Array toHost() const {
        hxArray* out = nullptr;
        conversion().convertToHost(&out, value_);
        return Array(out);
    }

  private:
    hos::HOSTypeConversion& conversion() const {
        return *hos::HOSTypeRepository::getConversion(internedId("any"),
                                                      internedId(type_.getName()));
    }

    hos::HOSDataType& type_;
    HOSValue value_;
};

ArgVarConverter& any() { return *getArgConverter(VARTYPE{VT_VARIANT}); }
ArgVarConverter& array(VARTYPE vt) { return *getArgConverter(COMArrayType{vt, false}); }
ArgVarConverter& arrayPointer(VARTYPE vt) { return *getArgConverter(COMArrayType{vt, true}); }

struct VariantTypes : AliveCheck {};

TEST_F(VariantTypes, AreNamedAfterTheElementsAndSharedByName) {
    EXPECT_STREQ(typeOf(any()).getName(), "Variant");
    EXPECT_STREQ(typeOf(array(VT_R8)).getName(), "SafeArray(double)");
    EXPECT_STREQ(typeOf(array(VT_R4)).getName(), "SafeArray(single)");
    EXPECT_STREQ(typeOf(array(VT_BOOL)).getName(), "SafeArray(bool)");
    EXPECT_STREQ(typeOf(array(VT_UI1)).getName(), "SafeArray(char)");
    EXPECT_STREQ(typeOf(arrayPointer(VT_VARIANT)).getName(), "SafeArray Pointer(Variant)");
    EXPECT_EQ(&array(VT_R8), &array(VT_R8));
    EXPECT_NE(&array(VT_R8), &arrayPointer(VT_R8));
    EXPECT_NE(&array(VT_I4), &array(VT_INT));
    EXPECT_EQ(&typeOf(array(VT_I4)), &typeOf(array(VT_INT)));
    EXPECT_EQ(array(VT_R8).vartype, VT_R8);
    EXPECT_EQ(arrayPointer(VT_R8).vartype, VT_R8 | VT_ARRAY);
}

TEST_F(VariantTypes, TakeAnyArray) {
    struct Row {
        ArgVarConverter& converter;
        Array value;
        std::string expected;
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const auto two = [] { return cell(text("a"), text("b")); };
    const Row rows[] = {
        {any(), Array(), "ERROR 80020004"},
        {any(), doubles({0, 0}, {}), "ERROR 80020004"},
        {any(), scalar(3.5), "R8 3.5"},
        {any(), two(), "VARIANT[1,2] (BSTR 'a') (BSTR 'b')"},
        {array(VT_R8), scalar(3.5), "R8[1,1] 3.5"},
        {array(VT_R8), scalar(nan), "ERROR 80020004"},
        {array(VT_R8), doubles({0, 0}, {}), "ERROR 80020004"},
        {array(VT_I4), doubles({1, 2}, {1, 2}), "R8[1,2] 1 2"}, // the server coerces
        {array(VT_BSTR), text("a"), "BSTR 'a'"},
        {array(VT_BSTR), two(), "BSTR[1,2] 'a' 'b'"},
        {array(VT_VARIANT), two(), "VARIANT[1,2] (BSTR 'a') (BSTR 'b')"},
        {arrayPointer(VT_R8), doubles({1, 2}, {1, 2}), "&R8[1,2] 1 2"},
        {arrayPointer(VT_BSTR), two(), "&BSTR[1,2] 'a' 'b'"},
        {arrayPointer(VT_VARIANT), two(), "&VARIANT[1,2] (BSTR 'a') (BSTR 'b')"},
        // One number is an array of one there, of the number's own type.
        {arrayPointer(VT_R8), scalar(2), "&R8[1,1] 2"},
        {arrayPointer(VT_I4), scalar(nan), "&R8[1,1] nan"},
        {arrayPointer(VT_R8), logicals({1, 1}, {1}), "&BOOL[1,1] -1"},
        {arrayPointer(VT_R8), doubles({0, 0}, {}), "&VARIANT (EMPTY)"},
        {arrayPointer(VT_BSTR), text("a"), "&BSTR 'a'"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(described(Value(row.converter, row.value.get()).variant()), row.expected);
    EXPECT_EQ(errorOf([] { Value(any(), complexScalar().get()); }),
              "VELMAR:COM:invalidargumenttype");
    EXPECT_EQ(errorOf([] {
                  Value(array(VT_BSTR), cell({1, 1}, scalar(1)).get());
              }),
              "VELMAR:COM:cell_invalid_contents");
}

TEST_F(VariantTypes, ClonesAreValuesOfTheirOwnThatShareWhatTheyReferTo) {
    HOSValue clone;
    {
        const Array numbers = doubles({1, 2}, {1, 2});
        const Value original(any(), numbers.get());
        clone = typeOf(any()).cloneValue(original.get());
    }
    EXPECT_EQ(described(Value(typeOf(any()), clone).variant()), "R8[1,2] 1 2");
    {
        const Value original(arrayPointer(VT_BSTR), text("a").get());
        clone = typeOf(arrayPointer(VT_BSTR)).cloneValue(original.get());
        EXPECT_EQ(clone.pointer<COMVariantInstance>()->variant->pbstrVal,
                  original.variant().pbstrVal);
    }
    // What it refers to outlives the first of the two.
    EXPECT_EQ(described(Value(typeOf(any()), clone).variant()), "&BSTR 'a'");
    EXPECT_TRUE(typeOf(any()).cloneValue({}).isNull());
    typeOf(any()).releaseValue({});
}

TEST_F(VariantTypes, GiveAnArrayBackToTheHost) {
    const Array value = cell(scalar(1), text("a"));
    EXPECT_EQ(described(Value(any(), value.get()).toHost()), "cell 1x2 {double 1, 'a'}");
    Warnings warnings;
    EXPECT_EQ(Value(typeOf(any()), {}).toHost(), nullptr);
    EXPECT_EQ(warnings.take(), "");
    const ScopedVariant nowhere = reference(VT_I4, nullptr);
    EXPECT_EQ(described(Value(typeOf(any()), any().fromVariant(nowhere.get())).toHost()),
              "double nan");
    EXPECT_EQ(warnings.take(), "VELMAR:COM:variant_conversion_failed");
}

TEST_F(VariantTypes, ConvertersHandValuesToACall) {
    const Array numbers = doubles({1, 2}, {1, 2});
    for (const bool byRef : {false, true}) {
        ScopedVariant out;
        ScopedVariant backing;
        any().toVariant(Value(any(), numbers.get()).get(), out.inOut(), backing.inOut(), byRef);
        EXPECT_EQ(described(out.get()), byRef ? "&R8[1,2] 1 2" : "R8[1,2] 1 2");
        EXPECT_EQ(described(backing.get()), byRef ? "R8[1,2] 1 2" : "EMPTY");
        ScopedVariant plain;
        array(VT_R8).toVariant(Value(array(VT_R8), numbers.get()).get(), plain.inOut(), nullptr,
                               byRef);
        EXPECT_EQ(described(plain.get()), "R8[1,2] 1 2");
    }
    ScopedVariant out;
    any().toVariant({}, out.inOut(), nullptr, false);
    array(VT_R8).toVariant({}, out.inOut(), nullptr, false);
    arrayPointer(VT_R8).toVariant({}, out.inOut(), nullptr, true);
    EXPECT_EQ(out->vt, VT_EMPTY);
}

TEST_F(VariantTypes, AServerMayReplaceAnArrayThatItGotByReference) {
    ScopedVariant backing;
    {
        const Value value(arrayPointer(VT_R8), doubles({1, 2}, {1, 2}).get());
        VARIANT out{};
        arrayPointer(VT_R8).toVariant(value.get(), &out, backing.inOut(), true);
        ASSERT_EQ(described(out), "&R8[1,2] 1 2");
        ASSERT_EQ(SafeArrayDestroy(*out.pparray), S_OK);
        const double replacement[] = {7, 8, 9};
        *out.pparray = safeArray(VT_R8, {{3}}, replacement).detach();
    }
    EXPECT_EQ(described(backing.get()), "R8[3] 7 8 9");

    // What is no array goes as it stands, and what the server makes of it can be read.
    const Array word = text("a");
    const Value value(arrayPointer(VT_R8), word.get());
    ScopedVariant out;
    ScopedVariant behind;
    arrayPointer(VT_R8).toVariant(value.get(), out.inOut(), behind.inOut(), true);
    EXPECT_EQ(described(out.get()), "&BSTR 'a'");
    EXPECT_EQ(out->pbstrVal, &behind->bstrVal);

    // An empty double is an array of none, of the declared type also where a word serves several.
    const Array nothing = doubles({0, 0}, {});
    for (const auto& [vt, expected] :
         {std::pair(VT_R8, "&R8[0,0]"), {VT_DATE, "&DATE[0,0]"}, {VT_BSTR, "&BSTR[0,0]"}}) {
        const Value slot(arrayPointer(static_cast<VARTYPE>(vt)), nothing.get());
        ScopedVariant passed;
        ScopedVariant filled;
        arrayPointer(static_cast<VARTYPE>(vt))
            .toVariant(slot.get(), passed.inOut(), filled.inOut(), true);
        EXPECT_EQ(described(passed.get()), expected);
        EXPECT_EQ(passed->pparray, &filled->parray);
    }
}

TEST_F(VariantTypes, WhatIsMissingOrEmptyGoesByReferenceAsAWhole) {
    const std::pair<Array, std::string> rows[] = {
        {Array(), "&VARIANT (ERROR 80020004)"},
        {doubles({0, 0}, {}), "&VARIANT (ERROR 80020004)"},
        {numeric<LONG>(hxINT32_CLASS, {0, 0}, {}), "&VARIANT (EMPTY)"},
        {scalar(2), "&R8 2"},
    };
    for (const auto& [given, expected] : rows) {
        const Value value(any(), given.get());
        ScopedVariant out;
        ScopedVariant backing;
        any().toVariant(value.get(), out.inOut(), backing.inOut(), true);
        EXPECT_EQ(described(out.get()), expected);
    }
}

// An inner cell would refer to what has gone with the conversion of the outer one.
TEST_F(VariantTypes, OnlyTheOutermostCellGoesByReference) {
    axlink::setPassSafeArrayByRef(true);
    const Array nested = cell(scalar(1), cell(scalar(2)));
    const std::string inner = "VARIANT[1,2] (R8 1) (VARIANT[1,1] (R8 2))";
    const Value value(any(), nested.get());
    EXPECT_EQ(described(value.variant()), "&VARIANT (" + inner + ")");
    for (const bool byRef : {false, true}) {
        const Value again(any(), nested.get());
        ScopedVariant out;
        ScopedVariant backing;
        any().toVariant(again.get(), out.inOut(), backing.inOut(), byRef);
        EXPECT_EQ(described(out.get()), byRef ? "&" + inner : "&VARIANT (" + inner + ")");
    }
    axlink::setPassSafeArrayByRef(false);
}

} // namespace
