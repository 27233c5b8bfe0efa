// The guard and what servers raise by the system's own means.
#include "platform/guarded_call.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace platform {
namespace {

TEST(GuardedCall, endsWithWhateverCodeIsRaised) {
    // Of runtimes, of programs, warnings, notes, and those beside the compiler's own.
    for (const DWORD code : {0x0EEDFADEu, 0xE06D7363u, 0x1u, 0x40010006u, 0x80000003u, 0xE0434352u,
                             0x20474342u, 0x22474344u})
        for (const DWORD flags : {DWORD{0}, DWORD{EXCEPTION_NONCONTINUABLE}}) {
            const Fault fault = guarded([&] { RaiseException(code, flags, 0, nullptr); });
            EXPECT_EQ(fault.code, code);
        }
}

} // namespace
} // namespace platform
