// actxserver: its forms, its errors, and how servers and classes come into being.
#include "classmodel/object_creation.h"
#include "comruntime/system_message.h"
#include "host/text.h"
#include "support/server_fixture.h"

#include <thread>

namespace {

using namespace axlink2;
using namespace axlink2::test;

struct ActXServer : ServerTest {
    std::vector<std::string> warnings;

    ActXServer() {
        velmar::setWarningWriter([this](const std::string& identifier, const std::u16string& text) {
            warnings.push_back(identifier + " " + hsys::i18n::to_string(text));
        });
        kit::registerProgId("Test.Simple", PlainServer::clsid());
    }
    ~ActXServer() override { velmar::setWarningWriter(nullptr); }

    // Texts as inputs may be written without `text`.
    static Array input(Array array) { return array; }
    static Array input(const std::string& characters) { return text(characters); }

    template <class... Inputs>
    static Array create(int nlhs, Inputs... inputs) {
        const std::array<Array, sizeof...(inputs)> arrays{input(std::move(inputs))...};
        std::array<const hxArray*, sizeof...(inputs) + 1> raw{};
        std::ranges::transform(arrays, raw.begin(), &Array::get);
        Array output;
        COM2::actxserver(nlhs, &output, static_cast<int>(arrays.size()), raw.data());
        return output;
    }
    static Array attach(const std::string& progId) {
        Array output;
        const Array name = text(progId);
        const hxArray* inputs[] = {name.get()};
        COM2::actxGetRunningServer(1, &output, 1, inputs);
        return output;
    }
    template <class... Inputs>
    static velmar::ErrorText error(int nlhs, Inputs... inputs) {
        return describedErrorOf([&] { create(nlhs, std::move(inputs)...); });
    }
    template <class... Inputs>
    static std::string failure(int nlhs, Inputs... inputs) {
        return error(nlhs, std::move(inputs)...).identifier;
    }
};

struct ActXServerStarted : ActXServer {
    kit::ClassRegistration registration{kit::registerInProcess<PlainServer>()};
};

TEST_F(ActXServerStarted, MakesOneObjectOfTheProgIdsClassWithAServerOfItsOwn) {
    const Array first = create(1, "Test.Simple");
    EXPECT_TRUE(hoIsHOS(first.get()) && hxIsScalar(first.get()));
    EXPECT_EQ(hoGetClassID(first.get()).str(), "COM.Test_Simple");
    const int alive = kit::liveObjects();
    const Array second = create(0, hoststring::createStringArray(u"Test.Simple"));
    EXPECT_EQ(kit::liveObjects(), alive + 1);
    EXPECT_EQ(classOf(first), classOf(second));
    EXPECT_NE(record(first).dispatch, record(second).dispatch);
}

TEST_F(ActXServerStarted, TakesOptionsInAnyCaseAndIgnoresValuesThatAreNoText) {
    EXPECT_TRUE(create(1, "Test.Simple", ""));
    EXPECT_TRUE(create(1, "Test.Simple", "INTERFACE", "IDispatch"));
    EXPECT_TRUE(create(1, "Test.Simple", "MachineName", "", "interface", "IDispatch"));
    // The later of two machines counts.
    EXPECT_TRUE(create(1, "Test.Simple", "machinename", "elsewhere", "machinename", ""));
    EXPECT_TRUE(create(1, "Test.Simple", scalar(1)));
    EXPECT_TRUE(create(1, "Test.Simple", "machinename", scalar(1)));
    EXPECT_TRUE(warnings.empty());
}

TEST_F(ActXServerStarted, WarnsOfUnknownOptionsWithTheirPosition) {
    EXPECT_TRUE(create(1, "Test.Simple", "interface", "IDispatch", "colour", "red"));
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_EQ(warnings[0].find("VELMAR:COM:unknownparam "), 0u);
    EXPECT_NE(warnings[0].find('4'), std::string::npos);
    EXPECT_TRUE(create(1, "Test.Simple", std::string(2000, 'X'), "red"));
    EXPECT_EQ(warnings.size(), 2u);
}

TEST_F(ActXServerStarted, RefusesWrongArguments) {
    EXPECT_EQ(failure(2, "Test.Simple"), "VELMAR:maxlhs");
    EXPECT_EQ(failure(1), "VELMAR:minrhs");
    EXPECT_EQ(failure(1, "a", "b", "c", "d", "e", "f"), "VELMAR:maxrhs");
    EXPECT_EQ(failure(1, "Test.Simple", "a", "b", "c"), "VELMAR:COM:numargs");
    EXPECT_EQ(failure(1, scalar(1)), "VELMAR:COM:invalidArg");
    EXPECT_EQ(failure(1, hoststring::createStringArray(1, 1, {std::nullopt})),
              "VELMAR:COM:invalidArg");
    const auto unknown = error(1, "Test.Simple", scalar(1), "x");
    EXPECT_EQ(unknown.identifier, "VELMAR:COM:unknownparam");
    EXPECT_NE(unknown.text.find('2'), std::string::npos) << unknown.text;
    EXPECT_EQ(failure(1, "Test.Simple", "interface", "idispatch"), "VELMAR:COM:unsupported64bit");
    // Options come before the ProgID.
    EXPECT_EQ(failure(1, scalar(1), "interface", "IUnknown"), "VELMAR:COM:unsupported64bit");
}

TEST_F(ActXServerStarted, NamesTheProgIdOrTheSystemsReasonWhenNothingStarts) {
    const auto unknown = error(1, "No.Such.Server");
    EXPECT_EQ(unknown.identifier, "VELMAR:COM:InvalidProgid");
    EXPECT_NE(unknown.text.find("No.Such.Server"), std::string::npos);

    const Array known = create(1, "Test.Simple");
    const auto elsewhere = error(1, "Test.Simple", "elsewhere");
    EXPECT_EQ(elsewhere.identifier, "VELMAR:COM:servercreationfailed");

    kit::registerProgId("Test.Away", guidOf("Away"));
    const auto away = error(1, "Test.Away");
    EXPECT_EQ(away.identifier, "VELMAR:COM:servercreationfailed");
    for (const auto& [text, hr] :
         {std::pair(away.text, REGDB_E_CLASSNOTREG),
          {elsewhere.text, HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE)}}) {
        const std::string reason = hsys::i18n::to_string(systemMessageText(hr));
        EXPECT_NE(text.find(reason.substr(0, reason.find('\r'))), std::string::npos) << text;
    }
    EXPECT_EQ(findClass("COM", "Test_Away"), nullptr);
}

