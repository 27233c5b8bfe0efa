// Arrays: shapes, elements, sharing and limits.
#include "host/array_store.h"
#include "tests/host/host_test.h"

#include <limits>
#include <new>
#include <thread>

using namespace host_test;

class Arrays : public HostTest {};

TEST_F(Arrays, OfEveryClassKnowTheirNameSizeAndAlignment) {
    const struct {
        hxClassID type;
        const char* name;
        std::size_t bytes;
    } rows[] = {{hxLOGICAL_CLASS, "logical", 1}, {hxCHAR_CLASS, "char", 2},
                {hxDOUBLE_CLASS, "double", 8},   {hxSINGLE_CLASS, "single", 4},
                {hxINT8_CLASS, "int8", 1},       {hxUINT8_CLASS, "uint8", 1},
                {hxINT16_CLASS, "int16", 2},     {hxUINT16_CLASS, "uint16", 2},
                {hxINT32_CLASS, "int32", 4},     {hxUINT32_CLASS, "uint32", 4},
                {hxINT64_CLASS, "int64", 8},     {hxUINT64_CLASS, "uint64", 8}};
    for (const auto& row : rows)
        for (std::size_t count : {1u, 100u}) {
            const unique_array array = zeros(1, count, row.type);
            EXPECT_STREQ(hxGetClassName(array.get()), row.name);
            EXPECT_EQ(hxGetElementSize(array.get()), row.bytes);
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(hxGetData(array.get())) % 16, 0u);
        }
    EXPECT_EQ(errorOf([] { zeros(1, 1, hxCELL_CLASS); }), "VELMAR:array:NoSuchClass");
}

TEST_F(Arrays, DropTrailingExtentsOfOneAndGiveColumnsForOneExtent) {
    const std::size_t extents[] = {2, 3, 4, 1};
    const unique_array array(hxCreateNumericArray(4, extents, hxDOUBLE_CLASS, hxREAL));
    EXPECT_EQ(hxGetNumberOfDimensions(array.get()), 3u);
    EXPECT_EQ(hxGetN(array.get()), 12u);
    EXPECT_EQ(hxGetNumberOfElements(array.get()), 24u);
    const unique_array column(hxCreateLogicalArray(1, extents));
    EXPECT_EQ(hxGetM(column.get()), 2u);
    EXPECT_EQ(hxGetN(column.get()), 1u);
}

TEST_F(Arrays, TooLargeForMemoryAreRefused) {
    const std::size_t huge = std::numeric_limits<std::size_t>::max();
    EXPECT_THROW(zeros(huge, huge), std::bad_alloc);
    EXPECT_THROW(zeros(huge / 8, 1), std::bad_alloc);
    EXPECT_THROW(unique_array(hxCreateCellMatrix(huge / 4, 1)), std::bad_alloc);
    EXPECT_THROW(unique_array(hxCreateSparse(1, huge, 1, hxREAL)), std::bad_alloc);
}

TEST_F(Arrays, AreCopiedWhenACopyIsWrittenTo) {
    for (std::size_t count : {1u, 50u}) {
        const unique_array first = row(std::vector<double>(count, 4));
        const unique_array second(hxCreateSharedDataCopy(first.get()));
        if (count > 1) {
            EXPECT_EQ(hxGetData(first.get()), hxGetData(second.get()));
        }
        *static_cast<double*>(hxGetWritableData(second.get())) = 9;
        EXPECT_EQ(hxGetScalar(first.get()), 4);
        EXPECT_EQ(hxGetScalar(second.get()), 9);
    }
}

TEST_F(Arrays, UnshareShallowKeepsTheElementsOfACellShared) {
    unique_array cell(hxCreateCellMatrix(1, 3));
    hxSetCell(cell.get(), 0, row({1, 2, 3, 4, 5, 6, 7}).release());
    const unique_array copy(hxCreateSharedDataCopy(cell.get()));
    cell.reset(hxUnshareShallow(cell.release()));
    EXPECT_NE(hxGetCell(cell.get(), 0), hxGetCell(copy.get(), 0));
    EXPECT_EQ(hxGetData(hxGetCell(cell.get(), 0)), hxGetData(hxGetCell(copy.get(), 0)));
    hxReplaceCell(cell.get(), 0, nullptr);
    EXPECT_EQ(hxGetNumberOfElements(hxGetCell(copy.get(), 0)), 7u);
}

