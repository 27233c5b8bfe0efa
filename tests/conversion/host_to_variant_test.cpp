// Host values on their way to a server: what VARIANT or SAFEARRAY each becomes.
#include "classmodel/namespaces.h"
#include "classmodel/object_creation.h"
#include "conversion/host_to_variant.h"
#include "host/axlink.h"
#include "host/exception.h"
#include "host/text.h"
#include "support/server_fixture.h"

#include <cmath>
#include <span>

namespace {

using namespace axlink2;
using namespace axlink2::test;
using test::Array;

const std::string noConversion = "VELMAR:COM:invalidargumenttype";
const std::string badContents = "VELMAR:COM:cell_invalid_contents";
const std::string badDimensions = "VELMAR:COM:cell_invalid_dimensions";
const std::string noSparse = "VELMAR:COM:sparse_array_notsupported";
const std::string missing = "ERROR 80020004";
constexpr double nan = NAN;

struct Options {
    bool byRef = false;
    bool forceArray = false;
};

// What the value becomes, or the error that it raises; warnings follow in brackets.
std::string sent(const hxArray* value, Options options = {}) {
    Warnings warnings;
    ReferenceHolders holders;
    ScopedVariant v;
    try {
        hostToVariant(v.inOut(), value, options.byRef, 0, 0, 0, options.forceArray, &holders);
    } catch (const hbase::core::except::IMsgIDException& error) {
        EXPECT_EQ(v->vt, VT_EMPTY);
        return error.GetErrorId();
    }
    const std::string seen = warnings.take();
    return described(v.get()) + (seen.empty() ? "" : " [" + seen + "]");
}

struct HostToVariant : ServerTest {
    ~HostToVariant() override {
        axlink::setSafeArraySingleDim(false);
        axlink::setPassSafeArrayByRef(false);
    }
};

struct Row {
    Array value;
    std::string plain;
    std::string forced; // as an element of an array parameter
    std::string byRef;
};

void expectRows(std::span<const Row> rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(described(row.value));
        EXPECT_EQ(sent(row.value.get()), row.plain);
        EXPECT_EQ(sent(row.value.get(), {.forceArray = true}), row.forced);
        EXPECT_EQ(sent(row.value.get(), {.byRef = true}), row.byRef);
    }
}

template <class T>
void expectClass(hxClassID id, const std::string& kind) {
    const std::string cube = kind + "[1,2,2] 1 2 3 4";
    const std::string six = kind + "[2,3] 1 2 3 4 5 6";
    const std::string none = kind + "[0,5]";
    // An empty double is a missing argument; by reference it is a slot to fill.
    const bool isDouble = id == hxDOUBLE_CLASS;
    const std::string empty = isDouble ? missing : "EMPTY";
    const std::string emptyByRef = isDouble ? "&VARIANT (EMPTY)" : noConversion;
    const std::string noneByRef = isDouble ? "&" + none : noConversion;
    const Row rows[] = {
        {numeric<T>(id, {1, 1}, {7}), kind + " 7", kind + "[1,1] 7", "&" + kind + " 7"},
        {numeric<T>(id, {2, 3}, {1, 2, 3, 4, 5, 6}), six, six, "&" + six},
        {numeric<T>(id, {0, 0}, {}), empty, empty, emptyByRef},
        {numeric<T>(id, {1, 0}, {}), empty, empty, emptyByRef},
        {numeric<T>(id, {0, 5}, {}), none, none, noneByRef},
        {numeric<T>(id, {1, 2, 2}, {1, 2, 3, 4}), cube, cube, "&" + cube},
    };
    expectRows(rows);
}

