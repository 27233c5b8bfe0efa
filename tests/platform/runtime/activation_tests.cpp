// Apartments, class names, activation from the process and from libraries, running objects.
#include "platform/registry_files.h"
#include "platform/shared_library.h"
#include "servers/kit/kit.h"
#include "servers/sample/identities.h"
#include "support/registry_keys.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <thread>

namespace platform {
namespace {

using axlink2::test::registryKey;
using sample::serverClass;

// Has a name, and no server.
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

// A class object of the process; the fixture sees every missing release.
ComPtr<IClassFactory> classObject() {
    return kit::makeClassFactory([]() -> ComPtr<IDispatch> { throw kit::ComFailure{E_ABORT}; });
}

class Activation : public testing::Test {
  protected:
    void SetUp() override {
        clearRegistry();
        loadRegistryFile(std::filesystem::path(SAMPLE_FOLDER) / "sample_server.reg");
        axlink2::test::registerKeys(
            registryKey("Sample.Counter\\CLSID", guidText(counterClass)) +
            registryKey("CLSID\\" + guidText(counterClass) + "\\ProgID", "Sample.Counter") +
            registryKey("Sample.Latest\\CurVer", "Sample.Counter") +
            registryKey("Sample.NoBrace\\CLSID", "1") +
            registryKey("Sample.Loop\\CurVer", "Sample.Loop") + server(1, "/no/such/library.so") +
            server(2, RUNTIME_TEST_PLAIN_LIBRARY) + server(3, SAMPLE_LIBRARY) + server(4, "") +
            registryKey("CLSID\\" + guidText(classNumber(5)), "no server"));
        ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
    }
    void TearDown() override {
        CoUninitialize();
        clearRegistry();
        const SharedLibrary library(SAMPLE_LIBRARY);
        EXPECT_EQ(library.find<HRESULT STDAPICALLTYPE()>("DllCanUnloadNow")(), S_OK);
        EXPECT_EQ(kit::liveObjects(), 0);
    }

