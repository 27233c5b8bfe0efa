// Host values on their way to a server: what VARIANT or SAFEARRAY each becomes.
#include "classmodel/instance_record.h"
#include "classmodel/namespaces.h"
#include "classmodel/object_creation.h"
#include "conversion/host_to_variant.h"
#include "conversion/values.h"
#include "host/axlink.h"
#include "host/exception.h"
#include "host/text.h"
#include "support/server_fixture.h"

#include <limits>

namespace {

using namespace axlink2;
using namespace axlink2::test;
using test::Array;

const std::string noConversion = "VELMAR:COM:invalidargumenttype";
const std::string badContents = "VELMAR:COM:cell_invalid_contents";
const std::string badDimensions = "VELMAR:COM:cell_invalid_dimensions";
const std::string noSparse = "VELMAR:COM:sparse_array_notsupported";
const std::string missing = "ERROR 80020004";
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

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
        hostToVariant(v.inOut(), value, options.byRef, 0, 0, 0, options.forceArray, holders);
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

void expectRows(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(described(row.value));
        EXPECT_EQ(sent(row.value.get()), row.plain);
        EXPECT_EQ(sent(row.value.get(), {.forceArray = true}), row.forced);
        EXPECT_EQ(sent(row.value.get(), {.byRef = true}), row.byRef);
    }
}

template <class... Rows>
std::vector<Row> rowsOf(Rows... rows) {
    std::vector<Row> all;
    (all.push_back(std::move(rows)), ...);
    return all;
}

template <class T>
void expectClass(hxClassID id, const std::string& kind) {
    const std::string one = kind + "[1,1] 7";
    const std::string six = kind + "[2,3] 1 2 3 4 5 6";
    const std::string none = kind + "[0,5]";
    // An empty double is a missing argument; by reference it is a slot to fill.
    const bool isDouble = id == hxDOUBLE_CLASS;
    const std::string empty = isDouble ? missing : "EMPTY";
    const std::string emptyByRef = isDouble ? "&VARIANT (EMPTY)" : noConversion;
    const std::string noneByRef = isDouble ? "&" + none : noConversion;
    expectRows(rowsOf(Row{numeric<T>(id, {1, 1}, {7}), kind + " 7", one, "&" + kind + " 7"},
                      Row{numeric<T>(id, {2, 3}, {1, 2, 3, 4, 5, 6}), six, six, "&" + six},
                      Row{numeric<T>(id, {0, 0}, {}), empty, empty, emptyByRef},
                      Row{numeric<T>(id, {1, 0}, {}), empty, empty, emptyByRef},
                      Row{numeric<T>(id, {0, 5}, {}), none, none, noneByRef},
                      Row{numeric<T>(id, {1, 2, 2}, {1, 2, 3, 4}), kind + "[1,2,2] 1 2 3 4",
                          kind + "[1,2,2] 1 2 3 4", "&" + kind + "[1,2,2] 1 2 3 4"}));
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
    expectRows(rowsOf(
        Row{scalar(nan), missing, missing, "&R8 nan"},
        Row{doubles({1, 2}, {nan, 1}), "R8[1,2] nan 1", "R8[1,2] nan 1", "&R8[1,2] nan 1"},
        Row{numeric<float>(hxSINGLE_CLASS, {1, 1}, {std::numeric_limits<float>::quiet_NaN()}),
            "R4 nan", "R4[1,1] nan", "&R4 nan"},
        Row{logicals({1, 1}, {1}), "BOOL -1", "BOOL[1,1] -1", "&BOOL -1"},
        // A byte beyond 1 is true by itself, but not in an array.
        Row{logicals({1, 1}, {2}), "BOOL -1", "BOOL[1,1] 0", "&BOOL -1"},
        Row{logicals({1, 3}, {1, 0, 2}), "BOOL[1,3] -1 0 0", "BOOL[1,3] -1 0 0",
            "&BOOL[1,3] -1 0 0"},
        Row{logicals({0, 0}, {}), "EMPTY", "EMPTY", noConversion},
        Row{text("ab"), "BSTR 'ab'", "BSTR 'ab'", "&BSTR 'ab'"},
        Row{text(""), "BSTR null", "BSTR null", "&BSTR null"},
        Row{chars(2, 3, u"adbecf"), twoRows, twoRows, "&" + twoRows},
        Row{chars(2, 1, u"ab"), "BSTR 'a\\ab\\a'", "BSTR 'a\\ab\\a'", "&BSTR 'a\\ab\\a'"},
        Row{harray::create(std::u16string_view(u"a\0b", 3)), "BSTR 'a'", "BSTR 'a'", "&BSTR 'a'"},
        Row{cell({1, 2}, scalar(1), text("a")), letters, letters, "&" + letters},
        Row{cell({0, 3}), "VARIANT[0,3]", "VARIANT[0,3]", "&VARIANT[0,3]"},
        Row{cell({1, 1}, Array()), "VARIANT[1,1] (EMPTY)", "VARIANT[1,1] (EMPTY)",
            "&VARIANT[1,1] (EMPTY)"},
        Row{hoststring::createStringArray(u"s"), "BSTR 's'", "BSTR 's'", "BSTR 's'"}));
}