TEST_F(HostToVariant, NumbersOfEveryClassFollowTheirShape) {
    expectClass<double>(hxDOUBLE_CLASS, "R8");
    expectClass<float>(hxSINGLE_CLASS, "R4");
    expectClass<signed char>(hxINT8_CLASS, "I1");
    expectClass<BYTE>(hxUINT8_CLASS, "UI1");
    expectClass<SHORT>(hxINT16_CLASS, "I2");
    expectClass<USHORT>(hxUINT16_CLASS, "UI2");
    expectClass<LONG>(hxINT32_CLASS, "I4");
    expectClass<ULONG>(hxUINT32_CLASS, "UI4");
    expectClass<LONGLONG>(hxINT64_CLASS, "I8");
    expectClass<ULONGLONG>(hxUINT64_CLASS, "UI8");
}

TEST_F(HostToVariant, NaNsLogicalsTextAndCellsHaveRulesOfTheirOwn) {
    const std::string twoRows = "BSTR 'abc\\adef\\a'";
    const std::string letters = "VARIANT[1,2] (R8 1) (BSTR 'a')";
    const std::string empty = "VARIANT[1,1] (EMPTY)";
    const Row rows[] = {
        {scalar(nan), missing, missing, "&R8 nan"},
        {doubles({1, 2}, {nan, 1}), "R8[1,2] nan 1", "R8[1,2] nan 1", "&R8[1,2] nan 1"},
        {numeric<float>(hxSINGLE_CLASS, {1, 1}, {NAN}), "R4 nan", "R4[1,1] nan", "&R4 nan"},
        {logicals({1, 1}, {1}), "BOOL -1", "BOOL[1,1] -1", "&BOOL -1"},
        // A byte beyond 1 is true by itself, but not in an array.
        {logicals({1, 1}, {2}), "BOOL -1", "BOOL[1,1] 0", "&BOOL -1"},
        {logicals({1, 2}, {1, 2}), "BOOL[1,2] -1 0", "BOOL[1,2] -1 0", "&BOOL[1,2] -1 0"},
        {logicals({0, 0}, {}), "EMPTY", "EMPTY", noConversion},
        {text("ab"), "BSTR 'ab'", "BSTR 'ab'", "&BSTR 'ab'"},
        {text(""), "BSTR null", "BSTR null", "&BSTR null"},
        {chars(2, 3, u"adbecf"), twoRows, twoRows, "&" + twoRows},
        {chars(2, 1, u"ab"), "BSTR 'a\\ab\\a'", "BSTR 'a\\ab\\a'", "&BSTR 'a\\ab\\a'"},
        {chars(1, 3, {u"a\0b", 3}), "BSTR 'a'", "BSTR 'a'", "&BSTR 'a'"},
        {cell(scalar(1), text("a")), letters, letters, "&" + letters},
        {cell({0, 3}), "VARIANT[0,3]", "VARIANT[0,3]", "&VARIANT[0,3]"},
        {cell(Array()), empty, empty, "&" + empty},
        {hoststring::createStringArray(u"s"), "BSTR 's'", "BSTR 's'", "BSTR 's'"},
    };
    expectRows(rows);
}

TEST_F(HostToVariant, WhatHasNoConversionIsRefusedOrLeavesNothingAndWarns) {
    const std::string warned = "EMPTY [" + noConversion + "]";
    const auto record = [] { return Array(hxCreateStructMatrix(1, 1, 0, nullptr)); };
    const std::pair<Array, std::string> rows[] = {
        {velmar::createFunctionHandle("f", [](auto...) {}), warned},
        {record(), warned},
        {hoststring::createStringArray(1, 1, {std::nullopt}), warned},
        {hoststring::createStringArray(1, 2, {u"a", u"b"}), warned},
        {sparse(), noSparse},
        {Array(hxCreateSparseLogical(2, 2, 1)), noSparse},
        {Array(hxCreateSparse(1, 1, 1, hxCOMPLEX)), noConversion},
        {cell(record()), "VARIANT[1,1] (EMPTY) [" + noConversion + "]"},
        {nullptr, missing},
    };
    for (const auto& [value, expected] : rows)
        EXPECT_EQ(sent(value.get()), expected);
    const Array complexes = complexScalar();
    for (const Options options : {Options{}, Options{true, false}, Options{false, true}})
        EXPECT_EQ(sent(complexes.get(), options), noConversion);
}

