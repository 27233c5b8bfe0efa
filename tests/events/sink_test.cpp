// The sink as a COM object, what an event carries, and what both cost.
#include "events/allocations.h"
#include "events/event_data.h"
#include "events/sink.h"
#include "events/source.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

struct Sink : EventTest {
    std::shared_ptr<velmar::Listener> listener = listen(h, "Tick");
    IDispatch* sink = record(h).sink;

    ULONG references() const {
        sink->AddRef();
        return sink->Release();
    }
};

TEST_F(Sink, IsADispatchInterfaceUnderTheSourcesName) {
    const ULONG before = references();
    for (const IID& iid :
         {IID_IUnknown, IID_IDispatch, Source::definition().parts().sourceInterface}) {
        void* out = nullptr;
        EXPECT_EQ(sink->QueryInterface(iid, &out), S_OK);
        EXPECT_EQ(out, sink);
        EXPECT_EQ(references(), before + 1);
        sink->Release();
    }
    void* out = sink;
    EXPECT_EQ(sink->QueryInterface(IID_IConnectionPoint, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(sink->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(Sink, TellsNothingOfItsTypeAndIsCalledByNumber) {
    UINT count = 7;
    EXPECT_EQ(sink->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1u);
    auto* info = reinterpret_cast<ITypeInfo*>(sink);
    EXPECT_EQ(sink->GetTypeInfo(0, 0, &info), S_OK);
    EXPECT_EQ(info, nullptr);
    EXPECT_EQ(sink->GetTypeInfo(1, 0, &info), DISP_E_BADINDEX);
    EXPECT_EQ(sink->GetTypeInfoCount(nullptr), E_POINTER);
    EXPECT_EQ(sink->GetTypeInfo(0, 0, nullptr), E_POINTER);
    EXPECT_EQ(sink->GetIDsOfNames(IID_NULL, nullptr, 0, 0, nullptr), S_OK);
    EXPECT_EQ(sink->GetIDsOfNames(IID_IDispatch, nullptr, 0, 0, nullptr), DISP_E_UNKNOWNINTERFACE);
}

TEST_F(Sink, AnswersWithAnEmptyResultAndRefusesOtherInterfaces) {
    VARIANT result{};
    result.vt = VT_I4;
    result.lVal = 9;
    const IID& source = Source::definition().parts().sourceInterface;
    EXPECT_EQ(invoke(sink, Source::tick, {}, &result, source), DISP_E_UNKNOWNINTERFACE);
    EXPECT_EQ(result.vt, VT_I4);
    EXPECT_TRUE(heard.empty());
    for (const DISPID dispid : {Source::tick, Source::done, DISPID{12345}}) {
        result.vt = VT_I4;
        EXPECT_EQ(invoke(sink, dispid, {}, &result), S_OK);
        EXPECT_EQ(result.vt, VT_EMPTY);
    }
    EXPECT_EQ(heard.size(), 1u);
}

TEST_F(Sink, IsCalledOnItsOwnThreadAlone) {
    VARIANT result{};
    result.vt = VT_I4;
    std::thread([&] {
        EXPECT_EQ(invoke(sink, Source::tick, {}, &result), RPC_E_WRONG_THREAD);
    }).join();
    EXPECT_EQ(result.vt, VT_I4);
    EXPECT_TRUE(heard.empty());
}

// A listener runs inside the server's call, but its faults aren't the server's.
TEST_F(Sink, AFaultOfAListenerIsNotTakenForTheServers) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto fault = [](const hxArray*, const hxArray*) {
        volatile int* volatile nowhere = nullptr;
        *nowhere = 1; // NOLINT: the fault that is wanted
    };
    EXPECT_DEATH(
        {
            velmar::addListener(handle(h), "Tick", fault);
            call(h, "FireTick", 0, {scalar(1).get()});
        },
        "");
}

TEST_F(Sink, KeepsErrorsOfItsOwnFromTheServer) {
    static_cast<CAXSink*>(sink)->addEvent(999); // no event of the class
    EXPECT_EQ(invoke(sink, 999), S_OK);
    EXPECT_EQ(static_cast<CAXSink*>(sink)->removeEvent(999), 1u);
    EXPECT_EQ(static_cast<CAXSink*>(sink)->removeEvent(999), 1u);
}

TEST_F(Sink, AllocatesNothingForAnEventThatNobodyListensTo) {
    VARIANT count{};
    count.vt = VT_I4;
    DISPPARAMS params{&count, nullptr, 1, 0};
    const std::size_t before = allocationsMade();
    for (int i = 0; i < 1000; ++i)
        invoke(sink, Source::renamed, params);
    EXPECT_EQ(allocationsMade(), before);
}

TEST_F(Sink, LosesNoneOfManyEventsAndKeepsNothingOfThem) {
    listener->remove();
    LONG next = 0;
    LONG wrong = 0;
    velmar::addListener(handle(h), "Tick", [&](const hxArray*, const hxArray* data) {
        if (hxGetScalar(hxGetField(data, 0, "Count")) != next++) ++wrong;
    });
    constexpr LONG many = 100000;
    constexpr LONG warmUp = 1000;
    std::size_t alive = 0;
    std::size_t arrays = 0;
    for (LONG i = 0; i < many; ++i) {
        if (i == warmUp) {
            alive = allocationsAlive();
            arrays = hxLiveArrayCount();
        }
        server(h).fireTick(i);
    }
    EXPECT_EQ(allocationsAlive(), alive);
    EXPECT_EQ(hxLiveArrayCount(), arrays);
    EXPECT_EQ(next, many);
    EXPECT_EQ(wrong, 0);
}

TEST_F(Sink, EventDataGivesCopiesOfWhatItCarries) {
    const Array data = scalar(4);
    std::unique_ptr<hos::HOSEventData> clone;
    {
        const COMEventData carried(internedId("Tick"), handle(h), data.get());
        hos::id name;
        EXPECT_EQ(carried.getEventName(&name)->str(), "Tick");
        hos::HOSInterfacePtr first;
        hos::HOSInterfacePtr second;
        EXPECT_EQ(*carried.getSource(&first), handle(h));
        carried.getSource(&second);
        first = {};
        EXPECT_EQ(second, handle(h));
        clone.reset(carried.clone());
    }
    EXPECT_EQ(clone->getEventData(), data.get());
    EXPECT_EQ(clone->getSourceWeak(), static_cast<hos::HOSInterface*>(handle(h)));
    EXPECT_TRUE(clone->isOkToDestroy());
}

} // namespace
