// The guard: a stack frame whose own exception handler ends the call with what it was told.
#include "platform/guarded_call.h"

#include "platform/com.h"
#include "platform/thread_slot.h"

#include <malloc.h>

namespace platform {
namespace {

struct Call {
    void (*function)(void*);
    void* context;
    Fault fault;
};

// The innermost region of the thread in which the frames outside it don't count.
using InnermostRegion = ThreadSlot<UnguardedRegion>;

void runCall(Call* call) {
    try {
        call->function(call->context);
    } catch (...) {
        call->fault = {faultCppException, nullptr};
    }
}

} // namespace
} // namespace platform

// Calls function(call) from a frame that the handler below looks after. The compiler has no
// structured exceptions, so the frame is written out. The slot at 40(%rsp) keeps the call's address
// for the handler.
extern "C" void axlink2CallInFrame(platform::Call* call, void (*function)(platform::Call*));

// Where the frame goes on after a fault.
extern "C" char axlink2AfterFault[];

asm(R"(
    .text
    .balign 16
    .globl axlink2CallInFrame
    .globl axlink2AfterFault
    .def axlink2CallInFrame; .scl 2; .type 32; .endef
    .seh_proc axlink2CallInFrame
axlink2CallInFrame:
    subq $56, %rsp
    .seh_stackalloc 56
    .seh_endprologue
    .seh_handler axlink2HandleFault, @except
    movq %rcx, 40(%rsp)
    call *%rdx
axlink2AfterFault:
    nop
    addq $56, %rsp
    ret
    .seh_endproc
)");

extern "C" [[gnu::used]] EXCEPTION_DISPOSITION axlink2HandleFault(EXCEPTION_RECORD* record,
                                                                  void* frame, CONTEXT* context,
                                                                  DISPATCHER_CONTEXT* dispatcher) {
    constexpr DWORD unwinding = EXCEPTION_UNWINDING | EXCEPTION_EXIT_UNWIND |
                                EXCEPTION_TARGET_UNWIND | EXCEPTION_COLLIDED_UNWIND;
    // Servers raise codes of all kinds. Only the compiler's own exceptions find their way without
    // it: those thrown, unwound and forced.
    const DWORD code = record->ExceptionCode;
    const bool isOwn = code == 0x20474343 || code == 0x21474343 || code == 0x22474343;
    if ((record->ExceptionFlags & unwinding) != 0 || isOwn) return ExceptionContinueSearch;

    // The stack grows down: a region that began later lies below, and one that foreign unwinding
    // has passed by below where the stack ends.
    const auto region = reinterpret_cast<DWORD64>(platform::InnermostRegion::get());
    if (region >= context->Rsp && region < reinterpret_cast<DWORD64>(frame))
        return ExceptionContinueSearch;

    platform::Call* call = *reinterpret_cast<platform::Call**>(static_cast<char*>(frame) + 40);
    const bool hasAddress = code == EXCEPTION_ACCESS_VIOLATION && record->NumberParameters >= 2;
    call->fault = {code, hasAddress ? reinterpret_cast<void*>(record->ExceptionInformation[1])
                                    : record->ExceptionAddress};
    RtlUnwindEx(frame, axlink2AfterFault, record, nullptr, dispatcher->ContextRecord,
                dispatcher->HistoryTable);
    return ExceptionContinueSearch; // not reached
}

namespace platform {
namespace {

// Set aside of a thread's stack, so that after its overflow the handlers have something to run on.
constexpr ULONG handlersStack = 64 * 1024;

void prepareThread() {
    // Not thread_local, which this compiler makes slow.
    static const DWORD prepared = TlsAlloc();
    if (TlsGetValue(prepared)) return;
    InnermostRegion::get(); // which the handler must not be the first to ask for
    ULONG size = handlersStack;
    SetThreadStackGuarantee(&size);
    TlsSetValue(prepared, &size); // any address but null
}

} // namespace

Fault callGuarded(void (*function)(void*), void* context) {
    prepareThread();
    Call call{function, context, {}};
    axlink2CallInFrame(&call, runCall);
    // The page that announces the stack's end has been used up.
    if (call.fault.code == faultStackOverflow) _resetstkoflw();
    return call.fault;
}

// Frames of the stack guard, which nobody takes away.
void rearmGuards() {}

UnguardedRegion::UnguardedRegion() : outer_(InnermostRegion::get()) { InnermostRegion::set(this); }

UnguardedRegion::~UnguardedRegion() { InnermostRegion::set(outer_); }

} // namespace platform
