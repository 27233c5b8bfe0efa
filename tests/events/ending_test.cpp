// References balance, whoever goes first.
#include "events/source.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

// Holds the sink, so that a test sees who else did.
struct Ending : EventTest {
    std::shared_ptr<velmar::Listener> listener = listen(h, "Tick");
    platform::ComPtr<IDispatch> sink = platform::ComPtr<IDispatch>::borrow(record(h).sink);
    platform::ComPtr<IDispatch> source = platform::ComPtr<IDispatch>::borrow(record(h).dispatch);
    Source& fired = server(h);

    void expectQuietEnd() {
        fired.fireTick(1);
        EXPECT_TRUE(heard.empty());
        EXPECT_EQ(Source::traffic.unadvised, std::vector<DWORD>{101});
        EXPECT_EQ(sink.detach()->Release(), 0u);
    }
};

TEST_F(Ending, OfTheListenerFirst) {
    listener->remove();
    EXPECT_EQ(sink->AddRef(), 2u);
    sink->Release();
    h.reset();
    EXPECT_EQ(fired.references(), 1u);
    expectQuietEnd();
}

TEST_F(Ending, OfTheObjectFirst) {
    h.reset();
    EXPECT_EQ(fired.references(), 1u);
    expectQuietEnd();
    listener->remove();
}

TEST_F(Ending, OfTheObjectByDelete) {
    call(h, "delete", 0);
    EXPECT_FALSE(listener->isEnabled());
    expectQuietEnd();
}

TEST_F(Ending, OfTheObjectByRelease) {
    call(h, "release", 0);
    expectQuietEnd();
}

TEST_F(Ending, OfTheServersConnectionsFirst) {
    // A server that closes drops its clients by itself.
    fired.events().Unadvise(1);
    fired.fireTick(1);
    listener->remove();
    h.reset();
    expectQuietEnd();
}

TEST_F(Ending, OfARecordWithItsSinkStillAdvised) {
    // Past the host, which would have removed the listeners.
    Source::traffic.failing = Step::Unadvise;
    h.reset();
    EXPECT_EQ(invoke(sink.get(), Source::tick), S_OK);
    EXPECT_EQ(sink->AddRef(), 3u); // the server's is the third
    sink->Release();
    Source::traffic.failing = Step::None;
    fired.events().Unadvise(1);
    expectQuietEnd();
}

// The sink's last reference goes while it delivers.
TEST_F(Ending, OfTheSinkInItsOwnCall) {
    listen(h, "Tick", [&] {
        heard.push_back("ending");
        h.reset();
    });
    IDispatch* bare = sink.detach();
    bare->Release();
    EXPECT_EQ(invoke(bare, Source::tick), S_OK);
    EXPECT_EQ(heard.size(), 2u);
    EXPECT_EQ(fired.references(), 1u);
}

TEST_F(Ending, OfTheObjectInACallOfItsServerLeavesTheServerToTheEndOfTheCall) {
    const Array one = scalar(1);
    for (const char* how : {"delete", "release"}) {
        const int others = kit::liveObjects();
        const Array object = startRegistered("Test.Source");
        listen(object, "Tick", [&] { call(object, how, 0); });
        call(object, "FireTick", 0, {one.get()});
        EXPECT_EQ(Source::traffic.aliveBehindTick, others + 1) << how;
        EXPECT_EQ(kit::liveObjects(), others) << how;
    }
}

TEST_F(Ending, OfAnObjectInItsListenerSparesTheOthers) {
    for (const char* how : {"delete", "release"}) {
        const Array object = startRegistered("Test.Source");
        const auto kept = platform::ComPtr<IDispatch>::borrow(record(object).dispatch);
        Source& other = server(object);
        listen(object, "Tick", [&] { call(object, how, 0); });
        listen(object, "Tick");
        other.fireTick(1);
        EXPECT_TRUE(heard.empty());
        EXPECT_TRUE(handle(object)->isDeleted());
        EXPECT_EQ(other.references(), 1u);
        other.fireTick(2);
    }
}

} // namespace
