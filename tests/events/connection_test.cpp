// Connecting and disconnecting: the exact traffic, and what happens when a step fails.
#include "events/source.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

using Cookies = std::vector<DWORD>;

struct Connection : EventTest {
    Traffic& traffic = Source::traffic;
};

TEST_F(Connection, IsOneForAllListenersOfAnObject) {
    EXPECT_EQ(traffic.queries, 0);
    const auto first = listen(h, "Tick");
    const auto second = listen(h, "Tick");
    const auto third = listen(h, "Done");
    EXPECT_EQ(traffic.queries, 1);
    EXPECT_EQ(traffic.finds, 1);
    EXPECT_EQ(traffic.advised, Cookies{101});
    EXPECT_EQ(server(h).events().connections(), 1u);

    first->remove();
    second->remove();
    server(h).fireTick(1); // still connected, but nobody wants it
    server(h).fire(Source::done);
    EXPECT_EQ(heard, std::vector{event("Done", Source::done, "")});
    EXPECT_TRUE(traffic.unadvised.empty());

    third->remove();
    EXPECT_EQ(traffic.unadvised, Cookies{101});
    EXPECT_EQ(server(h).events().connections(), 0u);
    EXPECT_EQ(record(h).sink, nullptr);
    EXPECT_EQ(record(h).connectionPoint, nullptr);

    const auto again = listen(h, "Tick");
    EXPECT_EQ(traffic.advised, (Cookies{101, 102}));
    again->remove();
    EXPECT_EQ(traffic.unadvised, (Cookies{101, 102}));
    EXPECT_EQ(traffic.queries, 2);
}

TEST_F(Connection, OfTwoObjectsAreTwo) {
    const Array other = startRegistered("Test.Source");
    listen(h, "Tick");
    listen(other, "Tick");
    EXPECT_EQ(traffic.advised, (Cookies{101, 101}));
    server(other).fireTick(5);
    EXPECT_EQ(heard, std::vector{ticked(5)});
}

TEST_F(Connection, ThatFailsNamesTheStepAndLeavesNothingBehind) {
    const struct {
        Step step;
        Failure failure;
        const char* reason;
    } cases[] = {
        {Step::Query, Failure::Code, "the server sends no events."},
        {Step::Query, Failure::NullWithSuccess, "the server sends no events."},
        {Step::Query, Failure::Fault, "the server sends no events."},
        {Step::Find, Failure::Code, "the server doesn't send the events"},
        {Step::Find, Failure::NullWithSuccess, "the server doesn't send the events"},
        {Step::Find, Failure::Fault, "the server doesn't send the events"},
        {Step::Advise, Failure::Code, "the server refused the connection."},
        {Step::Advise, Failure::Fault, "the server refused the connection."},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.reason);
        const ULONG references = server(h).references();
        traffic = {.failing = row.step, .failure = row.failure};
        const auto error = describedErrorOf([&] { listen(h, "Tick"); });
        EXPECT_EQ(error.identifier, "VELMAR:COM:errorregisterevents");
        EXPECT_NE(error.text.find(row.reason), std::string::npos) << error.text;
        EXPECT_EQ(record(h).sink, nullptr);
        EXPECT_EQ(record(h).connectionPoint, nullptr);
        EXPECT_EQ(server(h).references(), references);

        traffic = {};
        heard.clear();
        const auto retry = listen(h, "Tick");
        EXPECT_EQ(traffic.queries, 1);
        server(h).fireTick(1);
        retry->remove();
        server(h).fireTick(2);
        EXPECT_EQ(heard, std::vector{ticked(1)});
        EXPECT_EQ(server(h).references(), references);
    }
}

TEST_F(Connection, GoesEvenWhenTheServerFailsToLetGo) {
    for (const Failure failure : {Failure::Code, Failure::Fault}) {
        const Array object = startRegistered("Test.Source");
        const auto kept = platform::ComPtr<IDispatch>::borrow(record(object).dispatch);
        Source& source = server(object);
        traffic = {.failing = Step::Unadvise, .failure = failure};
        const auto listener = listen(object, "Tick");
        listener->remove();
        EXPECT_EQ(traffic.unadvised, Cookies{101});
        EXPECT_EQ(record(object).sink, nullptr);

        // The sink that the server still has delivers nothing any more; a new one does.
        source.fireTick(1);
        listen(object, "Tick");
        source.fireTick(2);
        EXPECT_EQ(heard, std::vector{ticked(2)});
        heard.clear();
        traffic.failing = Step::None;
        EXPECT_EQ(source.events().Unadvise(1), S_OK);
    }
}

TEST_F(Connection, OfAnObjectThatEndsMeanwhileIsTakenBack) {
    traffic.onAdvise = [&] { handle(h)->destroy(hos::HOSGetPublicClient()); };
    EXPECT_EQ(errorOf([&] { listen(h, "Tick"); }), invalidHandle);
    EXPECT_EQ(traffic.unadvised, Cookies{101});
}

TEST_F(Connection, ThatIsMadeMeanwhileIsKept) {
    traffic.onAdvise = [&] {
        Source::traffic.onAdvise = {};
        listen(h, "Done");
    };
    listen(h, "Tick");
    EXPECT_EQ(traffic.advised, (Cookies{101, 102}));
    EXPECT_EQ(traffic.unadvised, Cookies{102});
    server(h).fireTick(1);
    server(h).fire(Source::done);
    EXPECT_EQ(heard, (std::vector{ticked(1), event("Done", Source::done, "")}));
}

TEST_F(Connection, OfAnObjectWithoutAServerFailsLikeThatToASilentOne) {
    const hos::HOSClass* owner = handle(h)->getClass();
    hos::HOSInterfacePtr bare;
    const_cast<hos::HOSClass*>(owner)->newInstance(&bare);
    EXPECT_EQ(errorOf([&] { velmar::addListener(bare, "Tick", {}); }),
              "VELMAR:COM:errorregisterevents");
}

} // namespace
