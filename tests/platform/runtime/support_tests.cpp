// The support classes, message texts, once-only initialisation and code pages.
#include "platform/com.h"
#include "platform/holders.h"
#include "platform/shared_library.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace platform {
namespace {

TEST(BstrText, isSharedByCopiesAndKeptByEach) {
    _bstr_t text("h\xC3\xA9llo");
    EXPECT_EQ(text.length(), 5u);
    _bstr_t copy(text);
    EXPECT_EQ(copy.GetBSTR(), text.GetBSTR());
    text = "other";
    EXPECT_STREQ(static_cast<const char*>(copy), "h\xC3\xA9llo");
    EXPECT_TRUE(copy == _bstr_t(OLESTR("h\u00E9llo")));
    const BSTR own = copy.copy();
    EXPECT_NE(own, copy.GetBSTR());
    const _bstr_t adopted(own, false);
    EXPECT_EQ(adopted, copy);
    EXPECT_EQ(_bstr_t("a") + _bstr_t("b"), _bstr_t("ab"));
}

TEST(BstrText, ordersByUnitsThenByLengthWithNullAsEmpty) {
    EXPECT_LT(_bstr_t("ab"), _bstr_t("abc"));
    EXPECT_LT(_bstr_t("abc"), _bstr_t("b"));
    EXPECT_EQ(_bstr_t(), _bstr_t(""));
    EXPECT_TRUE(!_bstr_t());
    EXPECT_FALSE(!_bstr_t(""));
}

TEST(BstrText, givesItsTextAwayOnce) {
    _bstr_t text;
    *text.GetAddress() = SysAllocStringLen(OLESTR("a\0b"), 3);
    EXPECT_EQ(text.length(), 3u);
    const ScopedBstr detached = ScopedBstr::adopt(text.Detach());
    EXPECT_EQ(viewOf(detached.get()), OleView(OLESTR("a\0b"), 3));
    try {
        text.Detach();
        FAIL() << "a second Detach must raise";
    } catch (const _com_error& error) {
        EXPECT_EQ(error.Error(), E_POINTER);
    }
}

TEST(ComError, carriesCodeAndText) {
    EXPECT_EQ(OleView(_com_error(E_OUTOFMEMORY).ErrorMessage()),
              OLESTR("There is not enough memory for this operation."));
    EXPECT_EQ(OleView(_com_error(static_cast<HRESULT>(0x8ABCDEF0u)).ErrorMessage()),
              OLESTR("Unknown error 0x8ABCDEF0"));
}

// An error object that only counts its references.
class ErrorProbe final : public IErrorInfo {
  public:
    ULONG references = 1;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE GetGUID(GUID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetSource(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetDescription(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD*) override { return E_NOTIMPL; }
};

TEST(ComError, ownsTheErrorObjectThroughCopies) {
    ErrorProbe probe;
    try {
        probe.AddRef();
        _com_raise_error(E_FAIL, &probe);
    } catch (const _com_error& error) {
        _com_error copy(E_ABORT);
        copy = error;
        EXPECT_EQ(copy.Error(), E_FAIL);
        const auto object = ComPtr<IErrorInfo>::adopt(copy.ErrorInfo());
        EXPECT_EQ(object.get(), &probe);
    }
    EXPECT_EQ(probe.references, 1u);
}

TEST(ErrorInfo, belongsToTheThreadAndIsTakenOnce) {
    ErrorProbe probe;
    ComPtr<IErrorInfo> taken;
    EXPECT_EQ(SetErrorInfo(0, &probe), S_OK);
    std::thread([] {
        IErrorInfo* none = nullptr;
        EXPECT_EQ(GetErrorInfo(0, &none), S_FALSE);
    }).join();
    EXPECT_EQ(GetErrorInfo(1, taken.put()), E_INVALIDARG);
    EXPECT_EQ(GetErrorInfo(0, taken.put()), S_OK);
    EXPECT_EQ(taken.get(), &probe);
    EXPECT_EQ(GetErrorInfo(0, taken.put()), S_FALSE);
    EXPECT_EQ(SetErrorInfo(0, &probe), S_OK);
    EXPECT_EQ(SetErrorInfo(0, nullptr), S_OK);
    EXPECT_EQ(probe.references, 1u);
}

OleString systemText(HRESULT hr) {
    LPOLESTR buffer = nullptr;
    const DWORD size = FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM,
                                      nullptr, static_cast<DWORD>(hr), 0x0400,
                                      reinterpret_cast<LPOLESTR>(&buffer), 0, nullptr);
    const OleString text = size > 0 ? OleString(buffer, size) : OleString();
    LocalFree(buffer);
    return text;
}

TEST(MessageText, endsItsLineAndIsMissingForUnknownCodes) {
    EXPECT_TRUE(systemText(DISP_E_TYPEMISMATCH).ends_with(OLESTR(".\r\n")));
    EXPECT_EQ(systemText(HRESULT_FROM_WIN32(1722)), systemText(1722));
    EXPECT_EQ(systemText(static_cast<HRESULT>(0x8ABCDEF0u)), OleString());
    EXPECT_EQ(GetLastError(), ERROR_MR_MID_NOT_FOUND);
    OLECHAR small[4];
    EXPECT_EQ(FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 2, 0, small, 4, nullptr), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
}

TEST(InitOnce, letsOneThreadDoTheWorkAndTheNextOneAfterAFailure) {
    INIT_ONCE once = INIT_ONCE_STATIC_INIT;
    std::atomic<int> attempts{0};
    std::atomic<int> finished{0};
    const auto work = [&] {
        BOOL pending = FALSE;
        ASSERT_TRUE(InitOnceBeginInitialize(&once, 0, &pending, nullptr));
        EXPECT_EQ(finished, pending ? 0 : 1); // whoever waited sees the work done
        if (!pending) return;
        const bool fails = ++attempts == 1;
        Sleep(20);
        finished += fails ? 0 : 1;
        EXPECT_TRUE(InitOnceComplete(&once, fails ? INIT_ONCE_INIT_FAILED : 0, nullptr));
    };
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 6; ++i)
            threads.emplace_back(work);
    }
    EXPECT_EQ(attempts, 2);
    EXPECT_EQ(finished, 1);
    EXPECT_FALSE(InitOnceComplete(&once, 0, nullptr));
}