TEST_F(HostToVariant, OneScalarByReferenceIsTheHostsOwnData) {
    const Array number = numeric<LONG>(hxINT32_CLASS, {1, 1}, {5});
    ReferenceHolders holders;
    VARIANT v;
    hostToVariant(&v, number.get(), true, 0, 0, 0, false, &holders);
    *v.plVal = 8;
    EXPECT_EQ(described(number), "int32 8");
}

TEST_F(HostToVariant, CellsAreCheckedBeforeAnythingIsMade) {
    const auto lines = [] { return chars(2, 3, u"adbecf"); };
    const std::pair<Array, std::string> rows[] = {
        {cell({2, 2}, scalar(1), text("ab"), doubles({1, 3}, {1, 2, 3}), cell(scalar(2))),
         "VARIANT[2,2] (R8 1) (BSTR 'ab') (R8[1,3] 1 2 3) (VARIANT[1,1] (R8 2))"},
        {cell(chars(3, 1, u"abc")), "VARIANT[1,1] (BSTR 'a\\ab\\ac\\a')"},
        {cell(chars(0, 3, u"")), "VARIANT[1,1] (BSTR null)"},
        {cell(lines()), badContents},
        {cell(cell(lines())), badContents},
        {cell({1, 2, 2}), badDimensions},
        {cell(doubles({1, 2, 2}, {})), badDimensions},
        {cell(sparse()), noSparse},
        {cell(text("kept"), complexScalar()), noConversion},
        {nested(1001), badContents},
        {nested(20000), badContents},
        // The depth is counted anew for each.
        {nested(2), "VARIANT[1,1] (VARIANT[1,1] (R8 1))"},
    };
    for (const auto& [value, expected] : rows)
        EXPECT_EQ(sent(value.get()), expected);
    EXPECT_TRUE(sent(nested(1000).get()).starts_with("VARIANT[1,1] (VARIANT[1,1] ("));
}

TEST_F(HostToVariant, SwitchesTurnColumnsIntoOneDimensionAndPassCellsAsReferences) {
    const Array column = doubles({3, 1}, {1, 2, 3});
    const Array letters = cell({2, 1}, text("a"), text("b"));
    EXPECT_EQ(sent(column.get()), "R8[3,1] 1 2 3");
    axlink::setSafeArraySingleDim(true);
    EXPECT_EQ(sent(column.get()), "R8[3] 1 2 3");
    EXPECT_EQ(sent(doubles({1, 3}, {1, 2, 3}).get()), "R8[1,3] 1 2 3");
    EXPECT_EQ(sent(letters.get()), "VARIANT[2] (BSTR 'a') (BSTR 'b')");
    axlink::setPassSafeArrayByRef(true);
    EXPECT_EQ(sent(letters.get()), "&VARIANT (VARIANT[2] (BSTR 'a') (BSTR 'b'))");
    EXPECT_EQ(sent(letters.get(), {.byRef = true}), "&VARIANT[2] (BSTR 'a') (BSTR 'b')");
}

TEST_F(HostToVariant, WritesToTheSubscriptOfAMatrixOfVariants) {
    std::vector<ScopedVariant> matrix(6);
    ReferenceHolders holders;
    hostToVariant(matrix[0].inOut(), text("x").get(), false, 1, 2, 2, false, &holders);
    for (std::size_t i = 0; i < matrix.size(); ++i)
        EXPECT_EQ(described(matrix[i].get()), i == 5 ? "BSTR 'x'" : "EMPTY");
}

