// Memory of array headers: each thread keeps some that ended for the next ones, and counts its own.
#include "host/array_store.h"

#include <memory>
#include <mutex>
#include <new>
#include <pthread.h>
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

// Null before the thread is known and after its end.
constinit thread_local Pool* pool = nullptr;
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
    pool = nullptr;
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

// Gives the thread its pool. The thread's end is told by a key and not by a thread_local's
// destructor: not everywhere does the memory of thread_locals outlive their destructors.
void beginPool() {
    static pthread_key_t key;
    static const bool hasKey = pthread_key_create(&key, endPool) == 0;
    if (!hasKey) return;
    auto made = std::unique_ptr<Pool>(new (std::nothrow) Pool);
    if (!made || pthread_setspecific(key, made.get()) != 0) return;
    pool = made.release();
    const std::lock_guard lock(pools().mutex);
    pool->nextPool = pools().first;
    pools().first = pool;
}

inline void note(std::ptrdiff_t change);

// What `note` does for the first array of a thread, and after the thread's end.
void countSlowly(std::ptrdiff_t change) {
    if (!hasEnded) beginPool();
    if (pool) return note(change);
    const std::lock_guard lock(pools().mutex);
    pools().otherBalance += change;
}

inline void note(std::ptrdiff_t change) {
    if (!pool) [[unlikely]]
        return countSlowly(change);
    pool->balance.store(pool->balance.load(std::memory_order_relaxed) + change,
                        std::memory_order_relaxed);
}

} // namespace

void* hxArray::operator new(std::size_t size) {
    note(1);
    Pool* const mine = pool;
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
    note(-1);
    Pool* const mine = pool;
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