TEST(CodePages, convertBothWaysAndReportWhatDoesNotFit) {
    char narrow[8] = {};
    EXPECT_EQ(
        WideCharToMultiByte(CP_ACP, 0, OLESTR("\u00E9\U0001F600"), 3, nullptr, 0, nullptr, nullptr),
        6);
    EXPECT_EQ(
        WideCharToMultiByte(CP_THREAD_ACP, 0, OLESTR("\u00E9"), -1, narrow, 8, nullptr, nullptr),
        3);
    EXPECT_STREQ(narrow, "\xC3\xA9");
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, OLESTR("abc"), 3, narrow, 2, nullptr, nullptr), 0);
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    OLECHAR wide[4] = {};
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "\xFFz", 2, wide, 4), 2);
    EXPECT_EQ(OleView(wide, 2), OLESTR("\uFFFDz"));
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, "\xFFz", 2, wide, 4), 0);
    EXPECT_EQ(GetLastError(), ERROR_NO_UNICODE_TRANSLATION);
    EXPECT_EQ(MultiByteToWideChar(1252, 0, "a", 1, wide, 4), 0);
}

TEST(Library, findsSymbolsAndSaysWhyItCannotOpen) {
    const SharedLibrary library(RUNTIME_TEST_PLAIN_LIBRARY);
    ASSERT_TRUE(library) << library.error();
    EXPECT_EQ(library.find<int()>("runtimeTestAnswer")(), 42);
    EXPECT_EQ(library.find<int()>("noSuchSymbol"), nullptr);
    const auto nowhere = std::filesystem::path("/no/such/library.so").make_preferred();
    const SharedLibrary missing(nowhere);
    EXPECT_FALSE(missing);
    EXPECT_NE(missing.error().find(nowhere.string()), std::string::npos);
}

} // namespace
} // namespace platform
