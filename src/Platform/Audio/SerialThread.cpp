#include "Platform/Audio/SerialThread.h"

#include <utility>

namespace navorin {

SerialThread::SerialThread(ThreadGroup &group)
{
    group.start([state = m_state] { state->run(); });
}

SerialThread::~SerialThread()
{
    finish(nullptr);
}

void SerialThread::post(Work work)
{
    {
        const std::scoped_lock lock(m_state->mutex);
        if (m_state->finished)
            return;
        m_state->works.push_back(std::move(work));
    }
    m_state->changed.notify_one();
}

void SerialThread::finish(Work last)
{
    std::deque<Work> dropped; // destroyed outside the lock
    {
        const std::scoped_lock lock(m_state->mutex);
        if (m_state->finished)
            return;
        m_state->finished = true;
        dropped.swap(m_state->works);
        if (last)
            m_state->works.push_back(std::move(last));
    }
    m_state->changed.notify_one();
}

void SerialThread::setAlarm(std::chrono::milliseconds delay, Work work)
{
    const std::scoped_lock lock(m_state->mutex);
    m_state->alarmTime = Clock::now() + delay;
    m_state->alarm = std::move(work);
}

void SerialThread::clearAlarm()
{
    const std::scoped_lock lock(m_state->mutex);
    m_state->alarmTime.reset();
    m_state->alarm = nullptr;
}

/// Waits for the next piece of work; none means that the end has come.
SerialThread::Work SerialThread::State::next()
{
    std::unique_lock lock(mutex);
    for (;;) {
        if (!works.empty()) {
            auto work = std::move(works.front());
            works.pop_front();
            return work;
        }
        if (finished) {
            alarm = nullptr;
            return nullptr;
        }
        if (!alarmTime) {
            changed.wait(lock);
        } else if (Clock::now() < *alarmTime) {
            changed.wait_until(lock, *alarmTime);
        } else {
            alarmTime.reset();
            return std::exchange(alarm, nullptr);
        }
    }
}

void SerialThread::State::run()
{
    while (const auto work = next())
        work();
}

} // namespace navorin
