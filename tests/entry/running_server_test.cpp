// Attaching to a running server.
#include "support/com_double.h"
#include "support/server_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

struct RunningServer : ServerTest {
    static Array attach(const Array& input, int nlhs = 1, int nrhs = 1) {
        Array output;
        const hxArray* inputs[] = {input.get(), input.get()};
        COM2::actxGetRunningServer(nlhs, &output, nrhs, inputs);
        return output;
    }
};

TEST_F(RunningServer, IsSharedByAllWhoAttachToIt) {
    const CLSID& clsid = PlainServer::clsid();
    kit::registerProgId("Test.Running", clsid);
    const auto server = kit::create<PlainServer>();
    DWORD cookie = 0;
    ASSERT_EQ(RegisterActiveObject(static_cast<IDispatch*>(server.get()), clsid,
                                   ACTIVEOBJECT_STRONG, &cookie),
              S_OK);
    {
        const Array first = attach(text("Test.Running"));
        const Array second = attach(text("Test.Running"));
        EXPECT_EQ(record(first).dispatch, server.get());
        EXPECT_EQ(record(second).dispatch, server.get());
        EXPECT_EQ(classOf(first), classOf(second));
        // A new server of the same class.
        const Array started = start<PlainServer>("Test.Running");
        EXPECT_EQ(classOf(started), classOf(first));
        EXPECT_NE(record(started).dispatch, server.get());
    }
    EXPECT_EQ(RevokeActiveObject(cookie, nullptr), S_OK);
    EXPECT_EQ(server->references(), 1u);
}

// What it is registered with stands for the server that it names as its identity.
class Agent : public Counted<Silent<IDispatch>> {
  public:
    explicit Agent(IUnknown* server)
        : Counted("agent"), server_(platform::ComPtr<IUnknown>::borrow(server)) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        if (iid == IID_IUnknown && isRegistered) return server_->QueryInterface(iid, out);
        return offer(iid == IID_IDispatch || iid == IID_IUnknown, this, out);
    }
    bool isRegistered = false;

  private:
    platform::ComPtr<IUnknown> server_;
};

TEST_F(RunningServer, IsAttachedToThroughItsIdentity) {
    kit::registerProgId("Test.Agent", guidOf("Agent"));
    const auto server = kit::create<PlainServer>();
    const auto agent =
        platform::ComPtr<Agent>::adopt(new Agent(static_cast<IDispatch*>(server.get())));
    DWORD cookie = 0;
    ASSERT_EQ(RegisterActiveObject(agent.get(), guidOf("Agent"), ACTIVEOBJECT_STRONG, &cookie),
              S_OK);
    agent->isRegistered = true;
    EXPECT_EQ(record(attach(text("Test.Agent"))).dispatch, server.get());
    agent->isRegistered = false;
    EXPECT_EQ(RevokeActiveObject(cookie, nullptr), S_OK);
}

TEST_F(RunningServer, MustBeThereAndItsProgIdKnown) {
    kit::registerProgId("Test.Stopped", PlainServer::clsid());
    const Array stopped = text("Test.Stopped");
    const auto notRunning = describedErrorOf([&] { attach(stopped); });
    EXPECT_EQ(notRunning.identifier, "VELMAR:COM:norunningserver");
    EXPECT_NE(notRunning.text.find("Test.Stopped"), std::string::npos);
    const auto unknown = describedErrorOf([&] { attach(text("No.Such.Server")); });
    EXPECT_EQ(unknown.identifier, "VELMAR:COM:invalidprogid");
    EXPECT_NE(unknown.text.find("No.Such.Server"), std::string::npos);
    EXPECT_EQ(errorOf([&] { attach(scalar(1)); }), "VELMAR:COM:invalidArg");
    EXPECT_EQ(errorOf([&] { attach(stopped, 2); }), "VELMAR:maxlhs");
    EXPECT_EQ(errorOf([&] { attach(stopped, 1, 2); }), "VELMAR:maxrhs");
    EXPECT_EQ(errorOf([&] { attach(stopped, 1, 0); }), "VELMAR:minrhs");
}

} // namespace
