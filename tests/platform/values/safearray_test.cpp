// Arrays: creation, shape, indices, locks, ownership of elements.
#include "recorded_table.h"
#include "variant_text.h"

#include <algorithm>
#include <array>

using namespace values_test;
using platform::ScopedBstr;
using platform::ScopedSafeArray;
using platform::ScopedVariant;

using SafeArrayTest = ValuesTest;

namespace {

ScopedSafeArray vectorOf(VARTYPE vt, ULONG elements) {
    return ScopedSafeArray::adopt(SafeArrayCreateVector(vt, 0, elements));
}

ScopedSafeArray matrixOf(VARTYPE vt, ULONG rows, ULONG columns) {
    SAFEARRAYBOUND bounds[] = {{rows, 5}, {columns, 1}};
    return ScopedSafeArray::adopt(SafeArrayCreate(vt, 2, bounds));
}

std::string vartypeText(SAFEARRAY* array) {
    VARTYPE vt = 0;
    const HRESULT result = SafeArrayGetVartype(array, &vt);
    return "GetVartype=" + hexText(result) + ' ' + typeName(vt);
}

std::string createdText(const std::string& call, VARTYPE vt) {
    if (call == "SafeArrayCreateVector") return shapeText(vectorOf(vt, 2).get());
    if (call == "SafeArrayAllocDescriptorEx") {
        ScopedSafeArray array;
        EXPECT_EQ(SafeArrayAllocDescriptorEx(vt, 1, array.put()), S_OK);
        return shapeText(array.get()) + ' ' + vartypeText(array.get());
    }
    SAFEARRAYBOUND bound{2, 0};
    const auto array = ScopedSafeArray::adopt(SafeArrayCreate(vt, 1, &bound));
    if (!array) return "null";
    char word[20];
    std::snprintf(word, sizeof(word), "0x%08X",
                  reinterpret_cast<const std::uint32_t*>(array.get())[-1]);
    return shapeText(array.get()) + " datanull=" + (array->pvData ? "0" : "1") +
           " word_before_descriptor=" + word + ' ' + vartypeText(array.get()) +
           " ElemSize=" + std::to_string(SafeArrayGetElemsize(array.get()));
}

std::string locksAfter(HRESULT result, const ScopedSafeArray& array) {
    return hexText(result) + ' ' + std::to_string(array->cLocks);
}

} // namespace

TEST_F(SafeArrayTest, EveryElementKindMakesTheRecordedDescriptor) {
    RecordedTable table("safearray_create");
    for (const Row& row : table.rows())
        table.check(row[0] + ' ' + row[1], row[2],
                    createdText(row[0], static_cast<VARTYPE>(std::stoi(row[1]))));
}

TEST_F(SafeArrayTest, IndicesAndBoundsOfThreeDimensionsAreAsRecorded) {
    SAFEARRAYBOUND bounds[] = {{2, 10}, {3, 20}, {4, 30}};
    const auto array = ScopedSafeArray::adopt(SafeArrayCreate(VT_I4, 3, bounds));
    RecordedTable table("safearray_index");
    for (const Row& row : table.rows()) {
        const std::string call = row[0].substr(0, row[0].find(' '));
        std::string ours;
        std::array<int, 3> read{};
        std::array<LONG, 3> at{};
        if (call == "GetDim" || call == "cLocks") {
            ours = "- " +
                   std::to_string(call == "GetDim" ? SafeArrayGetDim(array.get()) : array->cLocks);
        } else if (std::sscanf(row[0].c_str() + call.size(), " (%d,%d,%d)", &read[0], &read[1],
                               &read[2]) == 3) {
            std::copy(read.begin(), read.end(), at.begin());
            LONG element = 7;
            void* address = nullptr;
            const HRESULT result =
                call == "GetElement"   ? SafeArrayGetElement(array.get(), at.data(), &element)
                : call == "PutElement" ? SafeArrayPutElement(array.get(), at.data(), &element)
                                       : SafeArrayPtrOfIndex(array.get(), at.data(), &address);
            ours = hexText(result);
            if (call != "PtrOfIndex")
                ours += " -";
            else if (!address)
                ours += " null";
            else
                ours += " byte offset " + std::to_string(static_cast<char*>(address) -
                                                         static_cast<char*>(array->pvData));
        } else {
            const auto dim = static_cast<UINT>(std::stoul(row[0].substr(row[0].rfind(' '))));
            LONG bound = -999;
            const HRESULT result = call == "GetLBound"
                                       ? SafeArrayGetLBound(array.get(), dim, &bound)
                                       : SafeArrayGetUBound(array.get(), dim, &bound);
            ours = hexText(result) + ' ' + std::to_string(bound);
        }
        table.check(row[0], row[1] + ' ' + row[2], ours);
    }
}

