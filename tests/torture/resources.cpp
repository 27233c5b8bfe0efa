// What the system tells of this process.
#include "torture/resources.h"

#include <cstddef>
#include <ctime>
#include <fstream>
#include <malloc.h>
#include <unistd.h>

#ifdef __SANITIZE_ADDRESS__
// Declared in a header that not every compiler brings.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace torture {

std::ptrdiff_t heapInUse() {
#ifdef __SANITIZE_ADDRESS__
    return static_cast<std::ptrdiff_t>(__sanitizer_get_current_allocated_bytes());
#else
    const struct mallinfo2 info = mallinfo2();
    return static_cast<std::ptrdiff_t>(info.uordblks + info.hblkhd);
#endif
}

std::ptrdiff_t residentMemory() {
    std::ptrdiff_t total = 0;
    std::ptrdiff_t resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

double processorTime() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

} // namespace torture
