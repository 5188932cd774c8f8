#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace navorin {

/// Threads that nobody joins one by one, but that can be waited for together, with a time limit: a sound
/// server or a driver that hangs must not hang the end of the program.
class ThreadGroup : public std::enable_shared_from_this<ThreadGroup>
{
public:
    /// Runs `body` on a thread of its own. Any thread.
    void start(std::function<void()> body);
    /// Waits until no thread of the group runs any more. False if the limit passed first.
    bool wait(std::chrono::milliseconds limit);

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_running = 0;
};

} // namespace navorin
