// Attaching to a running server.
#include "classmodel/instance_record.h"
#include "support/server_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

class Running : public kit::DispatchObject {
  public:
    Running() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition() {
        static const auto made =
            kit::ClassBuilder<Running>("Running", kit::guid("C7C3E0B5-50B5-4A0C-8F77-55B02A6D9021"),
                                       kit::guid("C7C3E0B5-50B5-4A0C-8F77-55B02A6D9022"))
                .build();
        return *made;
    }
};

struct RunningServer : ServerTest {
    const CLSID& clsid = Running::definition().parts().coclass.clsid;

    static Array attach(const Array& input, int nlhs = 1) {
        Array output;
        const hxArray* inputs[] = {input.get(), input.get()};
        COM2::actxGetRunningServer(nlhs, &output, 1, inputs);
        return output;
    }
    static Array text(const char* text) { return Array(hxCreateString(text)); }
};

TEST_F(RunningServer, IsSharedByAllWhoAttachToIt) {
    kit::registerProgId("Test.Running", clsid);
    const auto server = kit::createDispatch<Running>();
    DWORD cookie = 0;
    ASSERT_EQ(RegisterActiveObject(server.get(), clsid, ACTIVEOBJECT_STRONG, &cookie), S_OK);
    {
        const Array first = attach(text("Test.Running"));
        const Array second = attach(text("Test.Running"));
        const hos::HOSInterfacePtr a = hoGetArrayElement(first.get(), 0);
        const hos::HOSInterfacePtr b = hoGetArrayElement(second.get(), 0);
        EXPECT_EQ(recordOf(a)->dispatch, server.get());
        EXPECT_EQ(recordOf(b)->dispatch, server.get());
        EXPECT_EQ(a->getClass(), b->getClass());
        // A new server of the same class.
        const Array started = start<Running>("Test.Running");
        EXPECT_EQ(hoGetArrayElement(started.get(), 0)->getClass(), a->getClass());
        EXPECT_NE(recordOf(hoGetArrayElement(started.get(), 0))->dispatch, server.get());
    }
    EXPECT_EQ(RevokeActiveObject(cookie, nullptr), S_OK);
    EXPECT_EQ(server->AddRef(), 2u);
    server->Release();
}

TEST_F(RunningServer, MustBeThereAndItsProgIdKnown) {
    kit::registerProgId("Test.Stopped", clsid);
    const auto stopped = describedErrorOf([&] { attach(text("Test.Stopped")); });
    EXPECT_EQ(stopped.identifier, "VELMAR:COM:norunningserver");
    EXPECT_NE(stopped.text.find("Test.Stopped"), std::string::npos);
    const auto unknown = describedErrorOf([&] { attach(text("No.Such.Server")); });
    EXPECT_EQ(unknown.identifier, "VELMAR:COM:invalidprogid");
    EXPECT_NE(unknown.text.find("No.Such.Server"), std::string::npos);
    EXPECT_EQ(errorOf([&] { attach(scalar(1)); }), "VELMAR:COM:invalidArg");
    EXPECT_EQ(errorOf([&] { attach(text("Test.Stopped"), 2); }), "VELMAR:maxlhs");
    const Array input = text("Test.Stopped");
    const hxArray* inputs[] = {input.get(), input.get()};
    Array output;
    EXPECT_EQ(errorOf([&] { COM2::actxGetRunningServer(1, &output, 2, inputs); }), "VELMAR:maxrhs");
    EXPECT_EQ(errorOf([&] { COM2::actxGetRunningServer(1, &output, 0, inputs); }), "VELMAR:minrhs");
}

} // namespace