// A server that starts another of its own ProgID while it starts.
class Recursive : public Served<Recursive> {
  public:
    static constexpr const char* className = "Recursive";
    Recursive() {
        static bool first = true;
        if (std::exchange(first, false)) inner = startAnother();
    }
    static void declare(Builder& builder) { builder.method("Run", &Recursive::run); }
    double run() { return 5; }

    static inline Array (*startAnother)() = nullptr;
    static inline Array inner;
};

TEST_F(ActXServer, SharesTheClassWithAServerThatItsOwnServerHasStarted) {
    Recursive::startAnother = [] { return startRegistered("Test.Recursive"); };
    const Array outer = start<Recursive>("Test.Recursive");
    EXPECT_EQ(classOf(outer), classOf(Recursive::inner));
    EXPECT_EQ(number(call(outer, "Run", 1)[0].get()), 5.0);
    EXPECT_EQ(number(call(Recursive::inner, "Run", 1)[0].get()), 5.0);
    Recursive::inner.reset();
}

// Says that it has an IDispatch, and hands out none.
class EmptyHandedServer final : public Served<EmptyHandedServer> {
  public:
    static constexpr const char* className = "EmptyHanded";
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (iid != IID_IDispatch) return Served::QueryInterface(iid, object);
        *object = nullptr;
        return S_OK;
    }
};

TEST_F(ActXServer, RefusesAServerWithoutIDispatch) {
    const auto closed = describedErrorOf([&] { start<ClosedServer>("Test.Closed"); });
    EXPECT_EQ(closed.identifier, "VELMAR:COM:servercreationfailed");
    const auto empty = describedErrorOf([&] { start<EmptyHandedServer>("Test.EmptyHanded"); });
    EXPECT_EQ(empty.identifier, "VELMAR:COM:servercreationfailed");
    EXPECT_EQ(empty.text, closed.text);
}

