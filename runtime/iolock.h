// runtime/iolock.h: the I/O lock: one atomic word, taken and given back without a system call
// unless another thread waits for it.
#pragma once

#include <atomic>

namespace kestro::rt {

class IoLock
{
public:
    IoLock() = default;
    IoLock(const IoLock&) = delete;
    IoLock& operator=(const IoLock&) = delete;

    void lock()
    {
        int expected = unlocked;
        if (!state_.compare_exchange_strong(expected, locked, std::memory_order_acquire,
                                            std::memory_order_relaxed))
            lockContended();
    }

    void unlock()
    {
        if (state_.exchange(unlocked, std::memory_order_release) == lockedWithWaiters) wakeOne();
    }

private:
    static constexpr int unlocked = 0;
    static constexpr int locked = 1;
    static constexpr int lockedWithWaiters = 2;

    void lockContended();
    void wakeOne();

    std::atomic<int> state_{unlocked};
};

} // namespace kestro::rt