TEST_F(SafeArrayTest, ImpossibleShapesGiveNoArray) {
    SAFEARRAYBOUND huge[] = {{0xFFFFFFFF, 0}, {0xFFFFFFFF, 0}};
    EXPECT_FALSE(ScopedSafeArray::adopt(SafeArrayCreate(VT_R8, 2, huge)));
    EXPECT_FALSE(ScopedSafeArray::adopt(SafeArrayCreate(VT_R8, 1, nullptr)));
    EXPECT_FALSE(ScopedSafeArray::adopt(SafeArrayCreate(VT_R8, 0, huge)));
    SAFEARRAY* none = nullptr;
    EXPECT_EQ(SafeArrayAllocDescriptor(0, &none), E_INVALIDARG);
    EXPECT_EQ(SafeArrayAllocDescriptor(65536, &none), E_INVALIDARG);
    EXPECT_EQ(SafeArrayAllocDescriptor(1, nullptr), E_POINTER);
    const auto empty = matrixOf(VT_I4, 2, 0);
    EXPECT_NE(empty->pvData, nullptr);
    LONG upper = -999;
    EXPECT_EQ(SafeArrayGetUBound(empty.get(), 2, &upper), S_OK);
    EXPECT_EQ(upper, 0);
}

TEST_F(SafeArrayTest, ALockedArrayCantBeDestroyedOrResized) {
    auto array = vectorOf(VT_I4, 3);
    void* data = nullptr;
    SAFEARRAYBOUND bound{5, 0};
    EXPECT_EQ(locksAfter(SafeArrayLock(array.get()), array), "0x00000000 1");
    EXPECT_EQ(locksAfter(SafeArrayAccessData(array.get(), &data), array), "0x00000000 2");
    EXPECT_EQ(data, array->pvData);
    EXPECT_EQ(SafeArrayDestroy(array.get()), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(SafeArrayDestroyData(array.get()), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(SafeArrayDestroyDescriptor(array.get()), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(SafeArrayRedim(array.get(), &bound), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(locksAfter(SafeArrayUnaccessData(array.get()), array), "0x00000000 1");
    EXPECT_EQ(locksAfter(SafeArrayUnlock(array.get()), array), "0x00000000 0");
    EXPECT_EQ(locksAfter(SafeArrayUnlock(array.get()), array), "0x8000FFFF 0");
    array->cLocks = 0xFFFF;
    EXPECT_EQ(locksAfter(SafeArrayLock(array.get()), array), "0x8000FFFF 65535");
    array->cLocks = 0;
}

TEST_F(SafeArrayTest, TextElementsAreCopiedInAndOut) {
    auto array = vectorOf(VT_BSTR, 2);
    const auto text = platform::makeBstr(platform::OleView(OLESTR("a\0b"), 3));
    LONG first = 0, second = 1;
    for (int round = 0; round != 2; ++round) // the second time over the first
        ASSERT_EQ(SafeArrayPutElement(array.get(), &first, text.get()), S_OK);
    EXPECT_NE(static_cast<BSTR*>(array->pvData)[0], text.get());
    ScopedBstr got;
    ASSERT_EQ(SafeArrayGetElement(array.get(), &first, got.put()), S_OK);
    EXPECT_EQ(quoted(got.get()), "\"a\\000b\"");
    ASSERT_EQ(SafeArrayGetElement(array.get(), &second, got.put()), S_OK);
    EXPECT_EQ(quoted(got.get()), "\"\""); // a null element reads as empty text
    ASSERT_EQ(SafeArrayPutElement(array.get(), &first, static_cast<BSTR*>(array->pvData)[0]), S_OK);

    const auto copy = ScopedSafeArray::borrow(array.get());
    EXPECT_EQ(shapeText(copy.get()), "sa{dims=1 cb=8 feat=0x0180 locks=0 b0=0..+2}");
    EXPECT_EQ(quoted(static_cast<BSTR*>(copy->pvData)[0]), "\"a\\000b\"");
    SAFEARRAYBOUND bound{4, 0};
    for (const ULONG size : {4u, 1u, 3u}) {
        bound.cElements = size;
        ASSERT_EQ(SafeArrayRedim(array.get(), &bound), S_OK);
        EXPECT_EQ(quoted(static_cast<BSTR*>(array->pvData)[0]), "\"a\\000b\"");
        EXPECT_EQ(array->rgsabound[0].cElements, size);
    }
    EXPECT_EQ(SafeArrayDestroyData(array.get()), S_OK);
}

TEST_F(SafeArrayTest, ObjectsAreCountedThroughPutGetCopyAndDestroy) {
    const auto object = TestObject::make();
    auto array = vectorOf(VT_DISPATCH, 2);
    LONG index = 0;
    ASSERT_EQ(SafeArrayPutElement(array.get(), &index, object.get()), S_OK);
    ASSERT_EQ(SafeArrayPutElement(array.get(), &index, object.get()), S_OK);
    EXPECT_EQ(referencesOf(object), 2u);
    {
        platform::ComPtr<IDispatch> got;
        ASSERT_EQ(SafeArrayGetElement(array.get(), &index, got.put()), S_OK);
        const auto copy = ScopedSafeArray::borrow(array.get());
        EXPECT_EQ(referencesOf(object), 4u);
        GUID iid{};
        EXPECT_EQ(SafeArrayGetIID(copy.get(), &iid), S_OK);
        EXPECT_EQ(iid, IID_IDispatch);
    }
    EXPECT_EQ(referencesOf(object), 2u);
    ASSERT_EQ(SafeArrayPutElement(array.get(), &index, nullptr), S_OK);
    EXPECT_EQ(referencesOf(object), 1u);
}

TEST_F(SafeArrayTest, VariantElementsAreCopiedDeeply) {
    auto array = vectorOf(VT_VARIANT, 3);
    LONG index = 0;
    for (const auto& [value, result] :
         {std::pair("BSTR \"deep\"", S_OK), std::pair("VOID ?", DISP_E_BADVARTYPE)}) {
        const WrittenVariant written(value);
        EXPECT_EQ(SafeArrayPutElement(array.get(), &index, const_cast<VARIANT*>(&written.get())),
                  result);
    }
    const auto copy = ScopedSafeArray::borrow(array.get());
    ScopedVariant got; // the text stays
    ASSERT_EQ(SafeArrayGetElement(copy.get(), &index, got.put()), S_OK);
    EXPECT_EQ(outcome(S_OK, got.get()), "0x00000000 BSTR \"deep\"");
}

TEST_F(SafeArrayTest, DataIsCopiedBetweenEqualShapesOnly) {
    const auto source = matrixOf(VT_I4, 3, 2);
    auto same = ScopedSafeArray::borrow(source.get());
    const auto longer = matrixOf(VT_I4, 3, 3);
    const auto wider = matrixOf(VT_R8, 3, 2);
    std::fill_n(static_cast<LONG*>(source->pvData), 6, 9);
    EXPECT_EQ(SafeArrayCopyData(source.get(), same.get()), S_OK);
    EXPECT_EQ(static_cast<LONG*>(same->pvData)[5], 9);
    EXPECT_EQ(SafeArrayCopyData(source.get(), longer.get()), E_INVALIDARG);
    EXPECT_EQ(SafeArrayCopyData(source.get(), wider.get()), E_INVALIDARG);
    EXPECT_EQ(SafeArrayCopyData(wider.get(), matrixOf(VT_BSTR, 3, 2).get()), E_INVALIDARG);
    SAFEARRAYBOUND bound{4, 0};
    ASSERT_EQ(SafeArrayRedim(same.get(), &bound), S_OK);
    EXPECT_EQ(shapeText(same.get()), "sa{dims=2 cb=4 feat=0x0080 locks=0 b0=0..+4 b1=5..+3}");
    EXPECT_EQ(static_cast<LONG*>(same->pvData)[5], 9);
    EXPECT_EQ(static_cast<LONG*>(same->pvData)[11], 0);
}

TEST_F(SafeArrayTest, ArraysInACallersOwnStorageAreEmptiedNotFreed) {
    LONG data[3] = {1, 2, 3};
    SAFEARRAY array{1, FADF_STATIC | FADF_FIXEDSIZE, sizeof(LONG), 0, data, {{3, 0}}};
    SAFEARRAYBOUND bound{5, 0};
    EXPECT_EQ(SafeArrayRedim(&array, &bound), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(SafeArrayDestroy(&array), S_OK);
    EXPECT_EQ(data[2], 0);
}

TEST_F(SafeArrayTest, NullIsRefusedWhereItMeansNothing) {
    VARTYPE vt = 0;
    LONG number = 0;
    void* pointer = nullptr;
    SAFEARRAY* array = nullptr;
    EXPECT_EQ(SafeArrayDestroy(nullptr), S_OK);
    EXPECT_EQ(SafeArrayDestroyDescriptor(nullptr), S_OK);
    EXPECT_EQ(SafeArrayCopy(nullptr, &array), S_OK);
    EXPECT_EQ(SafeArrayGetDim(nullptr), 0u);
    EXPECT_EQ(SafeArrayGetElemsize(nullptr), 0u);
    for (const HRESULT result :
         {SafeArrayDestroyData(nullptr), SafeArrayLock(nullptr), SafeArrayUnlock(nullptr),
          SafeArrayGetUBound(nullptr, 1, &number), SafeArrayGetVartype(nullptr, &vt),
          SafeArrayAccessData(nullptr, &pointer), SafeArrayGetElement(nullptr, &number, &number),
          SafeArrayPutElement(nullptr, &number, &number), SafeArrayRedim(nullptr, nullptr),
          SafeArrayPtrOfIndex(nullptr, &number, &pointer), SafeArrayCopy(nullptr, nullptr)})
        EXPECT_EQ(result, E_INVALIDARG);
}
