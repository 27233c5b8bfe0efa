// Clearing, copying and owning VARIANTs and text.
#include "recorded_table.h"
#include "variant_text.h"

#include <cstring>
#include <functional>
#include <map>

using namespace values_test;
using platform::ScopedBstr;
using platform::ScopedVariant;

using CopyTest = ValuesTest;

namespace {

VARIANT zeroPayload(const std::string& vt) {
    VARIANT value{};
    value.vt = static_cast<VARTYPE>(std::stoul(vt, nullptr, 16));
    return value;
}

std::string bstrText(BSTR text) {
    if (!text) return "null";
    const auto number = [](UINT value) { return std::to_string(value); };
    std::uint32_t prefix = 0;
    std::memcpy(&prefix, reinterpret_cast<const char*>(text) - sizeof(prefix), sizeof(prefix));
    OLECHAR after = 0;
    std::memcpy(&after, reinterpret_cast<const char*>(text) + prefix, sizeof(after));
    EXPECT_EQ(after, 0);
    return "len=" + number(SysStringLen(text)) + " bytes=" + number(SysStringByteLen(text)) +
           " prefix=" + number(prefix) + ' ' + quoted(text) + " unit_after=0x0000";
}

} // namespace

TEST_F(CopyTest, EveryKindIsClearedAndCopiedAsRecorded) {
    RecordedTable table("variant_copy_clear");
    for (const Row& row : table.rows()) {
        VARIANT subject = zeroPayload(row[2]);
        VARIANT target{};
        HRESULT result = S_OK;
        VARTYPE after = VT_EMPTY;
        if (row[1] == "cleared") {
            result = VariantClear(&subject);
            after = subject.vt;
        } else if (row[1] == "source") {
            result = VariantCopy(&target, &subject);
            after = target.vt;
        } else {
            const WrittenVariant five("I4 5");
            result = VariantCopy(&subject, &five.get());
            after = subject.vt;
        }
        VariantClear(&target);
        table.check(row[0] + ' ' + row[1] + ' ' + row[2], row[3] + ' ' + row[4],
                    hexText(result) + ' ' + typeName(after));
    }
}

TEST_F(CopyTest, ReferencesAreFollowedAsRecorded) {
    RecordedTable table("variant_copy_ind");
    for (const Row& row : table.rows()) {
        const WrittenVariant source(row[0]);
        ScopedVariant target;
        const HRESULT result = VariantCopyInd(target.put(), &source.get());
        table.check(row[0], row[1] + ' ' + row[2] + ' ' + row[3], outcome(result, target.get()));
    }
}

TEST_F(CopyTest, ReferencesAreResolvedInPlace) {
    const std::pair<const char*, const char*> cases[] = {
        {"BYREF|I4 -> 70000", "0x00000000 I4 70000"},
        {"BYREF|BSTR -> \"a\\000b\"", "0x00000000 BSTR \"a\\000b\""},
        {"BYREF|VARIANT -> [I4 3]", "0x00000000 I4 3"}};
    for (const auto& [before, after] : cases) {
        const WrittenVariant written(before);
        ScopedVariant value = ScopedVariant::adopt(written.get());
        const HRESULT result = VariantCopyInd(value.inOut(), &value.get());
        EXPECT_EQ(outcome(result, value.get()), after);
    }
}

TEST_F(CopyTest, ACopyStandsAlone) {
    const WrittenVariant text("BSTR \"a\\000b\"");
    ScopedVariant copy = ScopedVariant::borrow(text.get());
    EXPECT_NE(copy->bstrVal, text.get().bstrVal);
    EXPECT_EQ(quoted(copy->bstrVal), "\"a\\000b\"");

    const auto object = TestObject::make();
    VARIANT source{};
    source.vt = VT_DISPATCH;
    source.pdispVal = object.get();
    ASSERT_EQ(VariantCopy(copy.inOut(), &source), S_OK);
    EXPECT_EQ(referencesOf(object), 2u);
    ASSERT_EQ(VariantCopy(copy.inOut(), copy.inOut()), S_OK);
    EXPECT_EQ(referencesOf(object), 2u);
    EXPECT_FALSE(platform::queryInterface<IUnknown>(object.get(), GUID{1, 2, 3, {}}));
    copy.reset();
    EXPECT_EQ(referencesOf(object), 1u);
}

TEST_F(CopyTest, ADestinationMayOwnItsSource) {
    ScopedVariant outer;
    outer.put()->parray = SafeArrayCreateVector(VT_VARIANT, 0, 1);
    outer->vt = VT_ARRAY | VT_VARIANT;
    auto* inner = static_cast<VARIANT*>(outer->parray->pvData);
    ASSERT_EQ(VariantCopy(inner, &WrittenVariant("BSTR \"inner\"").get()), S_OK);
    ASSERT_EQ(VariantCopy(outer.inOut(), inner), S_OK);
    EXPECT_EQ(outcome(S_OK, outer.get()), "0x00000000 BSTR \"inner\"");
}

