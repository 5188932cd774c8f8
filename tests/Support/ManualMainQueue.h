#pragma once

#include "Platform/Tasks/MainQueue.h"

#include <list>
#include <mutex>

namespace navorin {

/// A main queue whose clock stands still until a test moves it. Work may be posted from any thread.
class ManualMainQueue final : public MainQueue
{
public:
    ~ManualMainQueue() override;

    void post(Work work) override;
    [[nodiscard]] std::unique_ptr<Timer> after(std::chrono::milliseconds delay, Work work) override;
    [[nodiscard]] std::unique_ptr<Timer> every(std::chrono::milliseconds interval, Work work) override;
    [[nodiscard]] QFuture<void> sleep(std::chrono::milliseconds delay) override;

    /// Runs posted work, also what that posts, and lets awaiting coroutines resume.
    void drain();
    /// Moves the clock, firing what falls due in order.
    void advance(std::chrono::milliseconds duration);
    [[nodiscard]] qsizetype timerCount() const { return qsizetype(m_entries->size()); }

private:
    struct Entry
    {
        std::chrono::milliseconds due;
        std::chrono::milliseconds interval;
        std::shared_ptr<Work> work;
        quint64 id;
    };
    class ManualTimer;

    std::unique_ptr<Timer> add(std::chrono::milliseconds delay, std::chrono::milliseconds interval,
                               Work work);

    [[nodiscard]] Work nextPosted();
    [[nodiscard]] bool hasPosted() const;

    std::shared_ptr<std::list<Entry>> m_entries = std::make_shared<std::list<Entry>>();
    mutable std::mutex m_mutex; ///< guards m_posted
    std::list<Work> m_posted;
    std::list<std::unique_ptr<Timer>> m_sleeps;
    std::chrono::milliseconds m_now{0};
    quint64 m_nextId = 1;
};

} // namespace navorin
