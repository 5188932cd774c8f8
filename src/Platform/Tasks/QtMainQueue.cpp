#include "Platform/Tasks/QtMainQueue.h"

#include <QPromise>
#include <QTimer>

#include <atomic>
#include <utility>

namespace navorin {
namespace {

class QtTimer final : public MainQueue::Timer
{
public:
    QtTimer(std::chrono::milliseconds interval, bool once, MainQueue::Work work)
        : m_work(std::make_shared<MainQueue::Work>(std::move(work)))
    {
        m_timer.setSingleShot(once);
        // The copy keeps the work alive while it runs, should it destroy this timer.
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [work = m_work] {
            const auto running = work;
            (*running)();
        });
        m_timer.start(interval);
    }

private:
    std::shared_ptr<MainQueue::Work> m_work;
    QTimer m_timer;
};

} // namespace

void QtMainQueue::post(Work work)
{
    // Qt's event queue orders the two threads, but a race checker cannot see into it: the flag says the same
    // aloud.
    auto handedOver = std::make_shared<std::atomic_bool>(false);
    auto parcel = std::make_shared<Work>(std::move(work));
    handedOver->store(true, std::memory_order_release);
    QMetaObject::invokeMethod(
        &m_context,
        [handedOver, parcel] {
            if (handedOver->load(std::memory_order_acquire))
                (*parcel)();
        },
        Qt::QueuedConnection);
}

std::unique_ptr<MainQueue::Timer> QtMainQueue::after(std::chrono::milliseconds delay, Work work)
{
    return std::make_unique<QtTimer>(delay, true, std::move(work));
}

std::unique_ptr<MainQueue::Timer> QtMainQueue::every(std::chrono::milliseconds interval, Work work)
{
    return std::make_unique<QtTimer>(interval, false, std::move(work));
}

QFuture<void> QtMainQueue::sleep(std::chrono::milliseconds delay)
{
    auto promise = std::make_shared<QPromise<void>>();
    promise->start();
    QTimer::singleShot(delay, &m_context, [promise] { promise->finish(); });
    return promise->future();
}

} // namespace navorin