TEST_F(HostToVariant, WhatHasNoConversionIsRefusedOrLeavesNothingAndWarns) {
    const std::string warned = "EMPTY [" + noConversion + "]";
    const auto function = velmar::createFunctionHandle("f", [](auto...) {});
    const Array record(hxCreateStructMatrix(1, 1, 0, nullptr));
    const Array missingString = hoststring::createStringArray(1, 1, {std::nullopt});
    const Array twoStrings = hoststring::createStringArray(1, 2, {u"a", u"b"});
    const Array sparseLogical(hxCreateSparseLogical(2, 2, 1));
    const Array sparseComplexScalar(hxCreateSparse(1, 1, 1, hxCOMPLEX));
    const std::pair<const hxArray*, std::string> rows[] = {
        {function.get(), warned},        {record.get(), warned},
        {missingString.get(), warned},   {twoStrings.get(), warned},
        {sparse().release(), noSparse}, // owned below
        {sparseLogical.get(), noSparse}, {sparseComplexScalar.get(), noConversion},
    };
    const Array owned(const_cast<hxArray*>(rows[4].first));
    for (const auto& [value, expected] : rows)
        EXPECT_EQ(sent(value), expected);
    const Array complexes = complexScalar();
    for (const Options options : {Options{}, Options{true, false}, Options{false, true}})
        EXPECT_EQ(sent(complexes.get(), options), noConversion);
    EXPECT_EQ(sent(nullptr), missing);
    EXPECT_EQ(sent(cell({1, 1}, Array(hxCreateStructMatrix(1, 1, 0, nullptr))).get()),
              "VARIANT[1,1] (EMPTY) [" + noConversion + "]");
}

TEST_F(HostToVariant, OneScalarByReferenceIsTheHostsOwnData) {
    const Array number = numeric<LONG>(hxINT32_CLASS, {1, 1}, {5});
    ReferenceHolders holders;
    VARIANT v;
    hostToVariant(&v, number.get(), true, 0, 0, 0, false, holders);
    *v.plVal = 8;
    EXPECT_EQ(described(number), "int32 8");
}

TEST_F(HostToVariant, CellsAreCheckedBeforeAnythingIsMade) {
    const std::pair<Array, std::string> rows[] = {
        {cell({2, 2}, scalar(1), text("ab"), doubles({1, 3}, {1, 2, 3}), cell({1, 1}, scalar(2))),
         "VARIANT[2,2] (R8 1) (BSTR 'ab') (R8[1,3] 1 2 3) (VARIANT[1,1] (R8 2))"},
        {cell({1, 1}, chars(1, 3, u"abc")), "VARIANT[1,1] (BSTR 'abc')"},
        {cell({1, 1}, chars(3, 1, u"abc")), "VARIANT[1,1] (BSTR 'a\\ab\\ac\\a')"},
        {cell({1, 1}, chars(0, 3, u"")), "VARIANT[1,1] (BSTR null)"},
        {cell({1, 1}, chars(2, 3, u"adbecf")), badContents},
        {cell({1, 1}, cell({1, 1}, chars(2, 3, u"adbecf"))), badContents},
        {cell({1, 2, 2}), badDimensions},
        {cell({1, 1}, doubles({1, 2, 2}, {})), badDimensions},
        {cell({1, 1}, sparse()), noSparse},
        {cell({1, 2}, text("kept"), complexScalar()), noConversion},
        {nested(1000), ""},
        {nested(1001), badContents},
        {nested(20000), badContents},
    };
    for (const auto& [value, expected] : rows)
        if (!expected.empty())
            EXPECT_EQ(sent(value.get()), expected);
        else
            EXPECT_TRUE(sent(value.get()).starts_with("VARIANT[1,1] (VARIANT[1,1] ("));
    // The depth is counted anew for each.
    EXPECT_EQ(sent(nested(2).get()), "VARIANT[1,1] (VARIANT[1,1] (R8 1))");
}

TEST_F(HostToVariant, ASwitchTurnsColumnsIntoArraysOfOneDimension) {
    const Array column = doubles({3, 1}, {1, 2, 3});
    const Array row = doubles({1, 3}, {1, 2, 3});
    const Array texts = cell({2, 1}, text("a"), text("b"));
    EXPECT_EQ(sent(column.get()), "R8[3,1] 1 2 3");
    axlink::setSafeArraySingleDim(true);
    EXPECT_EQ(sent(column.get()), "R8[3] 1 2 3");
    EXPECT_EQ(sent(row.get()), "R8[1,3] 1 2 3");
    EXPECT_EQ(sent(texts.get()), "VARIANT[2] (BSTR 'a') (BSTR 'b')");
}