// Neither before nor after another ProgID has taken the name of its class.
TEST_F(ActXServerStarted, RefusesAProgIdThatItsClassNameDoesNotGiveBack) {
    struct Row {
        const char* progId;
        const char* other; // whose class name it has
        bool isRegistered;
    };
    const Row rows[] = {
        {"Test.-Odd", "Test Odd", true},
        {"Test..App", "Test_App", true},
        {"Test.-Away", "Test Away", false},
    };
    for (const auto& [progId, other, isRegistered] : rows) {
        kit::registerProgId(other, PlainServer::clsid());
        if (isRegistered) kit::registerProgId(progId, PlainServer::clsid());
        const char* const refusal =
            isRegistered ? "VELMAR:COM:invalidprogid" : "VELMAR:COM:InvalidProgid";
        const int alive = kit::liveObjects();
        EXPECT_EQ(failure(1, progId), refusal);
        EXPECT_TRUE(create(1, other));
        const auto after = error(1, progId);
        EXPECT_EQ(after.identifier, refusal);
        EXPECT_NE(after.text.find(progId), std::string::npos) << after.text;
        EXPECT_EQ(errorOf([&] { attach(progId); }), "VELMAR:COM:invalidprogid");
        EXPECT_EQ(kit::liveObjects(), alive);
    }
    kit::registerProgId("Test_One.Server-2", PlainServer::clsid());
    EXPECT_EQ(hoGetClassID(create(1, "Test_One.Server-2").get()).str(), "COM.Test__One_Server___2");
}

TEST_F(ActXServerStarted, StartsFurtherServersByTheClassIdOfTheFirst) {
    kit::registerProgId("Test.Moved", PlainServer::clsid());
    const Array first = create(1, "Test.Moved");
    kit::registerProgId("Test.Moved", guidOf("Away"));
    EXPECT_TRUE(create(1, "Test.Moved"));
}

// Class objects of every kind of server are found.
TEST_F(ActXServer, StartsServersInAnyContext) {
    for (const DWORD context : {CLSCTX_INPROC_SERVER, CLSCTX_LOCAL_SERVER, CLSCTX_REMOTE_SERVER}) {
        const std::string progId = "Test.Context" + std::to_string(context);
        kit::registerProgId(progId, guidOf(progId));
        const auto factory =
            kit::makeClassFactory([] { return kit::createDispatch<PlainServer>(); });
        DWORD cookie = 0;
        ASSERT_EQ(CoRegisterClassObject(guidOf(progId), factory.get(), context, REGCLS_MULTIPLEUSE,
                                        &cookie),
                  S_OK);
        EXPECT_EQ(failure(1, progId), "");
        CoRevokeClassObject(cookie);
    }
}

// Starting a server makes the thread an apartment, once, unless it is of the other kind.
TEST_F(ActXServerStarted, LeavesAThreadInOneApartment) {
    constexpr DWORD none = ~DWORD{0};
    struct Row {
        const char* progId;
        DWORD before;
        HRESULT after; // of a further initialisation
    };
    const Row rows[] = {{"Test.Thread1", none, S_FALSE},
                        {"Test.Thread2", COINIT_APARTMENTTHREADED, S_FALSE},
                        {"Test.Thread3", COINIT_MULTITHREADED, RPC_E_CHANGED_MODE},
                        {"Test.Simple", none, S_FALSE},
                        {"Test.Simple", COINIT_APARTMENTTHREADED, S_FALSE}};
    EXPECT_TRUE(create(1, "Test.Simple")); // whose class is known from now on
    for (const Row& row : rows) {
        kit::registerProgId(row.progId, PlainServer::clsid());
        std::thread([&] {
            if (row.before != none) CoInitializeEx(nullptr, row.before);
            const std::string identifier = failure(1, row.progId);
            if (FAILED(row.after)) {
                EXPECT_EQ(identifier, "VELMAR:COM:servercreationfailed");
            }
            EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), row.after);
            if (SUCCEEDED(row.after)) CoUninitialize();
            CoUninitialize();
            EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
            CoUninitialize();
        }).join();
    }
}

// A server that is busy when its class is made.
class Busy : public Served<Busy> {
  public:
    static constexpr const char* className = "Busy";
    static void declare(Builder& builder) { builder.method("Run", &Busy::run); }
    double run() { return 5; }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        return refused(0) ? RPC_E_CALL_REJECTED : Served::GetTypeInfoCount(count);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) override {
        return refused(1) ? RPC_E_CALL_REJECTED : Served::GetTypeInfo(index, lcid, info);
    }

    static inline int refusals[2]; // left, of each question
  private:
    static bool refused(int question) { return refusals[question] > 0 && refusals[question]--; }
};

TEST_F(ActXServer, WaitsForABusyServerBeforeItMakesTheClass) {
    for (const int question : {0, 1}) {
        Busy::refusals[question] = 3;
        const Array object = start<Busy>("Test.Busy" + std::to_string(question));
        EXPECT_EQ(number(call(object, "Run", 1)[0].get()), 5.0);
        EXPECT_EQ(Busy::refusals[question], 0);
    }
}

} // namespace
