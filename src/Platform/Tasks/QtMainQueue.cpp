#include "Platform/Tasks/QtMainQueue.h"

#include <QCoreApplication>
#include <QEvent>
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
            const auto running = work; // NOLINT(performance-unnecessary-copy-initialization)
            (*running)();
        });
        m_timer.start(interval);
    }

private:
    std::shared_ptr<MainQueue::Work> m_work;
    QTimer m_timer;
};

// Work on its way to the UI thread. The event has one owner at a time, so what the work holds is also
// destroyed on the UI thread; Qt's own functor calls leave that to whichever thread lets go last.
class WorkEvent final : public QEvent
{
public:
    static QEvent::Type workType()
    {
        static const auto type = QEvent::Type(QEvent::registerEventType());
        return type;
    }

    explicit WorkEvent(MainQueue::Work work)
        : QEvent(workType())
        , m_work(std::move(work))
    {
        m_packed.store(true, std::memory_order_release);
    }

    ~WorkEvent() override { unpack(); }

    void run()
    {
        if (unpack())
            m_work();
    }

private:
    // Qt's event queue orders the two threads, but a race checker cannot see into it: the flag says the same
    // aloud.
    bool unpack() { return m_packed.load(std::memory_order_acquire); }

    MainQueue::Work m_work;
    std::atomic_bool m_packed = false;
};

class Mailbox final : public QObject
{
public:
    bool event(QEvent *event) override
    {
        if (event->type() != WorkEvent::workType())
            return QObject::event(event);
        static_cast<WorkEvent *>(event)->run();
        return true;
    }
};

} // namespace

QtMainQueue::QtMainQueue()
    : m_mailbox(std::make_unique<Mailbox>())
{
}

void QtMainQueue::post(Work work)
{
    QCoreApplication::postEvent(m_mailbox.get(), new WorkEvent(std::move(work)));
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
    // Qt would else be up to a twentieth early or late, which is much of a recording.
    QTimer::singleShot(delay, Qt::PreciseTimer, m_mailbox.get(), [promise] { promise->finish(); });
    return promise->future();
}

} // namespace navorin
