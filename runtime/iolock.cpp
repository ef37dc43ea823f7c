// runtime/iolock.cpp: the waits of the I/O lock, on a futex.
#include "runtime/iolock.h"

#include <climits>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace kestro::rt {

namespace {

static_assert(sizeof(std::atomic<int>) == sizeof(int) && std::atomic<int>::is_always_lock_free);

int* word(std::atomic<int>& state)
{
    return reinterpret_cast<int*>(&state);
}

} // namespace

void IoLock::lockContended()
{
    // Marking the word as waited on makes the holder's unlock wake a sleeper.
    while (state_.exchange(lockedWithWaiters, std::memory_order_acquire) != unlocked)
        ::syscall(SYS_futex, word(state_), FUTEX_WAIT_PRIVATE, lockedWithWaiters, nullptr, nullptr, 0);
}

void IoLock::wakeOne()
{
    ::syscall(SYS_futex, word(state_), FUTEX_WAKE_PRIVATE, 1, nullptr, nullptr, 0);
}

} // namespace kestro::rt
