// Calls into servers: what a fault in one becomes, and how long a server lives.
#include "comruntime/guarded_invoke.h"
#include "comruntime/server_call.h"
#include "support/com_double.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace axlink2;
using test::Silent;

// A server that answers `answer` wherever it is called, and lives on whatever its count says.
class Double : public Silent<IDispatch> {
  public:
    explicit Double(std::function<HRESULT()> answer) : answer_(std::move(answer)) {}
    virtual ~Double() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override {
        if (faultsInRelease) answer_();
        return --references;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return answer_(); }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return answer_();
    }

    ULONG references = 1;
    bool faultsInRelease = false;

  private:
    std::function<HRESULT()> answer_;
};

HRESULT invoke(IDispatch* server) {
    DISPPARAMS params{};
    return guardedInvoke(server, 1, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, nullptr, nullptr,
                         nullptr);
}

// Not for the sanitizer that would stop before the processor does.
[[gnu::no_sanitize("undefined")]] HRESULT writeToNull() {
    volatile int* volatile nowhere = nullptr;
    *nowhere = 1; // NOLINT: the fault that is wanted
    return S_OK;
}

TEST(GuardedCalls, TurnFaultsInTheServerIntoAResultAndPassOthersOn) {
    Double nullWrite(writeToNull);
    Double thrower([]() -> HRESULT { throw 1; });
    Double busy([] { return RPC_E_CALL_REJECTED; });
    ITypeInfo* info = nullptr;
    for (IDispatch* faulty :
         {static_cast<IDispatch*>(&nullWrite), static_cast<IDispatch*>(&thrower)}) {
        EXPECT_EQ(invoke(faulty), DISP_E_EXCEPTION);
        EXPECT_EQ(guardedGetTypeInfo(faulty, &info), E_FAIL);
    }
    EXPECT_EQ(invoke(&busy), RPC_E_CALL_REJECTED);
    EXPECT_EQ(guardedGetTypeInfo(&busy, &info), RPC_E_CALL_REJECTED);
    EXPECT_EQ(invoke(nullptr), DISP_E_EXCEPTION);
}

TEST(GuardedCalls, KeepAServerThatIsLetGoDuringACallUntilItsCallEnds) {
    std::vector<ULONG> during;
    Double other([] { return S_OK; });
    Double* self = nullptr;
    int depth = 0;
    Double server([&] {
        if (++depth == 1) {
            // The inner call ends before the outer one to the same server does.
            invoke(self);
            during.push_back(self->references);
            return S_OK;
        }
        releaseServer(self);
        releaseServer(&other);
        during.push_back(self->references);
        during.push_back(other.references);
        return S_OK;
    });
    self = &server;

    EXPECT_EQ(invoke(&server), S_OK);
    EXPECT_EQ(during, (std::vector<ULONG>{1, 0, 1}));
    EXPECT_EQ(server.references, 0u);
    releaseServer(nullptr);
}

TEST(GuardedCalls, ForgetTheCallsThatAFaultSkipped) {
    Double* self = nullptr;
    int depth = 0;
    Double server([&]() -> HRESULT {
        if (++depth == 1) return invoke(self);
        return writeToNull();
    });
    self = &server;

    EXPECT_EQ(invoke(&server), DISP_E_EXCEPTION);
    releaseServer(&server);
    EXPECT_EQ(server.references, 0u);
}

TEST(GuardedCalls, ContainAFaultInRelease) {
    Double server(writeToNull);
    server.faultsInRelease = true;
    releaseServer(&server);
    guardedRelease(&server);
    EXPECT_EQ(server.references, 1u);
}

} // namespace
