// Memory of array headers: each thread keeps some that ended for the next ones, and counts its own.
#include "host/array_store.h"
#include "platform/thread_slot.h"

#include <memory>
#include <mutex>
#include <new>
#include <utility>

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t mostKept = 0; // so that the use of an ended header shows
#else
constexpr std::size_t mostKept = 1024; // which is about 150 kB
#endif

struct Kept {
    Kept* next;
};

struct Pool {
    Kept* first = nullptr;
    std::size_t kept = 0;
    // Arrays made less arrays ended by this thread. Written by it alone, read by all.
    std::atomic<std::ptrdiff_t> balance{0};
    Pool* nextPool = nullptr;
};

constinit thread_local bool hasEnded = false;

struct Pools {
    std::mutex mutex;
    Pool* first = nullptr;
    std::ptrdiff_t otherBalance = 0; // of what no pool counts
};

// Never destroyed: threads may end late.
Pools& pools() {
    static auto& the = *new Pools;
    return the;
}

void endPool(void* ending) {
    auto* const mine = static_cast<Pool*>(ending);
    hasEnded = true;
    while (mine->first)
        ::operator delete(std::exchange(mine->first, mine->first->next));
    {
        const std::lock_guard lock(pools().mutex);
        Pool** at = &pools().first;
        while (*at != mine)
            at = &(*at)->nextPool;
        *at = mine->nextPool;
        pools().otherBalance += mine->balance.load(std::memory_order_relaxed);
    }
    delete mine;
}

// Holds the thread's pool; null before the thread is known and after its end.
using PoolSlot = platform::ThreadSlot<Pool, endPool>;

Pool* beginPool() {
    auto made = std::unique_ptr<Pool>(new (std::nothrow) Pool);
    if (!made || !PoolSlot::set(made.get())) return nullptr;
    Pool* const begun = made.release();
    const std::lock_guard lock(pools().mutex);
    begun->nextPool = pools().first;
    return pools().first = begun;
}

// Counts `change` where the thread has no pool: for its first array, and after its end.
Pool* noteSlowly(std::ptrdiff_t change) {
    if (Pool* const begun = hasEnded ? nullptr : beginPool()) {
        begun->balance.store(change, std::memory_order_relaxed);
        return begun;
    }
    const std::lock_guard lock(pools().mutex);
    pools().otherBalance += change;
    return nullptr;
}

// Counts `change`, and gives the thread's pool, or null.
inline Pool* note(std::ptrdiff_t change) {
    auto* const mine = static_cast<Pool*>(PoolSlot::get());
    if (!mine) [[unlikely]]
        return noteSlowly(change);
    mine->balance.store(mine->balance.load(std::memory_order_relaxed) + change,
                        std::memory_order_relaxed);
    return mine;
}

} // namespace

void* hxArray::operator new(std::size_t size) {
    Pool* const mine = note(1);
    if (!mine || !mine->first) {
        try {
            return ::operator new(size);
        } catch (...) {
            note(-1);
            throw;
        }
    }
    --mine->kept;
    return std::exchange(mine->first, mine->first->next);
}

void hxArray::operator delete(void* header) {
    Pool* const mine = note(-1);
    if (!mine || mine->kept >= mostKept) {
        ::operator delete(header);
        return;
    }
    ++mine->kept;
    mine->first = new (header) Kept{mine->first};
}

std::size_t hxLiveArrayCount() {
    const std::lock_guard lock(pools().mutex);
    std::ptrdiff_t balance = pools().otherBalance;
    for (const Pool* one = pools().first; one; one = one->nextPool)
        balance += one->balance.load(std::memory_order_relaxed);
    return static_cast<std::size_t>(balance);
}