TEST_F(HostToVariant, ASwitchPassesCellsAsReferencesToTheirArray) {
    const Array texts = cell({1, 1}, text("a"));
    axlink::setPassSafeArrayByRef(true);
    EXPECT_EQ(sent(texts.get()), "&VARIANT (VARIANT[1,1] (BSTR 'a'))");
    EXPECT_EQ(sent(texts.get(), {.byRef = true}), "&VARIANT[1,1] (BSTR 'a')");
}

TEST_F(HostToVariant, WritesToTheSubscriptOfAMatrixOfVariants) {
    std::vector<ScopedVariant> matrix(6);
    ReferenceHolders holders;
    hostToVariant(matrix[0].inOut(), text("x").get(), false, 1, 2, 2, false, holders);
    for (std::size_t i = 0; i < matrix.size(); ++i)
        EXPECT_EQ(described(matrix[i].get()), i == 5 ? "BSTR 'x'" : "EMPTY");
}

TEST_F(HostToVariant, ArraysOfTextHoldNothingButText) {
    const auto texts = [](const Array& value) -> std::string {
        ReferenceHolders holders;
        ScopedVariant v;
        try {
            v = variantOf(VT_BSTR,
                          ScopedSafeArray::adopt(cellToSafeArray(value.get(), VT_BSTR, holders)));
        } catch (const hbase::core::except::IMsgIDException& error) {
            return error.GetErrorId();
        }
        return described(v.get());
    };
    EXPECT_EQ(texts(cell({2, 2}, text("a"), chars(2, 1, u"bc"), text(""), Array())),
              "BSTR[2,2] 'a' 'b\\ac\\a' '' null");
    EXPECT_EQ(texts(cell({1, 1}, hoststring::createStringArray(u"s"))), "BSTR[1,1] 's'");
    EXPECT_EQ(texts(cell({1, 2}, text("a"), scalar(1))), badContents);
    EXPECT_EQ(texts(cell({1, 1}, cell({1, 1}, text("a")))), badContents);
    EXPECT_EQ(texts(cell({1, 1}, hoststring::createStringArray(1, 1, {std::nullopt}))),
              badContents);
}

TEST_F(HostToVariant, ArraysWithoutNumbersHaveNoArrayForm) {
    Warnings warnings;
    const Array word = text("ab");
    EXPECT_EQ(arrayToSafeArray(word.get()), nullptr);
    EXPECT_EQ(warnings.take(), noConversion);
    EXPECT_EQ(charToWideText(nullptr), std::nullopt);
    EXPECT_EQ(charToWideText(scalar(1).get()), std::nullopt);
}

class Plain : public kit::DispatchObject {
  public:
    Plain() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition() {
        static const auto made =
            kit::ClassBuilder<Plain>("SentPlain", kit::guid("5A0E4F61-6D4C-4E0B-8C41-0A1B6C3D0101"),
                                     kit::guid("5A0E4F61-6D4C-4E0B-8C41-0A1B6C3D0102"))
                .build();
        return *made;
    }
};

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
    const Array object = start<Plain>("Test.SentPlain");
    IDispatch* const server = recordOf(hoGetArrayElement(object.get(), 0))->dispatch;
    const auto& counted = *static_cast<const Plain*>(server);
    EXPECT_EQ(counted.references(), 1u);
    ReferenceHolders holders;
    {
        ScopedVariant v;
        hostToVariant(v.inOut(), object.get(), false, 0, 0, 0, false, holders);
        EXPECT_EQ(v->vt, VT_DISPATCH);
        EXPECT_EQ(v->pdispVal, server);
        EXPECT_EQ(counted.references(), 2u);
        ScopedVariant inCell;
        const Array held = cell({1, 2}, Array(hxCreateSharedDataCopy(object.get())), scalar(1));
        hostToVariant(inCell.inOut(), held.get(), false, 0, 0, 0, false, holders);
        EXPECT_EQ(counted.references(), 3u);
    }
    EXPECT_EQ(counted.references(), 1u);
    const Array none(hoCreateHOSMatrix(1, 1, hoGetClassID(object.get())));
    EXPECT_EQ(sent(none.get()), "EMPTY");
    const Array nothing(hoCreateHOSMatrix(0, 0, hoGetClassID(object.get())));
    EXPECT_EQ(sent(nothing.get()), "EMPTY");
    hoGetArrayElement(object.get(), 0)->destroy(hos::HOSGetPublicClient());
    EXPECT_EQ(sent(object.get()), "EMPTY");
}

} // namespace
