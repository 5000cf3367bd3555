#pragma once

#include <atomic>

// For the process-wide lists of the object machinery, which one thread uses at
// a time: never contended, it only keeps misuse from corrupting them.
class SpinLock {
public:
    void lock() noexcept {
        while (flag_.test_and_set(std::memory_order_acquire)) {
        }
    }
    void unlock() noexcept { flag_.clear(std::memory_order_release); }

    class Guard {
    public:
        explicit Guard(SpinLock& lock) : lock_(lock) { lock_.lock(); }
        ~Guard() { lock_.unlock(); }
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;

    private:
        SpinLock& lock_;
    };

private:
    std::atomic_flag flag_ = ATOMIC_FLAG_INIT;
};
