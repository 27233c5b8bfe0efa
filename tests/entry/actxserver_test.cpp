// actxserver: its forms, its errors, and how servers and classes come into being.
#include "classmodel/object_creation.h"
#include "host/text.h"
#include "support/server_fixture.h"

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
    EXPECT_EQ(failure(1, "Test.Simple", "elsewhere"), "VELMAR:COM:servercreationfailed");

    kit::registerProgId("Test.Away", guidOf("Away"));
    const auto away = error(1, "Test.Away");
    EXPECT_EQ(away.identifier, "VELMAR:COM:servercreationfailed");
    EXPECT_NE(away.text.size(), 0u);
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

TEST_F(ActXServer, RefusesAServerWithoutIDispatch) {
    EXPECT_EQ(errorOf([&] { start<ClosedServer>("Test.Closed"); }),
              "VELMAR:COM:servercreationfailed");
}

TEST_F(ActXServerStarted, KeepsNoServerForAProgIdThatItsClassNameDoesNotGiveBack) {
    kit::registerProgId("Test.-Odd", PlainServer::clsid());
    const int alive = kit::liveObjects();
    const auto odd = error(1, "Test.-Odd");
    EXPECT_EQ(odd.identifier, "VELMAR:COM:invalidprogid");
    EXPECT_NE(odd.text.find("Test Odd"), std::string::npos);
    EXPECT_NE(odd.text.find("800401f3"), std::string::npos);
    EXPECT_EQ(kit::liveObjects(), alive);
    kit::registerProgId("Test_One.Server-2", PlainServer::clsid());
    EXPECT_EQ(hoGetClassID(create(1, "Test_One.Server-2").get()).str(), "COM.Test__One_Server___2");
}

} // namespace