TEST_F(Arrays, MadeInOneThreadMayEndInAnother) {
    const std::size_t before = hxLiveArrayCount();
    unique_array kept[100];
    std::thread([&] {
        for (unique_array& one : kept)
            one = number(3);
    }).join();
    EXPECT_EQ(hxLiveArrayCount(), before + std::size(kept));
    EXPECT_EQ(hxGetScalar(kept[99].get()), 3);
    std::thread([&] {
        for (unique_array& one : kept)
            one.reset();
    }).join();
    EXPECT_EQ(hxLiveArrayCount(), before);
}

TEST_F(Arrays, SubscriptsAreCheckedAndTheLastOneSpansTheRest) {
    const std::size_t extents[] = {2, 3, 4};
    const unique_array array(hxCreateNumericArray(3, extents, hxINT8_CLASS, hxREAL));
    const struct {
        std::vector<std::size_t> subscripts;
        int index; // -1: outside
    } rows[] = {{{1, 2, 3}, 23}, {{1, 11}, 23}, {{23}, 23}, {{0, 1}, 2},       {{1, 2, 3, 0}, 23},
                {{2, 0, 0}, -1}, {{0, 12}, -1}, {{24}, -1}, {{0, 0, 0, 1}, -1}};
    for (const auto& row : rows) {
        int index = -1;
        const std::string error = errorOf([&] {
            index = static_cast<int>(
                hxCalcSingleSubscript(array.get(), row.subscripts.size(), row.subscripts.data()));
        });
        EXPECT_EQ(index, row.index);
        EXPECT_EQ(error.empty(), row.index >= 0) << error;
    }
}

TEST_F(Arrays, SetDimensionsKeepsTheNumberOfElements) {
    const unique_array array = row({1, 2, 3, 4, 5, 6});
    const std::size_t good[] = {3, 2};
    const std::size_t bad[] = {4, 2};
    EXPECT_FALSE(hxSetDimensions(array.get(), 2, bad));
    EXPECT_TRUE(hxSetDimensions(array.get(), 2, good));
    EXPECT_EQ(hxGetM(array.get()), 3u);
}

TEST_F(Arrays, CellsOwnTheirElementsAndCheckTheIndex) {
    const unique_array cell(hxCreateCellMatrix(1, 2));
    EXPECT_EQ(hxGetCell(cell.get(), 1), nullptr);
    hxSetCell(cell.get(), 1, text("a").release());
    hxReplaceCell(cell.get(), 1, text("b").release());
    EXPECT_EQ(textOf(hxGetCell(cell.get(), 1)), "b");
    EXPECT_EQ(errorOf([&] { hxGetCell(cell.get(), 2); }), "VELMAR:badsubscript");
    EXPECT_EQ(errorOf([&] { hxSetCell(cell.get(), 2, text("lost").release()); }),
              "VELMAR:badsubscript");
    EXPECT_EQ(errorOf([] { hxGetCell(number(1).get(), 0); }), "VELMAR:array:WrongClass");
}

TEST_F(Arrays, StructsAddReplaceAndRemoveFieldsForEveryElement) {
    const char* names[] = {"a", "b"};
    const unique_array array(hxCreateStructMatrix(1, 2, 2, names));
    hxSetField(array.get(), 1, "b", number(5).release());
    hxSetField(array.get(), 0, "c", number(6).release());
    hxSetField(array.get(), 0, "c", number(7).release());
    const unique_array before(hxCreateSharedDataCopy(array.get()));
    EXPECT_EQ(hxGetFieldNumber(array.get(), "c"), 2);
    EXPECT_EQ(hxGetFieldNumber(array.get(), "C"), -1);
    hxRemoveField(array.get(), 0);
    EXPECT_EQ(get_struct_field_names(array.get()), (std::vector<std::string>{"b", "c"}));
    EXPECT_EQ(get_number_of_struct_fields(before.get()), 3);
    EXPECT_EQ(hxGetScalar(hxGetField(array.get(), 1, "b")), 5);
    EXPECT_EQ(hxGetScalar(hxGetField(array.get(), 0, "c")), 7);
    EXPECT_EQ(hxGetField(array.get(), 1, "c"), nullptr);
    EXPECT_EQ(hxGetField(array.get(), 1, "none"), nullptr);
    EXPECT_EQ(errorOf([&] { hxGetField(array.get(), 2, "b"); }), "VELMAR:badsubscript");
    EXPECT_EQ(errorOf([&] { hxGetFieldByNumber(array.get(), 0, -1); }), "VELMAR:badsubscript");
}

