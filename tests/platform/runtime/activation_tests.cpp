// Apartments, class names, activation from the process and from libraries, running objects.
#include "platform/holders.h"
#include "platform/registry_files.h"
#include "platform/shared_library.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <thread>

namespace platform {
namespace {

constexpr CLSID counterClass = {
    0x6F1C0C0E, 0x3A52, 0x4D0B, {0x9A, 0x53, 0x5B, 0x7C, 0x0C, 0x2D, 0x4E, 0x1F}};

// Another class, by its last byte.
CLSID classNumber(BYTE last) {
    CLSID clsid = counterClass;
    clsid.Data4[7] = last;
    return clsid;
}

std::string guidText(REFGUID guid) {
    OLECHAR text[40];
    StringFromGUID2(guid, text, 40);
    return toNarrow(text);
}

std::string hex(HRESULT hr) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(hr));
    return text;
}

// An object that only counts; it is never destroyed, so the test sees every missing release.
class Probe final : public IClassFactory {
  public:
    ULONG references = 1;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = iid == IID_IUnknown || iid == IID_IClassFactory ? this : nullptr;
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** object) override {
        return QueryInterface(iid, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

class Activation : public testing::Test {
  protected:
    void SetUp() override {
        clearRegistry();
        const std::string classes = "[HKEY_CLASSES_ROOT\\";
        std::ofstream(file_) << "REGEDIT4\n"
                             << classes << "Sample.Counter\\CLSID]\n@=\"" << guidText(counterClass)
                             << "\"\n"
                             << classes << "Sample.Latest\\CurVer]\n@=\"Sample.Counter\"\n"
                             << classes << "Sample.NoBrace\\CLSID]\n@=\"1\"\n"
                             << classes << "Sample.Loop\\CurVer]\n@=\"Sample.Loop\"\n"
                             << classes << "CLSID\\" << guidText(counterClass)
                             << "\\ProgID]\n@=\"Sample.Counter\"\n"
                             << server(counterClass, RUNTIME_TEST_SERVER)
                             << server(classNumber(1), "/no/such/library.so")
                             << server(classNumber(2), RUNTIME_TEST_PLAIN_LIBRARY)
                             << server(classNumber(3), RUNTIME_TEST_SERVER)
                             << server(classNumber(4), "") << classes << "CLSID\\"
                             << guidText(classNumber(5)) << "]\n@=\"no server\"\n";
        loadRegistryFile(file_);
        ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
    }
    void TearDown() override {
        CoUninitialize();
        clearRegistry();
        std::filesystem::remove(file_);
        const SharedLibrary library(RUNTIME_TEST_SERVER);
        EXPECT_EQ(library.find<int()>("runtimeTestLiveObjects")(), 0);
    }

    static std::string server(REFCLSID clsid, const std::string& library) {
        std::filesystem::path path(library);
        if (!path.empty()) path = std::filesystem::absolute(path);
        return "[HKEY_CLASSES_ROOT\\CLSID\\" + guidText(clsid) + "\\InprocServer32]\n@=\"" +
               path.generic_string() + "\"\n";
    }

    const std::filesystem::path file_ = std::filesystem::temp_directory_path() /
                                        ("axlink2-act-" + std::to_string(getpid()) + ".reg");
};

void inThread(const std::function<void()>& work) { std::thread(work).join(); }

TEST(Apartments, answerByKindAndCountOfTheThread) {
    constexpr DWORD sta = COINIT_APARTMENTTHREADED;
    constexpr DWORD mta = COINIT_MULTITHREADED;
    inThread([] {
        ComPtr<IUnknown> none;
        EXPECT_EQ(CoCreateInstance(counterClass, nullptr, CLSCTX_ALL, IID_IUnknown, none.putVoid()),
                  CO_E_NOTINITIALIZED);
        CoUninitialize(); // unmatched, without effect
        EXPECT_EQ(CoInitializeEx(nullptr, sta), S_OK);
        EXPECT_EQ(CoInitialize(nullptr), S_FALSE);
        EXPECT_EQ(CoInitializeEx(nullptr, mta), RPC_E_CHANGED_MODE);
        CoUninitialize();
        EXPECT_EQ(OleInitialize(nullptr), S_FALSE);
        OleUninitialize();
        CoUninitialize();
        EXPECT_EQ(CoInitializeEx(nullptr, mta), S_OK);
        EXPECT_EQ(OleInitialize(nullptr), RPC_E_CHANGED_MODE);
        // Another thread belongs to the same apartment without having asked for it.
        inThread([] {
            IUnknown* object = nullptr;
            EXPECT_EQ(GetActiveObject(counterClass, nullptr, &object), MK_E_UNAVAILABLE);
        });
        CoUninitialize();
        EXPECT_EQ(CoInitializeEx(nullptr, 0x80000000), E_INVALIDARG);
    });
}

TEST_F(Activation, readsTextsAsRecordedFromAComRuntime) {
    std::ifstream rows(std::string(RUNTIME_TEST_DATA) + "/class_texts.tsv");
    std::string row;
    std::getline(rows, row);
    int count = 0;
    while (std::getline(rows, row)) {
        std::istringstream fields(row);
        std::string function, text, result, guid;
        std::getline(fields, function, '\t');
        std::getline(fields, text, '\t');
        std::getline(fields, result, '\t');
        std::getline(fields, guid, '\t');
        const auto parse = function == "CLSIDFromString"   ? CLSIDFromString
                           : function == "CLSIDFromProgID" ? CLSIDFromProgID
                                                           : IIDFromString;
        GUID answer{};
        const HRESULT hr = parse(toOle(std::string_view(text)).c_str(), &answer);
        EXPECT_EQ(hex(hr), result) << row;
        EXPECT_EQ(SUCCEEDED(hr) ? guidText(answer) : "-", guid) << row;
        ++count;
    }
    EXPECT_GT(count, 40);
}

TEST_F(Activation, findsProgIdsBothWays) {
    CLSID clsid{};
    EXPECT_EQ(CLSIDFromProgID(OLESTR("sample.LATEST"), &clsid), S_OK);
    EXPECT_EQ(clsid, counterClass);
    for (const OLECHAR* name : {OLESTR("Sample.NoBrace"), OLESTR("Sample.Loop")})
        EXPECT_EQ(CLSIDFromProgID(name, &clsid), CO_E_CLASSSTRING);
    LPOLESTR text = nullptr;
    ASSERT_EQ(ProgIDFromCLSID(counterClass, &text), S_OK);
    EXPECT_EQ(OleView(text), OLESTR("Sample.Counter"));
    CoTaskMemFree(text);
    EXPECT_EQ(ProgIDFromCLSID(classNumber(9), &text), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(text, nullptr);
    ASSERT_EQ(StringFromCLSID(counterClass, &text), S_OK);
    EXPECT_EQ(OleView(text), OLESTR("{6F1C0C0E-3A52-4D0B-9A53-5B7C0C2D4E1F}"));
    CoTaskMemFree(text);
    OLECHAR small[38];
    EXPECT_EQ(StringFromGUID2(counterClass, small, 38), 0);
    GUID first{}, second{};
    EXPECT_EQ(CoCreateGuid(&first), S_OK);
    EXPECT_EQ(CoCreateGuid(&second), S_OK);
    EXPECT_FALSE(first == second);
}

TEST_F(Activation, makesObjectsOfALibraryOrSaysWhyNot) {
    const struct {
        CLSID clsid;
        DWORD context;
        IID iid;
        bool aggregated;
        HRESULT expected;
    } cases[] = {
        {counterClass, CLSCTX_ALL, IID_IPersist, false, S_OK},
        {counterClass, CLSCTX_INPROC_SERVER, IID_IUnknown, false, S_OK},
        {counterClass, CLSCTX_ALL, IID_IDispatch, false, E_NOINTERFACE},
        {counterClass, CLSCTX_ALL, IID_IUnknown, true, CLASS_E_NOAGGREGATION},
        {counterClass, CLSCTX_REMOTE_SERVER, IID_IUnknown, false, REGDB_E_CLASSNOTREG},
        {counterClass, 0, IID_IUnknown, false, E_UNEXPECTED},
        {classNumber(1), CLSCTX_ALL, IID_IUnknown, false, HRESULT_FROM_WIN32(126)},
        {classNumber(2), CLSCTX_ALL, IID_IUnknown, false, CO_E_DLLNOTFOUND},
        {classNumber(3), CLSCTX_ALL, IID_IUnknown, false, CLASS_E_CLASSNOTAVAILABLE},
        {classNumber(4), CLSCTX_ALL, IID_IUnknown, false, HRESULT_FROM_WIN32(126)},
        {classNumber(5), CLSCTX_ALL, IID_IUnknown, false, REGDB_E_CLASSNOTREG},
        {classNumber(9), CLSCTX_ALL, IID_IUnknown, false, REGDB_E_CLASSNOTREG},
    };
    for (const auto& c : cases) {
        Probe outer;
        ComPtr<IUnknown> object;
        EXPECT_EQ(hex(CoCreateInstance(c.clsid, c.aggregated ? &outer : nullptr, c.context, c.iid,
                                       object.putVoid())),
                  hex(c.expected))
            << guidText(c.clsid);
        EXPECT_EQ(SUCCEEDED(c.expected), static_cast<bool>(object));
    }
    EXPECT_EQ(CoCreateInstance(counterClass, nullptr, CLSCTX_ALL, IID_IUnknown, nullptr),
              E_POINTER);
}

TEST_F(Activation, answersPerInterfaceAndKnowsNoOtherMachine) {
    MULTI_QI wanted[] = {{&IID_IPersist, nullptr, 0}, {&IID_IDispatch, nullptr, 0}};
    EXPECT_EQ(CoCreateInstanceEx(counterClass, nullptr, CLSCTX_ALL, nullptr, 2, wanted),
              CO_S_NOTALLINTERFACES);
    EXPECT_EQ(wanted[1].hr, E_NOINTERFACE);
    ASSERT_EQ(wanted[0].hr, S_OK);
    EXPECT_EQ(CoCreateInstanceEx(counterClass, nullptr, CLSCTX_ALL, nullptr, 2, wanted),
              E_INVALIDARG); // the place is taken
    wanted[0].pItf->Release();
    wanted[0].pItf = nullptr;
    OLECHAR machine[] = OLESTR("elsewhere");
    COSERVERINFO server{0, machine, nullptr, 0};
    EXPECT_EQ(hex(CoCreateInstanceEx(counterClass, nullptr, CLSCTX_ALL, &server, 1, wanted)),
              "0x800706BA");
    EXPECT_EQ(wanted[0].pItf, nullptr);
    EXPECT_EQ(CoCreateInstanceEx(counterClass, nullptr, CLSCTX_ALL, nullptr, 1, wanted + 1),
              E_NOINTERFACE);
}

TEST_F(Activation, prefersClassObjectsOfTheProcess) {
    Probe several, single;
    DWORD cookie = 0, singleCookie = 0;
    ASSERT_EQ(CoRegisterClassObject(counterClass, &several, CLSCTX_LOCAL_SERVER, REGCLS_MULTIPLEUSE,
                                    &cookie),
              S_OK);
    ASSERT_EQ(CoRegisterClassObject(classNumber(9), &single, CLSCTX_INPROC_SERVER, REGCLS_SINGLEUSE,
                                    &singleCookie),
              S_OK);
    for (const HRESULT expected : {S_OK, REGDB_E_CLASSNOTREG}) {
        ComPtr<IUnknown> object;
        EXPECT_EQ(CoGetClassObject(counterClass, CLSCTX_ALL, nullptr, IID_IClassFactory,
                                   object.putVoid()),
                  S_OK);
        EXPECT_EQ(object.get(), &several);
        EXPECT_EQ(
            CoCreateInstance(classNumber(9), nullptr, CLSCTX_ALL, IID_IUnknown, object.putVoid()),
            expected);
    }
    EXPECT_EQ(CoRevokeClassObject(cookie), S_OK);
    EXPECT_EQ(CoRevokeClassObject(cookie), E_INVALIDARG);
    EXPECT_EQ(CoRevokeClassObject(singleCookie), S_OK);
    EXPECT_EQ(several.references, 1u);
    EXPECT_EQ(single.references, 1u);
}

TEST_F(Activation, keepsRunningObjectsUntilTheyAreRevoked) {
    Probe probe;
    ComPtr<IUnknown> found;
    DWORD first = 0, second = 0;
    EXPECT_EQ(GetActiveObject(counterClass, nullptr, found.put()), MK_E_UNAVAILABLE);
    EXPECT_EQ(GetActiveObject(counterClass, nullptr, nullptr), E_POINTER);
    EXPECT_EQ(RegisterActiveObject(&probe, counterClass, ACTIVEOBJECT_WEAK, &first), S_OK);
    EXPECT_EQ(GetActiveObject(counterClass, nullptr, found.put()), S_OK);
    EXPECT_EQ(found.get(), &probe);
    found.reset();
    EXPECT_EQ(RegisterActiveObject(&probe, counterClass, ACTIVEOBJECT_STRONG, &second),
              MK_S_MONIKERALREADYREGISTERED);
    EXPECT_EQ(RevokeActiveObject(first, nullptr), S_OK);
    EXPECT_EQ(RevokeActiveObject(first, nullptr), E_INVALIDARG);
    EXPECT_EQ(RevokeActiveObject(second, nullptr), S_OK);
    EXPECT_EQ(GetActiveObject(counterClass, nullptr, found.put()), MK_E_UNAVAILABLE);
    EXPECT_EQ(RegisterActiveObject(nullptr, counterClass, 0, &first), E_INVALIDARG);
    EXPECT_EQ(probe.references, 1u);
}

} // namespace
} // namespace platform
