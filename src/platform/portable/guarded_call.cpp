// The guard: signal handlers that turn a fault inside a guarded call into a jump back to it.
#include "platform/guarded_call.h"

#include <array>
#include <cstddef>
#include <cxxabi.h>
#include <mutex>
#include <pthread.h>
#include <setjmp.h>
#include <signal.h>
#include <sys/mman.h>
#include <ucontext.h>
#include <unistd.h>
#include <utility>

#ifdef __SANITIZE_ADDRESS__
extern "C" void __asan_handle_no_return();
#endif

namespace platform {
namespace {

struct Frame {
    Frame* outer;
    Fault fault;
    sigjmp_buf resume;
};

// What the handler reads. Plain data with the fastest access to thread storage: an ordinary
// thread_local of a shared library is fetched through a call, which a handler had better not make.
struct ThreadState {
    Frame* innermost;
    std::uintptr_t stackLow;
    bool prepared;
    std::uintptr_t passingOn; // the frame of passOn that is at work
};
constinit thread_local ThreadState threadState [[gnu::tls_model("initial-exec")]] = {};

struct HandledSignal {
    int number;
    struct sigaction first;    // what was there before the guard
    struct sigaction previous; // what was there when the guard was put back last
};
std::array<HandledSignal, 4> handledSignals{
    {{SIGSEGV, {}, {}}, {SIGBUS, {}, {}}, {SIGFPE, {}, {}}, {SIGILL, {}, {}}}};

void give(const struct sigaction& handler, int number, siginfo_t* info, void* context) {
    const bool sent = info->si_code <= 0;
    if ((handler.sa_flags & SA_SIGINFO) != 0) {
        handler.sa_sigaction(number, info, context);
    } else if (handler.sa_handler == SIG_DFL || (handler.sa_handler == SIG_IGN && !sent)) {
        // The instruction runs again and faults again, this time for good.
        signal(number, SIG_DFL);
        if (sent) {
            raise(number);
        }
    } else if (handler.sa_handler != SIG_IGN) {
        handler.sa_handler(number);
    }
}

// Gives the signal to whoever handled it before, or lets it end the process as it would have. Who
// took the signal over from the guard, and had it taken back, may pass it on to the guard again:
// then it is for who was there first. One that left by a jump has left no frame around this one.
void passOn(int number, siginfo_t* info, void* context) {
    const auto frame = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    const bool again = frame < std::exchange(threadState.passingOn, frame);
    for (const HandledSignal& handled : handledSignals) {
        if (handled.number == number) {
            give(again ? handled.first : handled.previous, number, info, context);
        }
    }
    threadState.passingOn = 0;
}

std::uintptr_t stackPointer(const void* context) {
    const auto* registers = &static_cast<const ucontext_t*>(context)->uc_mcontext;
#if defined(__x86_64__)
    return static_cast<std::uintptr_t>(registers->gregs[REG_RSP]);
#elif defined(__aarch64__)
    return static_cast<std::uintptr_t>(registers->sp);
#endif
}

// Below the thread's stack, and near enough to the stack pointer to have been pushed there.
bool isStackOverflow(std::uintptr_t address, const void* context) {
    constexpr std::uintptr_t reach = std::uintptr_t{64} * 1024;
    const std::uintptr_t low = threadState.stackLow;
    const std::uintptr_t top = stackPointer(context);
    return low != 0 && address < low + 4096 && address + reach >= (top < low ? top : low);
}

std::uint32_t faultCode(int number, const siginfo_t* info, const void* context) {
    if (number == SIGILL) {
        return faultIllegalInstruction;
    }
    if (number != SIGFPE) {
        return isStackOverflow(reinterpret_cast<std::uintptr_t>(info->si_addr), context)
                   ? faultStackOverflow
                   : faultAccessViolation;
    }
    switch (info->si_code) {
    case FPE_INTOVF:
        return 0xC0000095;
    case FPE_FLTDIV:
        return 0xC000008E;
    case FPE_FLTOVF:
        return 0xC0000091;
    case FPE_FLTUND:
        return 0xC0000093;
    case FPE_FLTRES:
        return 0xC000008F;
    case FPE_FLTINV:
        return 0xC0000090;
    default:
        return faultIntegerDivideByZero;
    }
}

void handle(int number, siginfo_t* info, void* context) {
    Frame* frame = threadState.innermost;
    if (!frame || info->si_code <= 0) {
        passOn(number, info, context);
        return;
    }
    frame->fault = {faultCode(number, info, context), info->si_addr};
#ifdef __SANITIZE_ADDRESS__
    __asan_handle_no_return();
#endif
    // Another library's handler may have been called first and have passed the signal on to this
    // one; while it runs the system holds the signal back, unless it was told not to.
    sigset_t own;
    sigemptyset(&own);
    sigaddset(&own, number);
    pthread_sigmask(SIG_UNBLOCK, &own, nullptr);
    siglongjmp(frame->resume, 1);
}

// A stack for the handler, without which a stack overflow leaves it nothing to run on.
class HandlerStack {
  public:
    HandlerStack() {
        void* memory = mmap(nullptr, size, PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0);
        if (memory == MAP_FAILED) {
            return;
        }
        memory_ = memory;
        stack_t stack{};
        stack.ss_sp = memory;
        stack.ss_size = size;
        sigaltstack(&stack, &previous_);
    }
    HandlerStack(const HandlerStack&) = delete;
    HandlerStack& operator=(const HandlerStack&) = delete;
    ~HandlerStack() {
        if (memory_) {
            sigaltstack(&previous_, nullptr);
            munmap(memory_, size);
        }
    }

