// The sample server, loaded from its shared library as any client would.
#include "calls.h"
#include "platform/guarded_call.h"
#include "platform/registry_files.h"
#include "platform/shared_library.h"
#include "servers/sample/identities.h"

#include <filesystem>

namespace server_tests {
namespace {

const std::filesystem::path registration = SAMPLE_REGISTRATION;

struct SampleServer : ServerTest {
    ComPtr<IDispatch> server;

    void SetUp() override {
        platform::clearRegistry();
        platform::loadRegistryFile(registration);
        server = activate(OLESTR("Sample.Server"));
        ASSERT_TRUE(server);
    }
    // The library counts its objects by itself: it may go once all are gone.
    void TearDown() override {
        server.reset();
        platform::SharedLibrary library(registration.parent_path() / SAMPLE_LIBRARY);
        ASSERT_TRUE(library) << library.error();
        const auto canUnloadNow = library.find<HRESULT STDAPICALLTYPE()>("DllCanUnloadNow");
        ASSERT_TRUE(canUnloadNow);
        EXPECT_EQ(canUnloadNow(), S_OK);
        platform::clearRegistry();
    }
    static ComPtr<IDispatch> activate(const OLECHAR* progId) {
        CLSID clsid{};
        ComPtr<IDispatch> object;
        EXPECT_EQ(CLSIDFromProgID(progId, &clsid), S_OK);
        EXPECT_EQ(
            CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.putVoid()),
            S_OK);
        return object;
    }
};

OleString text(const OLECHAR* literal) { return literal; }

TEST_F(SampleServer, ComputesAndGreets) {
    IDispatch* const s = server.get();
    EXPECT_EQ(method(s, OLESTR("Compute"), 3.0).text(), "5:10");
    EXPECT_EQ(method(s, OLESTR("Add"), 1.5, 2.0).text(), "5:3.5");
    EXPECT_EQ(method(s, OLESTR("Concat"), text(OLESTR("a")), text(OLESTR("b"))).text(), "8:ab");
    EXPECT_EQ(method(s, OLESTR("Greet")).text(), "8:Hello!");
    EXPECT_EQ(method(s, OLESTR("Greet"), text(OLESTR("Ada"))).text(), "8:Hello, Ada!");
    EXPECT_EQ(method(s, OLESTR("Scale"), 2.5).text(), "5:5");
    EXPECT_EQ(method(s, OLESTR("Scale"), 2.5, 4.0).text(), "5:10");
    EXPECT_EQ(method(s, OLESTR("Next"), LONG(2)).text(), "3:0");
    EXPECT_EQ(method(s, OLESTR("Sum"), std::vector<double>{1, 2, 3.5}).text(), "5:6.5");
    EXPECT_EQ(method(s, OLESTR("BaseMethod"), LONG(1)).text(), "3:101");
    const auto vector = method(s, OLESTR("MakeVector"), LONG(3));
    ASSERT_EQ(vector.result->vt, VT_ARRAY | VT_R8);
    EXPECT_EQ(kit::ValueTraits<std::vector<double>>::read(vector.result->parray),
              (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(method(s, OLESTR("MakeVector"), LONG(-1)).hr, E_INVALIDARG);
}

TEST_F(SampleServer, WritesItsOutputs) {
    IDispatch* const s = server.get();
    LONG a = 1;
    LONG b = 2;
    EXPECT_EQ(invoke(s, dispidOf(s, OLESTR("Swap")), DISPATCH_METHOD,
                     {byReference(VT_I4, &a), byReference(VT_I4, &b)})
                  .hr,
              S_OK);
    EXPECT_EQ(std::pair(a, b), std::pair(LONG{2}, LONG{1}));
    double min = 0;
    double max = 0;
    EXPECT_EQ(
        invoke(s, dispidOf(s, OLESTR("MinMax")), DISPATCH_METHOD,
               {kit::toVariant(3.0).detach(), kit::toVariant(-1.0).detach(),
                kit::toVariant(4.0).detach(), byReference(VT_R8, &min), byReference(VT_R8, &max)})
            .text(),
        "5:2");
    EXPECT_EQ(std::pair(min, max), std::pair(-1.0, 4.0));
    ScopedVariant any;
    EXPECT_EQ(invoke(s, dispidOf(s, OLESTR("OutVariant")), DISPATCH_METHOD,
                     {byReference(VT_VARIANT, any.inOut())})
                  .hr,
              S_OK);
    EXPECT_EQ(any->dblVal, 42.5);
}

TEST_F(SampleServer, GivesEveryKindBackAndKeepsItAsAProperty) {
    const auto each = [&](const OleString& kind, auto value) {
        auto expected = kit::toVariant(kit::copyOf(value));
        auto echo = method(server.get(), (OLESTR("Echo") + kind).c_str(), kit::copyOf(value));
        const OleString property = OLESTR("Prop") + kind;
        EXPECT_EQ(put(server.get(), property.c_str(), std::move(value)).hr, S_OK);
        auto kept = get(server.get(), property.c_str());
        for (auto* outcome : {&echo, &kept}) {
            EXPECT_EQ(outcome->hr, S_OK) << platform::toNarrow(kind);
            EXPECT_EQ(outcome->result->vt, expected->vt) << platform::toNarrow(kind);
            if (expected->vt == VT_BSTR)
                EXPECT_EQ(platform::viewOf(outcome->result->bstrVal), OLESTR("text"));
            else
                EXPECT_EQ(std::memcmp(&outcome->result.get(), &expected.get(), sizeof(VARIANT)), 0)
                    << platform::toNarrow(kind);
        }
    };
    DECIMAL decimal{};
    decimal.scale = 2;
    decimal.Lo64 = 12345;
    each(OLESTR("I1"), static_cast<signed char>(-7));
    each(OLESTR("UI1"), BYTE(200));
    each(OLESTR("I2"), SHORT(-30000));
    each(OLESTR("UI2"), USHORT(60000));
    each(OLESTR("I4"), LONG(-2000000000));
    each(OLESTR("UI4"), ULONG(4000000000));
    each(OLESTR("I8"), LONGLONG(-1) << 40);
    each(OLESTR("UI8"), ULONGLONG(1) << 63);
    each(OLESTR("Int"), kit::Int{-5});
    each(OLESTR("UInt"), kit::UInt{5});
    each(OLESTR("R4"), 1.25f);
    each(OLESTR("R8"), 1e300);
    each(OLESTR("Currency"), CY{.int64 = 12345});
    each(OLESTR("Date"), kit::Date{40000.25});
    each(OLESTR("BSTR"), text(OLESTR("text")));
    each(OLESTR("Bool"), true);
    each(OLESTR("Decimal"), decimal);
    each(OLESTR("Error"), kit::ErrorCode{E_ABORT});
    each(OLESTR("HResult"), kit::HResult{S_FALSE});
    each(OLESTR("Variant"), kit::toVariant(SHORT(3)));
    const auto child = activate(OLESTR("Sample.Child.1"));
    each(OLESTR("Dispatch"), child);
    each(OLESTR("Unknown"), ComPtr<IUnknown>::borrow(child.get()));
    each(OLESTR("Color"), LONG(-1));
}

// Bytes that differ, in arrays of two elements a dimension, from 1 up.
TEST_F(SampleServer, GivesArraysOfEveryKindAndShapeBack) {
    constexpr std::pair<const OLECHAR*, VARTYPE> kinds[] = {{OLESTR("I1"), VT_I1},
                                                            {OLESTR("UI1"), VT_UI1},
                                                            {OLESTR("I2"), VT_I2},
                                                            {OLESTR("UI2"), VT_UI2},
                                                            {OLESTR("I4"), VT_I4},
                                                            {OLESTR("UI4"), VT_UI4},
                                                            {OLESTR("I8"), VT_I8},
                                                            {OLESTR("UI8"), VT_UI8},
                                                            {OLESTR("R4"), VT_R4},
                                                            {OLESTR("R8"), VT_R8},
                                                            {OLESTR("Currency"), VT_CY},
                                                            {OLESTR("Date"), VT_DATE},
                                                            {OLESTR("Decimal"), VT_DECIMAL},
                                                            {OLESTR("BSTR"), VT_BSTR},
                                                            {OLESTR("Bool"), VT_BOOL},
                                                            {OLESTR("Variant"), VT_VARIANT},
                                                            {OLESTR("Dispatch"), VT_DISPATCH},
                                                            {OLESTR("Unknown"), VT_UNKNOWN}};
    for (const auto& [name, vt] : kinds)
        for (UINT dims = 1; dims <= 4; ++dims) {
            SAFEARRAYBOUND bounds[] = {{2, 1}, {2, 1}, {2, 1}, {2, 1}};
            ScopedVariant value;
            value->parray = SafeArrayCreate(vt, dims, bounds);
            value->vt = static_cast<VARTYPE>(VT_ARRAY | vt);
            const std::size_t bytes = std::size_t{value->parray->cbElements} << dims;
            auto* data = static_cast<BYTE*>(value->parray->pvData);
            const bool isPlain = !(value->parray->fFeatures &
                                   (FADF_BSTR | FADF_VARIANT | FADF_DISPATCH | FADF_UNKNOWN));
            for (std::size_t i = 0; isPlain && i < bytes; ++i)
                data[i] = static_cast<BYTE>(i);
            const OleString member = OLESTR("EchoArray") + OleString(name);
            const auto echo = invoke(server.get(), dispidOf(server.get(), member.c_str()),
                                     DISPATCH_METHOD, {value.get()});
            ASSERT_EQ(echo.hr, S_OK) << platform::toNarrow(member);
            ASSERT_EQ(echo.result->vt, value->vt);
            EXPECT_EQ(SafeArrayGetDim(echo.result->parray), dims);
            EXPECT_EQ(echo.result->parray->rgsabound[0].lLbound, 1);
            // Null texts are copied as empty ones.
            if (vt == VT_BSTR) continue;
            EXPECT_EQ(std::memcmp(echo.result->parray->pvData, data, bytes), 0)
                << platform::toNarrow(member);
        }
    const auto texts = method(server.get(), OLESTR("EchoArrayBSTR"),
                              std::vector<OleString>{OLESTR("a"), OLESTR("b")});
    EXPECT_EQ(kit::ValueTraits<std::vector<OleString>>::read(texts.result->parray),
              (std::vector<OleString>{OLESTR("a"), OLESTR("b")}));
}

TEST_F(SampleServer, KeepsACollection) {
    const auto items = get(server.get(), OLESTR("Items"));
    ASSERT_EQ(items.result->vt, VT_DISPATCH);
    IDispatch* const collection = items.result->pdispVal;
    EXPECT_EQ(get(collection, OLESTR("Count")).text(), "3:3");
    EXPECT_EQ(dispidOf(collection, OLESTR("Item")), DISPID_VALUE);
    const auto added = method(collection, OLESTR("Add"), text(OLESTR("fourth")));
    EXPECT_EQ(get(collection, OLESTR("Item"), LONG(4)).result->pdispVal, added.result->pdispVal);
    EXPECT_EQ(get(added.result->pdispVal, OLESTR("Name")).text(), "8:fourth");
    for (const LONG outside : {0, 5})
        EXPECT_EQ(get(collection, OLESTR("Item"), outside).hr, DISP_E_BADINDEX);
    EXPECT_EQ(method(server.get(), OLESTR("MakeGrid"), LONG(5)).hr, E_INVALIDARG);
    EXPECT_EQ(method(server.get(), OLESTR("MakeValue"), text(OLESTR("no kind"))).hr,
              DISP_E_BADVARTYPE);
    const auto bare = method(server.get(), OLESTR("NewBare"));
    UINT count = 9;
    EXPECT_EQ(bare.result->pdispVal->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 0u);
}

TEST_F(SampleServer, FailsInEveryWay) {
    IDispatch* const s = server.get();
    LONG quotient = 0;
    LONG remainder = 0;
    const auto divided = invoke(s, dispidOf(s, OLESTR("Divide")), DISPATCH_METHOD,
                                {kit::toVariant(LONG(1)).detach(), kit::toVariant(LONG(0)).detach(),
                                 byReference(VT_I4, &quotient), byReference(VT_I4, &remainder)});
    EXPECT_EQ(divided.hr, DISP_E_EXCEPTION);
    EXPECT_EQ(platform::viewOf(divided.excepInfo.bstrDescription), OLESTR("Division by zero."));
    EXPECT_EQ(platform::viewOf(divided.excepInfo.bstrHelpFile), OLESTR("sample.chm"));
    EXPECT_EQ(divided.excepInfo.dwHelpContext, 0x2Au);
    EXPECT_EQ(divided.excepInfo.wCode, 1000);

    EXPECT_EQ(method(s, OLESTR("Fail"), LONG(E_ACCESSDENIED)).hr, E_ACCESSDENIED);
    EXPECT_EQ(method(s, OLESTR("Fail"), LONG(S_FALSE)).hr, S_FALSE);
    const auto raised = method(s, OLESTR("Raise"), LONG(17));
    EXPECT_EQ(raised.excepInfo.wCode, 17);
    EXPECT_EQ(platform::viewOf(raised.excepInfo.bstrDescription),
              OLESTR("The server raised error 17."));
    EXPECT_EQ(raised.excepInfo.bstrHelpFile, nullptr);
    const auto quiet = method(s, OLESTR("FailQuietly"));
    EXPECT_EQ(quiet.hr, DISP_E_EXCEPTION);
    EXPECT_EQ(quiet.excepInfo.scode, E_FAIL);
    EXPECT_EQ(quiet.excepInfo.bstrDescription, nullptr);
}

TEST_F(SampleServer, CrashesOnDemandAndGoesOn) {
    const std::pair<const OLECHAR*, std::uint32_t> crashes[] = {
        {OLESTR("Crash"), platform::faultAccessViolation},
        {OLESTR("CrashDivide"), platform::faultIntegerDivideByZero},
        {OLESTR("CrashCall"), platform::faultAccessViolation},
        {OLESTR("CrashThrow"), platform::faultCppException}};
    for (const auto& [name, code] : crashes) {
        const DISPID dispid = dispidOf(server.get(), name);
        DISPPARAMS params{};
        const auto fault = platform::guarded([&] {
            server->Invoke(dispid, IID_NULL, 0, DISPATCH_METHOD, &params, nullptr, nullptr,
                           nullptr);
        });
        EXPECT_EQ(fault.code, code) << platform::toNarrow(name);
    }
    EXPECT_EQ(method(server.get(), OLESTR("Compute"), 1.0).text(), "5:2");
}

TEST_F(SampleServer, KeepsItsPropertiesUntilReset) {
    IDispatch* const s = server.get();
    EXPECT_EQ(put(s, OLESTR("Width"), 7.4).hr, S_OK);
    EXPECT_EQ(get(s, OLESTR("Width")).text(), "2:7");
    EXPECT_EQ(put(s, OLESTR("Item"), LONG(3), text(OLESTR("three"))).hr, S_OK);
    EXPECT_EQ(get(s, OLESTR("Item"), LONG(3)).text(), "8:three");
    EXPECT_EQ(get(s, OLESTR("Item")).hr, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(get(s, OLESTR("Level")).text(), "5:0");
    EXPECT_EQ(get(s, OLESTR("Level"), LONG(2)).text(), "5:20");
    EXPECT_EQ(put(s, OLESTR("WriteOnly"), 8.0).hr, S_OK);
    EXPECT_EQ(get(s, OLESTR("WriteOnly")).hr, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(get(s, OLESTR("Height")).text(), "5:8");
    EXPECT_EQ(get(s, OLESTR("Created")).text(), "7:1/1/2000 12:00:00 PM");
    EXPECT_EQ(put(s, OLESTR("Tag"), LONG(4)).hr, S_OK);
    EXPECT_EQ(get(s, OLESTR("Tag")).text(), "3:4");
    EXPECT_EQ(put(s, OLESTR("Kind"), text(OLESTR("x"))).hr, DISP_E_MEMBERNOTFOUND);

    const auto child = method(s, OLESTR("NewChild"), text(OLESTR("kid")));
    ASSERT_EQ(child.result->vt, VT_DISPATCH);
    EXPECT_EQ(get(child.result->pdispVal, OLESTR("Name")).text(), "8:kid");
    EXPECT_EQ(get(s, OLESTR("Count")).text(), "3:1");
    EXPECT_EQ(call(s, OLESTR("Child"), DISPATCH_PROPERTYPUTREF,
                   ComPtr<IDispatch>::borrow(child.result->pdispVal))
                  .hr,
              S_OK);
    EXPECT_EQ(get(s, OLESTR("Child")).result->pdispVal, child.result->pdispVal);
    EXPECT_EQ(method(s, OLESTR("Reset")).result->vt, VT_EMPTY);
    EXPECT_EQ(get(s, OLESTR("Child")).result->pdispVal, nullptr);
    EXPECT_EQ(get(s, OLESTR("Width")).text(), "2:100");
}

TEST_F(SampleServer, RegistersItselfAsRunning) {
    ComPtr<IUnknown> running;
    EXPECT_EQ(GetActiveObject(sample::serverClass, nullptr, running.put()), MK_E_UNAVAILABLE);
    EXPECT_EQ(method(server.get(), OLESTR("RegisterActive")).hr, S_OK);
    ASSERT_EQ(GetActiveObject(sample::serverClass, nullptr, running.put()), S_OK);
    EXPECT_EQ(platform::queryInterface<IDispatch>(running.get(), IID_IDispatch).get(),
              server.get());
    EXPECT_EQ(method(server.get(), OLESTR("RevokeActive")).hr, S_OK);
    EXPECT_EQ(GetActiveObject(sample::serverClass, nullptr, running.put()), MK_E_UNAVAILABLE);
}

// A sink whose calls are found in the call log.
struct Sink final : kit::DispatchObject {
    Sink() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition() {
        static const auto made =
            kit::ClassBuilder<Sink>("Sink", CLSID{}, sample::eventsInterface).build();
        return *made;
    }
};

TEST_F(SampleServer, FiresItsEvents) {
    const auto container = platform::queryInterface<IConnectionPointContainer>(
        server.get(), IID_IConnectionPointContainer);
    ASSERT_TRUE(container);
    ComPtr<IConnectionPoint> point;
    ASSERT_EQ(container->FindConnectionPoint(sample::eventsInterface, point.put()), S_OK);
    DWORD cookie = 0;
    ASSERT_EQ(point->Advise(kit::createDispatch<Sink>().get(), &cookie), S_OK);
    kit::CallLog log;
    method(server.get(), OLESTR("FireTick"), LONG(5));
    put(server.get(), OLESTR("Name"), text(OLESTR("new")));
    method(server.get(), OLESTR("FireDone"));
    ASSERT_EQ(log.calls().size(), 3u);
    EXPECT_EQ(log.calls()[0].dispid, sample::tickEvent);
    EXPECT_EQ(log.calls()[0].arguments.at(0).value->lVal, 5);
    EXPECT_EQ(log.calls()[1].dispid, sample::renamedEvent);
    EXPECT_EQ(platform::viewOf(log.calls()[1].arguments.at(1).value->bstrVal), OLESTR("Sample"));
    EXPECT_EQ(platform::viewOf(log.calls()[1].arguments.at(0).value->bstrVal), OLESTR("new"));
    EXPECT_EQ(log.calls()[2].dispid, sample::doneEvent);
    EXPECT_TRUE(log.calls()[2].arguments.empty());
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
}

TEST_F(SampleServer, FiresEventsOfEverySort) {
    const auto container = platform::queryInterface<IConnectionPointContainer>(
        server.get(), IID_IConnectionPointContainer);
    ComPtr<IConnectionPoint> point;
    ASSERT_EQ(container->FindConnectionPoint(sample::eventsInterface, point.put()), S_OK);
    DWORD cookie = 0;
    ASSERT_EQ(point->Advise(kit::createDispatch<Sink>().get(), &cookie), S_OK);
    kit::CallLog log;
    const struct {
        const OLECHAR* method;
        DISPID dispid;
        std::vector<VARTYPE> types; // as in rgvarg: last first
    } cases[] = {
        {OLESTR("FireEverything"),
         sample::everythingEvent,
         {VT_I4,   VT_UNKNOWN, VT_DISPATCH, VT_R8,  VT_HRESULT, VT_ERROR, VT_BOOL, VT_BSTR,
          VT_DATE, VT_DECIMAL, VT_CY,       VT_R8,  VT_R4,      VT_UINT,  VT_INT,  VT_UI8,
          VT_I8,   VT_UI4,     VT_I4,       VT_UI2, VT_I2,      VT_UI1,   VT_I1}},
        {OLESTR("FireAsked"),
         sample::askedEvent,
         {VT_BYREF | VT_BOOL, VT_BYREF | VT_BSTR, VT_BYREF | VT_I4}},
        {OLESTR("FireTooFew"), sample::renamedEvent, {VT_BSTR}},
        {OLESTR("FireTooMany"), sample::renamedEvent, {VT_BSTR, VT_BSTR, VT_BSTR}},
    };
    for (const auto& row : cases) {
        log.clear();
        EXPECT_EQ(method(server.get(), row.method).hr, S_OK);
        ASSERT_EQ(log.calls().size(), 1u);
        EXPECT_EQ(log.calls()[0].dispid, row.dispid);
        std::vector<VARTYPE> types;
        for (const auto& argument : log.calls()[0].arguments)
            types.push_back(argument.vt);
        EXPECT_EQ(types, row.types);
        EXPECT_TRUE(log.calls()[0].named.empty());
    }
    log.clear();
    method(server.get(), OLESTR("FireNamed"), text(OLESTR("a")), text(OLESTR("b")));
    ASSERT_EQ(log.calls().size(), 1u);
    EXPECT_EQ(log.calls()[0].named, (std::vector<DISPID>{0, 1}));
    EXPECT_EQ(platform::viewOf(log.calls()[0].arguments.at(0).value->bstrVal), OLESTR("a"));
    EXPECT_EQ(method(server.get(), OLESTR("FireUnderWrongInterface")).text(), "3:-2147352575");
    EXPECT_EQ(log.calls().back().riid, sample::eventsInterface);
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
}

TEST_F(SampleServer, OffersOneLibraryForItsClasses) {
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(server->GetTypeInfo(0, 0, info.put()), S_OK);
    ComPtr<ITypeLib> library;
    UINT index = 0;
    ASSERT_EQ(info->GetContainingTypeLib(library.put(), &index), S_OK);
    std::vector<std::string> names;
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        ScopedBstr name;
        library->GetDocumentation(static_cast<INT>(i), name.put(), nullptr, nullptr, nullptr);
        names.push_back(platform::toNarrow(platform::viewOf(name.get())));
    }
    EXPECT_EQ(names, (std::vector<std::string>{"Color", "ISampleBase", "ISampleServer",
                                               "ISampleEvents", "ISampleChild", "ISampleCollection",
                                               "ISampleItems", "Server", "Child", "Items"}));
}

} // namespace
} // namespace server_tests
