// Memory of array headers: each thread keeps a few that ended for the next ones, and counts its
// own.
#include "host/array_store.h"

#include <mutex>
#include <new>

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t mostKept = 0; // so that the use of an ended header shows
#else
constexpr std::size_t mostKept = 64;
#endif

struct Kept {
    Kept* next;
};

// Trivial, so that reaching it costs nothing; `ThreadEnd` sees to its end.
struct Pool {
    Kept* first = nullptr;
    std::size_t kept = 0;
    std::size_t capacity = 0; // nothing is kept before the thread is known, nor after its end
    enum class State : unsigned char { Unknown, Known, Ended } state = State::Unknown;
    // Arrays made less arrays ended by this thread. Written by it alone, read by all.
    std::atomic<std::ptrdiff_t> balance{0};
    Pool* nextPool = nullptr;
};

constinit thread_local Pool pool;

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

struct ThreadEnd {
    ThreadEnd() {
        const std::lock_guard lock(pools().mutex);
        pool.nextPool = pools().first;
        pools().first = &pool;
        pool.capacity = mostKept;
    }
    ~ThreadEnd() {
        while (pool.first)
            ::operator delete(std::exchange(pool.first, pool.first->next));
        pool.capacity = 0;
        pool.kept = 0;
        const std::lock_guard lock(pools().mutex);
        Pool** at = &pools().first;
        while (*at != &pool)
            at = &(*at)->nextPool;
        *at = pool.nextPool;
        pools().otherBalance += pool.balance.load(std::memory_order_relaxed);
        pool.balance.store(0, std::memory_order_relaxed);
        pool.state = Pool::State::Ended;
    }
};

// What `note` does for the first array of a thread, and after the thread's end.
void countSlowly(std::ptrdiff_t change) {
    if (pool.state == Pool::State::Unknown) {
        pool.state = Pool::State::Known;
        thread_local ThreadEnd end;
        static_cast<void>(end);
    }
    const std::lock_guard lock(pools().mutex);
    pools().otherBalance += change;
}

inline void note(std::ptrdiff_t change) {
    if (pool.state != Pool::State::Known) [[unlikely]]
        return countSlowly(change);
    pool.balance.store(pool.balance.load(std::memory_order_relaxed) + change,
                       std::memory_order_relaxed);
}

} // namespace

void* hxArray::operator new(std::size_t size) {
    note(1);
    if (!pool.first) {
        try {
            return ::operator new(size);
        } catch (...) {
            note(-1);
            throw;
        }
    }
    --pool.kept;
    return std::exchange(pool.first, pool.first->next);
}

void hxArray::operator delete(void* header) {
    note(-1);
    if (pool.kept >= pool.capacity) {
        ::operator delete(header);
        return;
    }
    ++pool.kept;
    pool.first = new (header) Kept{pool.first};
}

std::size_t hxLiveArrayCount() {
    const std::lock_guard lock(pools().mutex);
    std::ptrdiff_t balance = pools().otherBalance;
    for (const Pool* one = pools().first; one; one = one->nextPool)
        balance += one->balance.load(std::memory_order_relaxed);
    return static_cast<std::size_t>(balance);
}