    static std::string server(BYTE number, std::filesystem::path library) {
        if (!library.empty()) library = std::filesystem::absolute(library);
        return registryKey("CLSID\\" + guidText(classNumber(number)) + "\\InprocServer32",
                           library.generic_string());
    }
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
        for (std::string* field : {&function, &text, &result, &guid})
            std::getline(fields, *field, '\t');
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
    const auto outer = classObject();
    const struct {
        CLSID clsid;
        DWORD context;
        IID iid;
        IUnknown* outer;
        HRESULT expected;
    } cases[] = {
        {serverClass, CLSCTX_ALL, sample::serverInterface, nullptr, S_OK},
        {serverClass, CLSCTX_INPROC_SERVER, IID_IUnknown, nullptr, S_OK},
        {serverClass, CLSCTX_ALL, IID_IPersist, nullptr, E_NOINTERFACE},
        {serverClass, CLSCTX_ALL, IID_IUnknown, outer.get(), CLASS_E_NOAGGREGATION},
        {serverClass, CLSCTX_REMOTE_SERVER, IID_IUnknown, nullptr, REGDB_E_CLASSNOTREG},
        {serverClass, 0, IID_IUnknown, nullptr, E_UNEXPECTED},
        {classNumber(1), CLSCTX_ALL, IID_IUnknown, nullptr, HRESULT_FROM_WIN32(126)},
        {classNumber(2), CLSCTX_ALL, IID_IUnknown, nullptr, CO_E_DLLNOTFOUND},
        {classNumber(3), CLSCTX_ALL, IID_IUnknown, nullptr, CLASS_E_CLASSNOTAVAILABLE},
        {classNumber(4), CLSCTX_ALL, IID_IUnknown, nullptr, HRESULT_FROM_WIN32(126)},
        {classNumber(5), CLSCTX_ALL, IID_IUnknown, nullptr, REGDB_E_CLASSNOTREG},
        {classNumber(9), CLSCTX_ALL, IID_IUnknown, nullptr, REGDB_E_CLASSNOTREG},
    };
    for (const auto& c : cases) {
        ComPtr<IUnknown> object;
        EXPECT_EQ(hex(CoCreateInstance(c.clsid, c.outer, c.context, c.iid, object.putVoid())),
                  hex(c.expected))
            << guidText(c.clsid);
        EXPECT_EQ(SUCCEEDED(c.expected), static_cast<bool>(object));
    }
    EXPECT_EQ(CoCreateInstance(serverClass, nullptr, CLSCTX_ALL, IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(Activation, answersPerInterfaceAndKnowsNoOtherMachine) {
    MULTI_QI wanted[] = {{&IID_IDispatch, nullptr, 0}, {&IID_IPersist, nullptr, 0}};
    const auto create = [&](COSERVERINFO* machine, ULONG count, MULTI_QI* results) {
        return CoCreateInstanceEx(serverClass, nullptr, CLSCTX_ALL, machine, count, results);
    };
    EXPECT_EQ(create(nullptr, 2, wanted), CO_S_NOTALLINTERFACES);
    EXPECT_EQ(wanted[1].hr, E_NOINTERFACE);
    ASSERT_EQ(wanted[0].hr, S_OK);
    EXPECT_EQ(create(nullptr, 2, wanted), E_INVALIDARG); // the place is taken
    wanted[0].pItf->Release();
    wanted[0].pItf = nullptr;
    OLECHAR name[] = OLESTR("elsewhere");
    COSERVERINFO machine{0, name, nullptr, 0};
    EXPECT_EQ(hex(create(&machine, 1, wanted)), "0x800706BA");
    EXPECT_EQ(wanted[0].pItf, nullptr);
    EXPECT_EQ(create(nullptr, 1, wanted + 1), E_NOINTERFACE);
}

TEST_F(Activation, prefersClassObjectsOfTheProcess) {
    const auto several = classObject();
    const auto single = classObject();
    DWORD cookie = 0, singleCookie = 0;
    ASSERT_EQ(CoRegisterClassObject(serverClass, several.get(), CLSCTX_LOCAL_SERVER,
                                    REGCLS_MULTIPLEUSE, &cookie),
              S_OK);
    ASSERT_EQ(CoRegisterClassObject(classNumber(9), single.get(), CLSCTX_INPROC_SERVER,
                                    REGCLS_SINGLEUSE, &singleCookie),
              S_OK);
    for (const HRESULT expected : {E_ABORT, REGDB_E_CLASSNOTREG}) {
        ComPtr<IUnknown> object;
        EXPECT_EQ(
            CoGetClassObject(serverClass, CLSCTX_ALL, nullptr, IID_IClassFactory, object.putVoid()),
            S_OK);
        EXPECT_EQ(object.get(), several.get());
        EXPECT_EQ(
            CoCreateInstance(classNumber(9), nullptr, CLSCTX_ALL, IID_IUnknown, object.putVoid()),
            expected);
    }
    EXPECT_EQ(CoRevokeClassObject(cookie), S_OK);
    EXPECT_EQ(CoRevokeClassObject(cookie), E_INVALIDARG);
    EXPECT_EQ(CoRevokeClassObject(singleCookie), S_OK);
}

TEST_F(Activation, keepsRunningObjectsUntilTheyAreRevoked) {
    const auto object = classObject();
    ComPtr<IUnknown> found;
    DWORD first = 0, second = 0;
    EXPECT_EQ(GetActiveObject(counterClass, nullptr, found.put()), MK_E_UNAVAILABLE);
    EXPECT_EQ(GetActiveObject(counterClass, nullptr, nullptr), E_POINTER);
    EXPECT_EQ(RegisterActiveObject(object.get(), counterClass, ACTIVEOBJECT_WEAK, &first), S_OK);
    EXPECT_EQ(GetActiveObject(counterClass, nullptr, found.put()), S_OK);
    EXPECT_EQ(found.get(), object.get());
    EXPECT_EQ(RegisterActiveObject(object.get(), counterClass, ACTIVEOBJECT_STRONG, &second),
              MK_S_MONIKERALREADYREGISTERED);
    EXPECT_EQ(RevokeActiveObject(first, nullptr), S_OK);
    EXPECT_EQ(RevokeActiveObject(first, nullptr), E_INVALIDARG);
    EXPECT_EQ(RevokeActiveObject(second, nullptr), S_OK);
    EXPECT_EQ(GetActiveObject(counterClass, nullptr, found.put()), MK_E_UNAVAILABLE);
    EXPECT_EQ(RegisterActiveObject(nullptr, counterClass, 0, &first), E_INVALIDARG);
}

} // namespace
} // namespace platform
