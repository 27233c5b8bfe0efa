// The guard against faults: every kind, again and again, nested, in threads, out of stack.
#include "platform/guarded_call.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <stdexcept>
#include <thread>
#include <vector>

namespace platform {
namespace {

#define UNCHECKED __attribute__((noinline, no_sanitize("undefined", "address")))

int* volatile badAddress = reinterpret_cast<int*>(0x10);
volatile int zero = 0;
volatile int ten = 10;
volatile int sink = 0;

UNCHECKED void writeBadly() { *badAddress = 1; }
UNCHECKED void readBadly() { sink = *badAddress; }
UNCHECKED void divideByZero() { sink = ten / zero; }
UNCHECKED void runNoInstruction() { __builtin_trap(); }
void raiseException() { throw std::runtime_error("stopped"); }

UNCHECKED int recurse(int depth) {
    volatile char filler[1024];
    filler[0] = static_cast<char>(depth);
    const int deeper = zero == 0 ? recurse(depth + 1) : 0;
    return deeper + filler[0];
}
void overflowStack() { sink = recurse(0); }

// The address sanitizer wipes its notes on the whole stack at each jump, which takes long.
#ifdef __SANITIZE_ADDRESS__
constexpr int manyTimes = 2000;
#else
constexpr int manyTimes = 100000;
#endif

struct FaultCase {
    const char* name;
    void (*cause)();
    std::uint32_t code;
    int repetitions;
};

const FaultCase faultCases[] = {
    {"write", writeBadly, faultAccessViolation, manyTimes},
    {"read", readBadly, faultAccessViolation, 1000},
    {"divide", divideByZero, faultIntegerDivideByZero, 1000},
    {"illegal instruction", runNoInstruction, faultIllegalInstruction, 1000},
    {"exception", raiseException, faultCppException, 1000},
};

void expectEveryFault(int mostRepetitions) {
    for (const FaultCase& fault : faultCases) {
        for (int i = 0; i < std::min(fault.repetitions, mostRepetitions); ++i)
            ASSERT_EQ(guarded(fault.cause).code, fault.code) << fault.name << ", call " << i;
    }
}

TEST(GuardedCall, answersTheCodeOfEachKindOfFaultHoweverOften) {
    expectEveryFault(manyTimes);
    EXPECT_EQ(guarded(writeBadly).address, badAddress);
}

TEST(GuardedCall, worksInEveryThread) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back(expectEveryFault, 50);
    for (std::thread& thread : threads)
        thread.join();
}

TEST(GuardedCall, endsTheInnermostCallOnly) {
    Fault inner, sound;
    const Fault outer = guarded([&] {
        inner = guarded(writeBadly);
        sound = guarded([] {});
        divideByZero();
    });
    EXPECT_EQ(inner.code, faultAccessViolation);
    EXPECT_FALSE(sound);
    EXPECT_EQ(outer.code, faultIntegerDivideByZero);
}

TEST(GuardedCall, survivesTheEndOfTheStackHoweverOften) {
    const auto overflow = [] {
        for (int i = 0; i < 50; ++i)
            ASSERT_EQ(guarded(overflowStack).code, faultStackOverflow) << "call " << i;
    };
    overflow();
    std::thread(overflow).join();

    Fault inner;
    const Fault outer = guarded([&] {
        inner = guarded(overflowStack);
        divideByZero();
    });
    EXPECT_EQ(inner.code, faultStackOverflow);
    EXPECT_EQ(outer.code, faultIntegerDivideByZero);
}

TEST(GuardedCallDeathTest, leavesFaultsOutsideAndSentSignalsToTheProcess) {
    EXPECT_FALSE(guarded([] {})); // the handlers are in place
    EXPECT_DEATH(writeBadly(), "");
    EXPECT_DEATH(guarded([] { raise(SIGSEGV); }), "");
}

} // namespace
} // namespace platform
