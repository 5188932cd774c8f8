#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace navorin::demo {

/// Ends every wait of the process at once when the server is told to stop. Any thread.
class StopToken
{
public:
    void stop()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_stopped = true;
        }
        m_changed.notify_all();
    }

    [[nodiscard]] bool isStopped() const
    {
        const std::lock_guard lock(m_mutex);
        return m_stopped;
    }

    /// Sleeps; false when the stop came first.
    template <typename Rep, typename Period>
    bool sleep(std::chrono::duration<Rep, Period> duration) const
    {
        std::unique_lock lock(m_mutex);
        return !m_changed.wait_for(lock, duration, [this] { return m_stopped; });
    }

private:
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    bool m_stopped = false;
};

} // namespace navorin::demo
