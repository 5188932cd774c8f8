#pragma once

#include "Platform/Audio/ThreadGroup.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace navorin {

/// A thread that runs what it is given, one thing after the other. It ends after finish(), or when the object
/// is destroyed; neither waits for it.
class SerialThread
{
public:
    using Work = std::function<void()>;

    explicit SerialThread(ThreadGroup &group);
    SerialThread(const SerialThread &) = delete;
    SerialThread &operator=(const SerialThread &) = delete;
    ~SerialThread();

    /// Any thread.
    void post(Work work);
    /// Runs `last` as soon as the thread is free, drops all other waiting work and ends. Any thread.
    void finish(Work last);
    /// Runs `work` after `delay`, in place of an earlier alarm that has not rung. Own thread only.
    void setAlarm(std::chrono::milliseconds delay, Work work);
    void clearAlarm();

private:
    using Clock = std::chrono::steady_clock;
    struct State
    {
        std::mutex mutex;
        std::condition_variable changed;
        std::deque<Work> works;
        std::optional<Clock::time_point> alarmTime;
        Work alarm;
        bool finished = false;

        Work next();
        void run();
    };

    std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace navorin