TEST_F(HostToVariant, ArraysOfTextHoldNothingButText) {
    const auto texts = [](const Array& value) -> std::string {
        ReferenceHolders holders;
        ScopedVariant v;
        try {
            v = variantOf(VT_BSTR, ScopedSafeArray::adopt(cellToSafeArray(value.get(), VT_BSTR)));
        } catch (const hbase::core::except::IMsgIDException& error) {
            return error.GetErrorId();
        }
        return described(v.get());
    };
    EXPECT_EQ(texts(cell({2, 2}, text("a"), chars(2, 1, u"bc"), text(""), Array())),
              "BSTR[2,2] 'a' 'b\\ac\\a' '' null");
    EXPECT_EQ(texts(cell(hoststring::createStringArray(u"s"))), "BSTR[1,1] 's'");
    EXPECT_EQ(texts(cell(text("a"), scalar(1))), badContents);
    EXPECT_EQ(texts(cell(cell(text("a")))), badContents);
    EXPECT_EQ(texts(cell(hoststring::createStringArray(1, 1, {std::nullopt}))), badContents);
}

TEST_F(HostToVariant, ArraysWithoutNumbersHaveNoArrayForm) {
    Warnings warnings;
    const Array word = text("ab");
    EXPECT_EQ(arrayToSafeArray(word.get()), nullptr);
    EXPECT_EQ(warnings.take(), noConversion);
    EXPECT_EQ(charToWideText(nullptr), std::nullopt);
    EXPECT_EQ(charToWideText(scalar(1).get()), std::nullopt);
}

// A class that didn't come from a server.
class ForeignClass final : public hos::HOSClassInfo {
  public:
    const char* getName() const override { return "Foreign"; }
    void populateClass(hos::HOSClass*, void*) override {}
    void* createInstanceData() override { return nullptr; }
    void destroyInstanceData(hos::HOSInterface*, void*) override {}
};

TEST_F(HostToVariant, AForeignObjectArrivesAsNothingWithoutAWord) {
    hos::HOSPackage::getNamespace(internedId(interfaceNamespace))
        ->addClass(new ForeignClass(), 0, 2);
    const Array object = objectArray(makeObject(findClass(interfaceNamespace, "Foreign")));
    ASSERT_TRUE(hxIsA(object.get(), "handle"));
    EXPECT_EQ(sent(object.get()), "EMPTY");
}

TEST_F(HostToVariant, AnObjectLendsItsInterface) {
    const Array object = start<PlainServer>("Test.SentPlain");
    IDispatch* const server = record(object).dispatch;
    const auto& counted = *static_cast<const PlainServer*>(server);
    EXPECT_EQ(counted.references(), 1u);
    ReferenceHolders holders;
    {
        ScopedVariant v;
        hostToVariant(v.inOut(), object.get(), false, 0, 0, 0, false, &holders);
        EXPECT_EQ(v->vt, VT_DISPATCH);
        EXPECT_EQ(v->pdispVal, server);
        EXPECT_EQ(counted.references(), 2u);
        ScopedVariant inCell;
        const Array held = cell(Array(hxCreateSharedDataCopy(object.get())), scalar(1));
        hostToVariant(inCell.inOut(), held.get(), false, 0, 0, 0, false, &holders);
        EXPECT_EQ(counted.references(), 3u);
    }
    EXPECT_EQ(counted.references(), 1u);
    for (const std::size_t count : {0u, 1u}) {
        const Array without(hoCreateHOSMatrix(count, count, hoGetClassID(object.get())));
        EXPECT_EQ(sent(without.get()), "EMPTY");
    }
    // One that has no server is no more of a value than one that has ended.
    const Array serverless = objectArray(makeObject(classOf(object)));
    EXPECT_EQ(sent(serverless.get()), "VELMAR:COM:invalidmethodname");
    destroy(object);
    const Array held = cell(Array(hxCreateSharedDataCopy(object.get())));
    for (const Array* value : {&object, &held})
        EXPECT_EQ(sent(value->get()), "VELMAR:class:InvalidHandle");
}

} // namespace
