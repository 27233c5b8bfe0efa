// The tests' support where this project's own COM layer serves.
#include "platform/com.h"
#include "platform/guarded_call.h"
#include "system_support.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

namespace platform {

const char* const userDataVariable = "XDG_DATA_HOME";

void expectDescriptionsOut(int count) { EXPECT_EQ(outstandingTypeDescriptions(), count); }

void setVariable(const char* name, const char* value) {
    value ? setenv(name, value, 1) : unsetenv(name);
}

namespace {

struct sigaction former;

// Another library's handler, which passes on what isn't its own.
void passOn(int number, siginfo_t* info, void* context) {
    former.sa_sigaction(number, info, context);
}

[[gnu::noinline, gnu::no_sanitize("undefined", "address")]] void fault() {
    int* volatile nowhere = reinterpret_cast<int*>(0x10);
    *nowhere = 1;
}

} // namespace

// The system holds a signal back while such a handler runs, and the guard leaves it by a jump.
TEST(GuardedCalls, WorkBehindAHandlerOfAnotherLibrary) {
    EXPECT_FALSE(guarded([] {}));
    struct sigaction action {};
    action.sa_sigaction = passOn;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigaction(SIGSEGV, &action, &former);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(guarded(fault));
    rearmGuards();
    EXPECT_TRUE(guarded(fault));
    // Outside of guarded calls it gets the fault, passes it on, and the program ends.
    EXPECT_DEATH(fault(), "");
    sigaction(SIGSEGV, &former, nullptr);
}

} // namespace platform
