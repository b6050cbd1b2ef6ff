#pragma once

#include <atomic>
#include <chrono>
#include <future>
#include <mutex>
#include <thread>

// Holds a lock on a thread of its own for a tenth of a second, as a body running its
// script on a worker does; made once the lock is held.
class LockHeldElsewhere
{
public:
    explicit LockHeldElsewhere(std::recursive_mutex &lock)
    {
        std::promise<void> locked;
        m_holder = std::thread([this, &lock, &locked] {
            const std::lock_guard locker(lock);
            locked.set_value();
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            m_released = true;
        });
        locked.get_future().wait();
    }
    ~LockHeldElsewhere() { m_holder.join(); }

    bool released() const { return m_released; }

private:
    std::atomic<bool> m_released{false};
    std::thread m_holder;
};
