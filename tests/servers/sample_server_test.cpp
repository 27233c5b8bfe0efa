// The sample server, loaded from its shared library as any client would, and with it what the kit
// promises: coercion, refusals, outputs, properties, errors, events.
#include "calls.h"
#include "platform/guarded_call.h"
#include "platform/registry_files.h"
#include "platform/shared_library.h"
#include "servers/sample/identities.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

namespace server_tests {
namespace {

const std::filesystem::path registration = SAMPLE_REGISTRATION;

struct SampleServer : ::testing::Test {
    ComPtr<IDispatch> server;
    IDispatch* s = nullptr;

    void SetUp() override {
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
        platform::clearRegistry();
        platform::loadRegistryFile(registration);
        server = activate(OLESTR("Sample.Server"));
        ASSERT_TRUE(server);
        s = server.get();
    }
    // The library counts its objects by itself: it may go once all are gone.
    void TearDown() override {
        server.reset();
        platform::SharedLibrary library(registration.parent_path() / SAMPLE_LIBRARY);
        ASSERT_TRUE(library) << library.error();
        const auto canUnloadNow = library.find<HRESULT STDAPICALLTYPE()>("DllCanUnloadNow");
        ASSERT_TRUE(canUnloadNow);
        EXPECT_EQ(canUnloadNow(), S_OK);
        EXPECT_EQ(kit::liveObjectNames(), std::vector<std::string>());
        platform::clearRegistry();
        CoUninitialize();
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

TEST_F(SampleServer, AnswersForItsInterfacesAndKeepsOneIdentity) {
    for (const IID& iid :
         {IID_IUnknown, IID_IDispatch, sample::serverInterface, IID_IConnectionPointContainer,
          IID_IProvideClassInfo, IID_IProvideClassInfo2}) {
        const auto other = platform::queryInterface<IUnknown>(s, iid);
        ASSERT_TRUE(other);
        EXPECT_EQ(platform::queryInterface<IUnknown>(other.get(), IID_IUnknown).get(), s);
    }
    void* nothing = &nothing;
    EXPECT_EQ(s->QueryInterface(IID_IClassFactory, &nothing), E_NOINTERFACE);
    EXPECT_EQ(nothing, nullptr);
    EXPECT_EQ(CoCreateInstance(sample::serverClass, s, CLSCTX_SERVER, IID_IUnknown, &nothing),
              CLASS_E_NOAGGREGATION);
    const auto info = platform::queryInterface<IProvideClassInfo2>(s, IID_IProvideClassInfo2);
    ComPtr<ITypeInfo> coclass;
    ScopedBstr name;
    ASSERT_EQ(info->GetClassInfo(coclass.put()), S_OK);
    EXPECT_EQ(coclass->GetDocumentation(-1, name.put(), nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(platform::viewOf(name.get()), OLESTR("Server"));
    GUID events{};
    EXPECT_EQ(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events), S_OK);
    EXPECT_EQ(events, sample::eventsInterface);
}

TEST_F(SampleServer, OffersOneLibraryForItsClasses) {
    ComPtr<ITypeInfo> info;
    EXPECT_EQ(s->GetTypeInfo(1, 0, info.put()), DISP_E_BADINDEX);
    ASSERT_EQ(s->GetTypeInfo(0, 0, info.put()), S_OK);
    ComPtr<ITypeLib> library;
    UINT index = 0;
    ASSERT_EQ(info->GetContainingTypeLib(library.put(), &index), S_OK);
    std::string names;
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        ScopedBstr name;
        library->GetDocumentation(static_cast<INT>(i), name.put(), nullptr, nullptr, nullptr);
        names += platform::toNarrow(platform::viewOf(name.get())) + " ";
    }
    EXPECT_EQ(names, "Color ISampleBase ISampleServer ISampleEvents ISampleChild "
                     "ISampleCollection ISampleItems Server Child Items ");
    const auto bare = method(s, "NewBare");
    UINT count = 9;
    EXPECT_EQ(bare.result->pdispVal->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(bare.result->pdispVal->GetTypeInfo(0, 0, info.put()), E_NOTIMPL);
}

TEST_F(SampleServer, ComputesAndGreets) {
    EXPECT_EQ(method(s, "Compute", 3.0).text(), "5:10");
    EXPECT_EQ(method(s, "concat", "a", "b").text(), "8:ab");
    EXPECT_EQ(method(s, "Greet").text(), "8:Hello!");
    EXPECT_EQ(method(s, "Greet", "Ada").text(), "8:Hello, Ada!");
    EXPECT_EQ(method(s, "Greet", kit::ErrorCode{DISP_E_PARAMNOTFOUND}).text(), "8:Hello!");
    EXPECT_EQ(method(s, "Scale", 2.5, 4.0).text(), "5:10");
    EXPECT_EQ(method(s, "Next", LONG(2)).text(), "3:0");
    EXPECT_EQ(method(s, "Sum", std::vector<double>{1, 2, 3.5}).text(), "5:6.5");
    EXPECT_EQ(method(s, "BaseMethod", LONG(1)).text(), "3:101");
    EXPECT_EQ(method(s, "CountOf", server).text(), "3:1");
    EXPECT_EQ(method(s, "CountOf", ComPtr<IUnknown>::borrow(s)).text(), "3:1");
    EXPECT_EQ(method(s, "CountOf", ComPtr<IDispatch>()).text(), "3:0");
    const auto vector = method(s, "MakeVector", LONG(3));
    ASSERT_EQ(vector.result->vt, VT_ARRAY | VT_R8);
    EXPECT_EQ(kit::ValueTraits<std::vector<double>>::read(vector.result->parray),
              (std::vector<double>{1, 2, 3}));
}

TEST_F(SampleServer, ConvertsArgumentsOfOtherKinds) {
    double number = 1.5;
    LONG whole = 4;
    ScopedVariant text = kit::toVariant(OleString(OLESTR("2.25")));
    const struct {
        Arguments arguments;
        const char* sum;
    } rows[] = {
        {Arguments(2.0, LONG(3)), "5:5"},
        {Arguments(true, 0.0), "5:-1"},
        {Arguments(byReference(VT_R8, &number), byReference(VT_I4, &whole)), "5:5.5"},
        {Arguments(byReference(VT_VARIANT, text.inOut()), 0.0), "5:2.25"},
        {Arguments(byReference(VT_BSTR, &text.inOut()->bstrVal), 0.0), "5:2.25"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Outcome(s, "Add", DISPATCH_METHOD, row.arguments).text(), row.sum);
}

TEST_F(SampleServer, RefusesWrongCallsWithTheIndexOfTheArgument) {
    constexpr UINT none = 99;
    constexpr kit::ErrorCode missing{DISP_E_PARAMNOTFOUND};
    const struct {
        const char* member;
        WORD flags;
        Arguments arguments;
        HRESULT hr;
        UINT argument;
    } rows[] = {
        {"Add", DISPATCH_METHOD, Arguments("word", 1.0), DISP_E_TYPEMISMATCH, 1},
        {"Add", DISPATCH_METHOD, Arguments(1.0, "word"), DISP_E_TYPEMISMATCH, 0},
        {"Add", DISPATCH_METHOD, Arguments(1.0), DISP_E_BADPARAMCOUNT, none},
        {"Add", DISPATCH_METHOD, Arguments(1.0, 1.0, 1.0), DISP_E_BADPARAMCOUNT, none},
        {"Add", DISPATCH_METHOD, Arguments(missing, 1.0), DISP_E_PARAMNOTOPTIONAL, 1},
        {"Add", DISPATCH_PROPERTYGET, Arguments(1.0, 1.0), DISP_E_MEMBERNOTFOUND, none},
        {"EchoI2", DISPATCH_METHOD, Arguments(LONG(70000)), DISP_E_OVERFLOW, 0},
        {"OutI4", DISPATCH_METHOD, Arguments(LONG(1)), DISP_E_TYPEMISMATCH, 0},
        {"Sum", DISPATCH_METHOD, Arguments(1.0), DISP_E_TYPEMISMATCH, 0},
        {"Count", DISPATCH_PROPERTYPUT, Arguments(1.0), DISP_E_MEMBERNOTFOUND, none},
        {"Kind", DISPATCH_PROPERTYPUT, Arguments("x"), DISP_E_MEMBERNOTFOUND, none},
        {"Child", DISPATCH_PROPERTYPUT, Arguments(server), DISP_E_MEMBERNOTFOUND, none},
        {"WriteOnly", DISPATCH_PROPERTYGET, Arguments(), DISP_E_MEMBERNOTFOUND, none},
        {"Item", DISPATCH_PROPERTYGET, Arguments(), DISP_E_BADPARAMCOUNT, none},
        {"Item", DISPATCH_PROPERTYPUT, Arguments("x"), DISP_E_BADPARAMCOUNT, none},
        {"Nothing", DISPATCH_METHOD, Arguments(), DISP_E_MEMBERNOTFOUND, none},
        {"MakeVector", DISPATCH_METHOD, Arguments(LONG(-1)), E_INVALIDARG, none},
        {"MakeGrid", DISPATCH_METHOD, Arguments(LONG(5)), E_INVALIDARG, none},
        {"MakeValue", DISPATCH_METHOD, Arguments("no kind"), DISP_E_BADVARTYPE, none},
        {"Fail", DISPATCH_METHOD, Arguments(LONG(E_ACCESSDENIED)), E_ACCESSDENIED, none},
        {"Fail", DISPATCH_METHOD, Arguments(LONG(S_FALSE)), S_FALSE, none},
    };
    for (const auto& row : rows) {
        const Outcome outcome(s, row.member, row.flags, row.arguments);
        EXPECT_EQ(outcome.hr, row.hr) << row.member;
        EXPECT_EQ(outcome.argumentError, row.argument) << row.member;
    }
}

TEST_F(SampleServer, TakesANamedArgumentInAPropertyPutOnly) {
    VARIANT value = kit::toVariant(1.0).detach();
    DISPID named = DISPID_PROPERTYPUT;
    DISPPARAMS withName{&value, &named, 1, 1};
    DISPPARAMS withoutName{&value, nullptr, 1, 0};
    const auto hr = [&](const char* name, WORD flags, DISPPARAMS& params, REFIID riid = IID_NULL) {
        return s->Invoke(dispidOf(s, name), riid, 0, flags, &params, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(hr("Compute", DISPATCH_METHOD, withName), DISP_E_NONAMEDARGS);
    EXPECT_EQ(hr("Tag", DISPATCH_PROPERTYPUT, withoutName), DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(hr("Tag", DISPATCH_PROPERTYPUT, withName), S_OK);
    EXPECT_EQ(hr("Tag", DISPATCH_PROPERTYPUT, withName, IID_IDispatch), DISP_E_UNKNOWNINTERFACE);
    named = 3;
    EXPECT_EQ(hr("Tag", DISPATCH_PROPERTYPUT, withName), DISP_E_NONAMEDARGS);
}

TEST_F(SampleServer, WritesItsOutputsInTheKindTheCallerGave) {
    LONG a = 1;
    LONG b = 2;
    EXPECT_EQ(method(s, "Swap", byReference(VT_I4, &a), byReference(VT_I4, &b)).hr, S_OK);
    EXPECT_EQ(std::pair(a, b), std::pair(LONG{2}, LONG{1}));
    SHORT small = 0;
    ScopedVariant any = kit::toVariant(OleString(OLESTR("old")));
    EXPECT_EQ(method(s, "MinMax", 3.0, -1.0, 4.0, byReference(VT_I2, &small),
                     byReference(VT_VARIANT, any.inOut()))
                  .text(),
              "5:2");
    EXPECT_EQ(small, -1);
    ASSERT_EQ(any->vt, VT_R8);
    EXPECT_EQ(any->dblVal, 4);
    EXPECT_EQ(method(s, "OutBSTR", byReference(VT_VARIANT, any.inOut())).hr, S_OK);
    ASSERT_EQ(any->vt, VT_BSTR);
    EXPECT_EQ(platform::viewOf(any->bstrVal), OLESTR("out"));
}

struct Kind {
    const char* name;
    VARTYPE vt;
    ULONGLONG bytes; // a value of the kind; objects and text are made otherwise
};
// Those of arrays first.
constexpr Kind kinds[] = {{"I1", VT_I1, 0xF9},
                          {"UI1", VT_UI1, 200},
                          {"I2", VT_I2, 0x8AD0},
                          {"UI2", VT_UI2, 60000},
                          {"I4", VT_I4, 0x88CA6C00},
                          {"UI4", VT_UI4, 4000000000},
                          {"I8", VT_I8, 0xFFFFFF0000000000},
                          {"UI8", VT_UI8, 1ULL << 63},
                          {"R4", VT_R4, 0x3FA00000},
                          {"R8", VT_R8, 0x3FF8000000000000},
                          {"Currency", VT_CY, 12345},
                          {"Date", VT_DATE, 0x40E3880800000000},
                          {"Decimal", VT_DECIMAL, 12345},
                          {"Bool", VT_BOOL, 0xFFFF},
                          {"BSTR", VT_BSTR, 0},
                          {"Dispatch", VT_DISPATCH, 0},
                          {"Unknown", VT_UNKNOWN, 0},
                          {"Variant", VT_VARIANT, 0},
                          {"Int", VT_INT, 0xFFFFFFFB},
                          {"UInt", VT_UINT, 5},
                          {"Error", VT_ERROR, 0x80004004},
                          {"HResult", VT_HRESULT, 1},
                          {"Color", VT_I4, 0xFFFFFFFF}};
constexpr std::size_t arrayKinds = 18;

TEST_F(SampleServer, GivesEveryKindBackAndKeepsItAsAProperty) {
    const auto child = activate(OLESTR("Sample.Child.1"));
    for (const auto& [name, vt, bytes] : kinds) {
        ScopedVariant value;
        value->ullVal = bytes;
        value->vt = vt;
        if (vt == VT_BSTR) value->bstrVal = platform::makeBstr(OLESTR("text")).detach();
        if (vt == VT_DISPATCH || vt == VT_UNKNOWN)
            value->punkVal = ComPtr<IUnknown>::borrow(child.get()).detach();
        if (vt == VT_VARIANT) *value.inOut() = kit::toVariant(SHORT{3}).detach();

        EXPECT_EQ(put(s, std::string("Prop") + name, value.get()).hr, S_OK) << name;
        Outcome outcomes[] = {method(s, std::string("Echo") + name, value.get()),
                              get(s, std::string("Prop") + name)};
        for (Outcome& outcome : outcomes) {
            EXPECT_EQ(outcome.hr, S_OK) << name;
            const bool isSame = vt == VT_BSTR ? outcome.text() == "8:text"
                                              : std::memcmp(&outcome.result.get(), &value.get(),
                                                            sizeof(VARIANT)) == 0;
            EXPECT_TRUE(isSame) << name;
        }
    }
}

// Bytes that differ, in arrays of two elements a dimension, from 1 up.
TEST_F(SampleServer, GivesArraysOfEveryKindAndShapeBack) {
    for (const Kind& kind : std::span(kinds).first(arrayKinds))
        for (UINT dims = 1; dims <= 4; ++dims) {
            SAFEARRAYBOUND bounds[] = {{2, 1}, {2, 1}, {2, 1}, {2, 1}};
            ScopedVariant value;
            value->parray = SafeArrayCreate(kind.vt, dims, bounds);
            value->vt = static_cast<VARTYPE>(VT_ARRAY | kind.vt);
            const std::size_t bytes = std::size_t{value->parray->cbElements} << dims;
            auto* data = static_cast<BYTE*>(value->parray->pvData);
            for (std::size_t i = 0; kind.bytes && i < bytes; ++i)
                data[i] = static_cast<BYTE>(i);
            const auto echo = method(s, std::string("EchoArray") + kind.name, value.get());
            ASSERT_EQ(echo.hr, S_OK) << kind.name;
            ASSERT_EQ(echo.result->vt, value->vt);
            EXPECT_EQ(SafeArrayGetDim(echo.result->parray), dims);
            EXPECT_EQ(echo.result->parray->rgsabound[0].lLbound, 1);
            if (kind.vt == VT_BSTR) continue; // null texts are copied as empty ones
            EXPECT_EQ(std::memcmp(echo.result->parray->pvData, data, bytes), 0) << kind.name;
        }
    const std::vector<OleString> texts{OLESTR("a"), OLESTR(""), OLESTR("b")};
    const auto echo = method(s, "EchoArrayBSTR", texts);
    EXPECT_EQ(kit::ValueTraits<std::vector<OleString>>::read(echo.result->parray), texts);
}

TEST_F(SampleServer, KeepsACollection) {
    const auto items = get(s, "Items");
    ASSERT_EQ(items.result->vt, VT_DISPATCH);
    IDispatch* const collection = items.result->pdispVal;
    EXPECT_EQ(get(collection, "Count").text(), "3:3");
    EXPECT_EQ(dispidOf(collection, "ITEM"), DISPID_VALUE);
    const auto added = method(collection, "Add", "fourth");
    EXPECT_EQ(get(collection, "Item", LONG(4)).result->pdispVal, added.result->pdispVal);
    EXPECT_EQ(get(added.result->pdispVal, "Name").text(), "8:fourth");
    for (const LONG outside : {0, 5})
        EXPECT_EQ(get(collection, "Item", outside).hr, DISP_E_BADINDEX);
}

TEST_F(SampleServer, KeepsItsPropertiesUntilReset) {
    EXPECT_EQ(put(s, "Width", 7.4).hr, S_OK);
    EXPECT_EQ(get(s, "Width").text(), "2:7");
    EXPECT_EQ(Outcome(s, "Width", DISPATCH_METHOD | DISPATCH_PROPERTYGET, Arguments()).text(),
              "2:7");
    EXPECT_EQ(put(s, "Item", LONG(3), "three").hr, S_OK);
    EXPECT_EQ(get(s, "Item", LONG(3)).text(), "8:three");
    EXPECT_EQ(get(s, "Level").text(), "5:0");
    EXPECT_EQ(get(s, "Level", LONG(2)).text(), "5:20");
    EXPECT_EQ(put(s, "WriteOnly", 8.0).hr, S_OK);
    EXPECT_EQ(get(s, "Height").text(), "5:8");
    EXPECT_EQ(get(s, "Created").text(), "7:1/1/2000 12:00:00 PM");
    EXPECT_EQ(put(s, "Tag", CY{.int64 = 5}).hr, S_OK);
    EXPECT_EQ(get(s, "Tag").text(), "6:0.0005");

    const auto child = method(s, "NewChild", "kid");
    ASSERT_EQ(child.result->vt, VT_DISPATCH);
    EXPECT_EQ(get(child.result->pdispVal, "Name").text(), "8:kid");
    EXPECT_EQ(get(s, "Count").text(), "3:1");
    EXPECT_EQ(Outcome(s, "Child", DISPATCH_PROPERTYPUTREF, Arguments(child.result.get())).hr, S_OK);
    EXPECT_EQ(get(s, "Child").result->pdispVal, child.result->pdispVal);
    EXPECT_EQ(method(s, "Reset").result->vt, VT_EMPTY);
    EXPECT_EQ(get(s, "Child").result->pdispVal, nullptr);
    EXPECT_EQ(get(s, "Width").text(), "2:100");
}

TEST_F(SampleServer, FailsInEveryWay) {
    LONG quotient = -1;
    LONG remainder = -1;
    const auto divided = method(s, "Divide", LONG(1), LONG(0), byReference(VT_I4, &quotient),
                                byReference(VT_I4, &remainder));
    EXPECT_EQ(divided.hr, DISP_E_EXCEPTION);
    EXPECT_EQ(std::pair(quotient, remainder), std::pair(LONG{-1}, LONG{-1}));
    EXPECT_EQ(platform::viewOf(divided.excepInfo.bstrSource), OLESTR("Sample.Server"));
    EXPECT_EQ(platform::viewOf(divided.excepInfo.bstrDescription), OLESTR("Division by zero."));
    EXPECT_EQ(platform::viewOf(divided.excepInfo.bstrHelpFile), OLESTR("sample.chm"));
    EXPECT_EQ(divided.excepInfo.dwHelpContext, 0x2Au);
    EXPECT_EQ(divided.excepInfo.wCode, 1000);
    EXPECT_EQ(divided.excepInfo.scode, 0);

    const auto raised = method(s, "Raise", LONG(17));
    EXPECT_EQ(raised.excepInfo.wCode, 17);
    EXPECT_EQ(platform::viewOf(raised.excepInfo.bstrDescription),
              OLESTR("The server raised error 17."));
    EXPECT_EQ(raised.excepInfo.bstrHelpFile, nullptr);
    const auto quiet = method(s, "FailQuietly");
    EXPECT_EQ(quiet.hr, DISP_E_EXCEPTION);
    EXPECT_EQ(quiet.excepInfo.scode, E_FAIL);
    EXPECT_EQ(quiet.excepInfo.bstrDescription, nullptr);
}

TEST_F(SampleServer, CrashesOnDemandAndGoesOn) {
    const std::pair<const char*, std::uint32_t> crashes[] = {
        {"Crash", platform::faultAccessViolation},
        {"CrashDivide", platform::faultIntegerDivideByZero},
        {"CrashCall", platform::faultAccessViolation},
        {"CrashThrow", platform::faultCppException}};
    for (const auto& [name, code] : crashes) {
        const DISPID dispid = dispidOf(s, name);
        DISPPARAMS params{};
        const auto fault = platform::guarded([&] {
            s->Invoke(dispid, IID_NULL, 0, DISPATCH_METHOD, &params, nullptr, nullptr, nullptr);
        });
        EXPECT_EQ(fault.code, code) << name;
    }
    EXPECT_EQ(method(s, "Compute", 1.0).text(), "5:2");
}

TEST_F(SampleServer, RegistersItselfAsRunning) {
    ComPtr<IUnknown> running;
    EXPECT_EQ(method(s, "RegisterActive").hr, S_OK);
    ASSERT_EQ(GetActiveObject(sample::serverClass, nullptr, running.put()), S_OK);
    EXPECT_EQ(platform::queryInterface<IDispatch>(running.get(), IID_IDispatch).get(), s);
    EXPECT_EQ(method(s, "RevokeActive").hr, S_OK);
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

TEST_F(SampleServer, FiresEventsAtEverySinkUntilItIsUnadvised) {
    const auto container =
        platform::queryInterface<IConnectionPointContainer>(s, IID_IConnectionPointContainer);
    ComPtr<IConnectionPoint> point;
    EXPECT_EQ(container->FindConnectionPoint(IID_IDispatch, point.put()), CONNECT_E_NOCONNECTION);
    ASSERT_EQ(container->FindConnectionPoint(sample::eventsInterface, point.put()), S_OK);
    ComPtr<IConnectionPointContainer> same;
    ASSERT_EQ(point->GetConnectionPointContainer(same.put()), S_OK);
    EXPECT_EQ(same.get(), container.get());
    DWORD cookies[2] = {};
    for (DWORD& cookie : cookies)
        ASSERT_EQ(point->Advise(kit::createDispatch<Sink>().get(), &cookie), S_OK);
    kit::CallLog log;
    method(s, "FireTick", LONG(5));
    EXPECT_EQ(log.calls().size(), 2u);
    EXPECT_EQ(point->Unadvise(cookies[0]), S_OK);
    EXPECT_EQ(point->Unadvise(cookies[0]), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(point->Advise(point.get(), &cookies[0]), CONNECT_E_CANNOTCONNECT);
    EXPECT_EQ(kit::liveObjectNames(), std::vector<std::string>{"Sink"});

    put(s, "Name", "new");
    method(s, "FireDone");
    ASSERT_EQ(log.calls().size(), 4u);
    EXPECT_EQ(log.calls()[1].dispid, sample::tickEvent);
    EXPECT_EQ(log.calls()[1].flags, DISPATCH_METHOD);
    EXPECT_EQ(log.calls()[1].arguments.at(0).value->lVal, 5);
    EXPECT_EQ(log.calls()[2].dispid, sample::renamedEvent);
    EXPECT_EQ(platform::viewOf(log.calls()[2].arguments.at(1).value->bstrVal), OLESTR("Sample"));
    EXPECT_EQ(platform::viewOf(log.calls()[2].arguments.at(0).value->bstrVal), OLESTR("new"));
    EXPECT_EQ(log.calls()[3].dispid, sample::doneEvent);
    EXPECT_TRUE(log.calls()[3].arguments.empty());
    EXPECT_EQ(point->Unadvise(cookies[1]), S_OK);
    EXPECT_EQ(get(s, "Connections").text(), "3:0");
}

} // namespace
} // namespace server_tests