  private:
    static constexpr std::size_t size = std::size_t{64} * 1024;
    void* memory_ = nullptr;
    stack_t previous_{};
};

// Where they aren't installed; what is there comes to be the one before.
void installHandlers() {
    static bool areInstalled = false;
    for (HandledSignal& handled : handledSignals) {
        struct sigaction current {};
        sigaction(handled.number, nullptr, &current);
        if ((current.sa_flags & SA_SIGINFO) != 0 && current.sa_sigaction == handle) {
            continue;
        }
        handled.previous = current;
        if (!areInstalled) {
            handled.first = current;
        }
        struct sigaction action {};
        action.sa_sigaction = handle;
        action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER;
        sigemptyset(&action.sa_mask);
        sigaction(handled.number, &action, nullptr);
    }
    areInstalled = true;
}

[[gnu::noinline]] void prepareThread() {
    static std::once_flag installed;
    std::call_once(installed, installHandlers);
    thread_local HandlerStack handlerStack;
    static_cast<void>(handlerStack);

    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) == 0) {
        void* low = nullptr;
        std::size_t size = 0;
        pthread_attr_getstack(&attributes, &low, &size);
        threadState.stackLow = reinterpret_cast<std::uintptr_t>(low);
        pthread_attr_destroy(&attributes);
    }
    threadState.prepared = true;
}

} // namespace

Fault callGuarded(void (*function)(void*), void* context) {
    if (!threadState.prepared) [[unlikely]] {
        prepareThread();
    }
    Frame frame;
    frame.outer = threadState.innermost;
    // The signal mask isn't saved, which would take two system calls: with SA_NODEFER the handler
    // leaves it as it is.
    if (sigsetjmp(frame.resume, 0) != 0) {
        threadState.innermost = frame.outer;
        return frame.fault;
    }
    threadState.innermost = &frame;
    try {
        function(context);
    } catch (abi::__forced_unwind&) {
        // The thread is being cancelled.
        threadState.innermost = frame.outer;
        throw;
    } catch (...) {
        threadState.innermost = frame.outer;
        return {faultCppException, nullptr};
    }
    threadState.innermost = frame.outer;
    return {};
}

void rearmGuards() { installHandlers(); }

UnguardedRegion::UnguardedRegion() : outer_(threadState.innermost) {
    threadState.innermost = nullptr;
}

UnguardedRegion::~UnguardedRegion() { threadState.innermost = static_cast<Frame*>(outer_); }

} // namespace platform
