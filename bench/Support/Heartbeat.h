#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <ctime>

namespace navorin {

/// Time of the thread's own work, which leaves out what other processes took.
inline double workedMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

/// The beats of a 1 ms timer on the UI thread: the longest time between two of them, and the most that the
/// thread itself worked in between, which leaves out what other processes took.
class Heartbeat
{
public:
    Heartbeat()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.callOnTimeout([this] { beat(); });
        m_timer.start(1);
        m_wall.start();
        m_lastWork = workedMilliseconds();
    }
    void beat()
    {
        m_longest = std::max(m_longest, double(m_wall.nsecsElapsed()) / 1e6);
        m_wall.restart();
        const auto work = workedMilliseconds();
        m_mostWork = std::max(m_mostWork, work - m_lastWork);
        m_lastWork = work;
    }
    [[nodiscard]] double longestMilliseconds() const { return m_longest; }
    [[nodiscard]] double mostWorkMilliseconds() const { return m_mostWork; }

private:
    QTimer m_timer;
    QElapsedTimer m_wall;
    double m_lastWork = 0;
    double m_longest = 0;
    double m_mostWork = 0;
};

} // namespace navorin
