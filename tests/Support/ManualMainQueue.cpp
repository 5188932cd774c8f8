#include "Support/ManualMainQueue.h"

#include <QCoreApplication>
#include <QPromise>

#include <algorithm>

namespace navorin {

class ManualMainQueue::ManualTimer final : public MainQueue::Timer
{
public:
    ManualTimer(std::weak_ptr<std::list<Entry>> entries, quint64 id)
        : m_entries(std::move(entries))
        , m_id(id)
    {
    }
    ~ManualTimer() override
    {
        if (const auto entries = m_entries.lock())
            entries->remove_if([this](const Entry &entry) { return entry.id == m_id; });
    }

private:
    std::weak_ptr<std::list<Entry>> m_entries;
    quint64 m_id;
};

ManualMainQueue::~ManualMainQueue() = default;

void ManualMainQueue::post(Work work)
{
    const std::scoped_lock lock(m_mutex);
    m_posted.push_back(std::move(work));
}

std::unique_ptr<MainQueue::Timer> ManualMainQueue::add(std::chrono::milliseconds delay,
                                                       std::chrono::milliseconds interval, Work work)
{
    const auto id = m_nextId++;
    m_entries->push_back({m_now + delay, interval, std::make_shared<Work>(std::move(work)), id});
    return std::make_unique<ManualTimer>(m_entries, id);
}

std::unique_ptr<MainQueue::Timer> ManualMainQueue::after(std::chrono::milliseconds delay, Work work)
{
    return add(delay, std::chrono::milliseconds(0), std::move(work));
}

std::unique_ptr<MainQueue::Timer> ManualMainQueue::every(std::chrono::milliseconds interval, Work work)
{
    return add(interval, interval, std::move(work));
}

QFuture<void> ManualMainQueue::sleep(std::chrono::milliseconds delay)
{
    auto promise = std::make_shared<QPromise<void>>();
    promise->start();
    m_sleeps.push_back(after(delay, [promise] { promise->finish(); }));
    return promise->future();
}

void ManualMainQueue::drain()
{
    do {
        while (const auto work = nextPosted())
            work();
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    } while (hasPosted());
}

MainQueue::Work ManualMainQueue::nextPosted()
{
    const std::scoped_lock lock(m_mutex);
    if (m_posted.empty())
        return {};
    auto work = std::move(m_posted.front());
    m_posted.pop_front();
    return work;
}

bool ManualMainQueue::hasPosted() const
{
    const std::scoped_lock lock(m_mutex);
    return !m_posted.empty();
}

void ManualMainQueue::advance(std::chrono::milliseconds duration)
{
    const auto end = m_now + duration;
    drain();
    for (;;) {
        const auto next =
            std::min_element(m_entries->begin(), m_entries->end(), [](const auto &a, const auto &b) {
                return std::pair(a.due, a.id) < std::pair(b.due, b.id);
            });
        if (next == m_entries->end() || next->due > end)
            break;
        m_now = next->due;
        const auto work = next->work;
        if (next->interval.count() > 0)
            next->due += next->interval;
        else
            m_entries->erase(next);
        (*work)();
        drain();
    }
    m_now = end;
}

} // namespace navorin