TEST_F(Arrays, StructOfOneFieldLosesItsLastFieldAndGetsAnother) {
    const char* names[] = {"only"};
    const unique_array array(hxCreateStructMatrix(1, 1, 1, names));
    hxSetField(array.get(), 0, "only", number(3).release());
    const unique_array copy(hxCreateSharedDataCopy(array.get()));
    hxRemoveField(array.get(), 0);
    hxSetField(array.get(), 0, "next", number(4).release());
    EXPECT_EQ(hxGetScalar(hxGetField(array.get(), 0, "next")), 4);
    EXPECT_EQ(hxGetScalar(hxGetField(copy.get(), 0, "only")), 3);

    // Many more, by whatever way a field is found.
    for (int i = 0; i < 40; ++i) {
        const std::string name = "f" + std::to_string(i);
        hxSetField(array.get(), 0, name.c_str(), number(i).release());
        EXPECT_EQ(hxGetFieldNumber(array.get(), name.c_str()), i + 1);
        EXPECT_EQ(hxGetFieldNumber(array.get(), "next"), 0);
    }
    const unique_array many(hxCreateSharedDataCopy(array.get()));
    hxSetField(array.get(), 0, "f40", number(40).release());
    EXPECT_EQ(hxGetFieldNumber(many.get(), "f40"), -1);
    EXPECT_EQ(hxGetScalar(hxGetField(array.get(), 0, "f17")), 17);
    EXPECT_EQ(hxGetScalar(hxGetField(many.get(), 0, "f39")), 39);
}

TEST_F(Arrays, SparseArraysKeepTheirIndexAndFirstElement) {
    const unique_array array(hxCreateSparse(3, 2, 2, hxREAL));
    auto* numbers = static_cast<double*>(hxGetWritableData(array.get()));
    numbers[0] = 5;
    numbers[1] = 6;
    hxGetIr(array.get())[0] = 2;
    hxGetIr(array.get())[1] = 0;
    hxGetJc(array.get())[1] = 1;
    hxGetJc(array.get())[2] = 2;
    const unique_array copy(hxCreateSharedDataCopy(array.get()));
    hxGetIr(array.get())[0] = 0;
    EXPECT_EQ(hxGetScalar(array.get()), 5);
    EXPECT_EQ(hxGetScalar(copy.get()), 0);
    EXPECT_EQ(hxGetNumberOfElements(copy.get()), 6u);
    EXPECT_TRUE(hxIsSparse(copy.get()));
    EXPECT_FALSE(hxIsSparse(number(1).get()));
}

TEST_F(Arrays, CharMatricesComeApartIntoRows) {
    const unique_array matrix(hxCreateCharMatrix({u"abc", u"d"}));
    char16_t** rows = hxCharMatrixToStrings_UTF16(matrix.get());
    EXPECT_EQ(std::u16string(rows[0]), u"abc");
    EXPECT_EQ(std::u16string(rows[1]), u"d  ");
    hxFreeEx(rows[0]);
    hxFreeEx(rows[1]);
    hxFreeEx(rows);
}

TEST_F(Arrays, NamesOfVariablesAreLettersDigitsAndUnderscores) {
    for (const char16_t* good : {u"a", u"Z9_"})
        EXPECT_TRUE(hxIsValidVelName(good));
    for (const char16_t* bad : {u"", u"1a", u"_a", u"a b", u"\u00e4"})
        EXPECT_FALSE(hxIsValidVelName(bad));
    EXPECT_TRUE(hxIsValidVelName(std::u16string(63, u'a').c_str()));
    EXPECT_FALSE(hxIsValidVelName(std::u16string(64, u'a').c_str()));
}

TEST_F(Arrays, CaseTransformsReachBeyondAsciiAndReportTheirLength) {
    const std::u16string source = u"Az\u00c4\u0416\u00df";
    char16_t small[2];
    EXPECT_EQ(hsys::i18n::detail::transform(small, 2, source.data(), source.size(), true), 5u);
    std::u16string full(5, u'?');
    hsys::i18n::detail::transform(full.data(), 5, source.data(), source.size(), true);
    EXPECT_EQ(full, u"az\u00e4\u0436\u00df");
    hsys::i18n::detail::transform(full.data(), 5, full.data(), 5, false);
    EXPECT_EQ(full, u"AZ\u00c4\u0416\u00df");
}

TEST_F(Arrays, NestedDeeperThanTheStackAreCopiedAndEnded) {
    unique_array nested(hxCreateDoubleScalar(1));
    for (int level = 0; level < 300000; ++level) {
        unique_array outer(hxCreateCellMatrix(1, 1));
        hxSetCell(outer.get(), 0, hxCreateSharedDataCopy(nested.get()));
        nested = std::move(outer);
    }
    const unique_array copy(hxCreateSharedDataCopy(nested.get()));
    EXPECT_EQ(hxGetClassID(hxGetCell(copy.get(), 0)), hxCELL_CLASS);
}