TEST_F(CopyTest, AnImpossibleSourceAndALockedDestinationChangeNothing) {
    const WrittenVariant impossible("VOID ?");
    ScopedVariant target = ScopedVariant::borrow(WrittenVariant("BSTR \"old\"").get());
    EXPECT_EQ(VariantCopy(target.inOut(), &impossible.get()), DISP_E_BADVARTYPE);
    EXPECT_EQ(quoted(target->bstrVal), "\"old\"");

    const WrittenVariant array("ARRAY|I4 sa{dims=1 cb=4 feat=0x2080 locks=0 b0=0..+3}");
    SafeArrayLock(array.get().parray);
    EXPECT_EQ(VariantClear(const_cast<VARIANT*>(&array.get())), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(array.get().vt, VT_ARRAY | VT_I4);
    EXPECT_EQ(VariantCopy(const_cast<VARIANT*>(&array.get()), &target.get()), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(VariantCopy(target.inOut(), &array.get()), S_OK); // a copy isn't locked
    EXPECT_EQ(target->parray->cLocks, 0u);
    SafeArrayUnlock(array.get().parray);
}

TEST_F(CopyTest, ClearingAReferenceLeavesWhatItRefersTo) {
    for (const char* text : {"BYREF|BSTR -> \"keep\"", "BYREF|VARIANT -> [BSTR \"keep\"]"}) {
        const WrittenVariant written(text);
        VARIANT reference = written.get();
        EXPECT_EQ(VariantClear(&reference), S_OK);
        ScopedVariant followed;
        ASSERT_EQ(VariantCopyInd(followed.put(), &written.get()), S_OK);
        EXPECT_EQ(quoted(followed->bstrVal), "\"keep\"");
    }
}

TEST_F(CopyTest, TextIsAllocatedAsRecorded) {
    const char* const letters = "ABCDEFG";
    const OLECHAR* const abc = OLESTR("abc");
    const auto changed = [](const OLECHAR* from, const std::function<INT(ScopedBstr&)>& change) {
        ScopedBstr text = ScopedBstr::adopt(SysAllocString(from));
        const INT done = change(text);
        return "returned " + std::to_string(done) + "; " + bstrText(text.get());
    };
    const auto resize = [&](const OLECHAR* from, const OLECHAR* to, UINT units) {
        return changed(from, [&](auto& b) { return SysReAllocStringLen(b.inOut(), to, units); });
    };
    const auto replace = [&](const OLECHAR* from, const OLECHAR* to) {
        return changed(from, [&](auto& b) { return SysReAllocString(b.inOut(), to); });
    };
    const auto replaceByTail = [&](const OLECHAR* from, int start) {
        return changed(from, [&](auto& b) { return SysReAllocString(b.inOut(), b.get() + start); });
    };
    const auto made = [](BSTR text) { return bstrText(ScopedBstr::adopt(text).get()); };
    const std::map<std::string, std::string> ours{
        {"SysAllocString(null)", made(SysAllocString(nullptr))},
        {"SysAllocString(\"\")", made(SysAllocString(OLESTR("")))},
        {"SysAllocString(\"abc\")", made(SysAllocString(abc))},
        {"SysAllocStringLen(\"a\\0b\", 3)", made(SysAllocStringLen(OLESTR("a\0b"), 3))},
        {"SysAllocStringLen(\"abc\", 0)", made(SysAllocStringLen(abc, 0))},
        {"SysAllocStringLen(\"abc\", 2)", made(SysAllocStringLen(abc, 2))},
        {"SysAllocStringLen(\"abc\", 0xFFFFFFFF)", made(SysAllocStringLen(abc, 0xFFFFFFFF))},
        {"SysAllocStringLen(null, 0x80000000)", made(SysAllocStringLen(nullptr, 0x80000000))},
        {"SysAllocStringLen(null, 0x7FFFFFF0)", made(SysAllocStringLen(nullptr, 0x7FFFFFF0))},
        {"SysAllocStringByteLen(\"ABCDEFG\", 1)", made(SysAllocStringByteLen(letters, 1))},
        {"SysAllocStringByteLen(\"ABCDEFG\", 3)", made(SysAllocStringByteLen(letters, 3))},
        {"SysAllocStringByteLen(\"ABCDEFG\", 5)", made(SysAllocStringByteLen(letters, 5))},
        {"SysAllocStringByteLen(null, 4)", made(SysAllocStringByteLen(nullptr, 4)).substr(0, 13)},
        {"SysReAllocString(\"abc\" -> itself)", replaceByTail(abc, 0)},
        {"SysReAllocString(\"abc\" -> \"xyz\")", replace(abc, OLESTR("xyz"))},
        {"SysReAllocString(null BSTR -> \"xyz\")", replace(nullptr, OLESTR("xyz"))},
        {"SysReAllocString(\"abcdef\" -> own tail \"def\")", replaceByTail(OLESTR("abcdef"), 3)},
        {"SysReAllocStringLen(\"abc\" -> \"xyz\", 2)", resize(abc, OLESTR("xyz"), 2)},
        {"SysReAllocStringLen(\"abc\" -> null, 5)", resize(abc, nullptr, 5)},
        {"SysReAllocStringLen(\"abc\" -> \"x\", 0x80000000)", resize(abc, OLESTR("x"), 0x80000000)},
    };
    RecordedTable table("bstr");
    for (const Row& row : table.rows()) {
        ASSERT_TRUE(ours.contains(row[0])) << row[0];
        table.check(row[0], row[1], ours.at(row[0]));
    }
    SysFreeString(nullptr);
    EXPECT_EQ(SysStringLen(nullptr), 0u);
}

TEST_F(CopyTest, BrokenTextIsReplacedNotLost) {
    EXPECT_EQ(platform::toOle("a\xFFz\xC3"), OLESTR("a\uFFFDz\uFFFD"));
    EXPECT_EQ(platform::toNarrow(OLESTR("a\xD800z")), "a\xEF\xBF\xBDz");
    EXPECT_EQ(platform::toNarrow(OLESTR("\xD83D\xDE00")), "\xF0\x9F\x98\x80");
    EXPECT_EQ(platform::toUtf16(platform::toOle(std::u16string_view(u"a\xD800z"))), u"a\xD800z");
}
