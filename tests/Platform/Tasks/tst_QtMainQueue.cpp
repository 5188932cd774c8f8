#include "Platform/Tasks/QtMainQueue.h"

#include <QTest>

#include <thread>
#include <vector>

using namespace navorin;
using namespace std::chrono_literals;

class tst_QtMainQueue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void postsInOrderAndNeverAtOnce();
    void timersCancelled();
    void postsFromManyThreads();
    void dropsWorkWhenDestroyed();

private:
    QtMainQueue m_queue;
};

void tst_QtMainQueue::postsInOrderAndNeverAtOnce()
{
    QList<int> order;
    m_queue.post([&] {
        m_queue.post([&] { order << 3; });
        order << 1;
    });
    m_queue.post([&] { order << 2; });
    QVERIFY(order.isEmpty());
    QTRY_COMPARE(order, (QList{1, 2, 3}));
}

void tst_QtMainQueue::timersCancelled()
{
    std::unique_ptr<MainQueue::Timer> once;
    std::unique_ptr<MainQueue::Timer> repeating;
    const auto witness = std::make_shared<int>(7); // gone too early, the sanitizers would tell
    int fired = 0;
    int left = 3;
    once = m_queue.after(0ms, [&, witness] {
        once.reset();
        fired += *witness;
    });
    repeating = m_queue.every(2ms, [&, witness] {
        if (--left == 0)
            repeating.reset();
        fired += *witness;
    });
    bool late = false;
    m_queue.after(1ms, [&] { late = true; }).reset();
    QTRY_COMPARE(fired, 4 * 7);
    QVERIFY(!once && !repeating && !late);
    QCOMPARE(witness.use_count(), 1);
}

void tst_QtMainQueue::postsFromManyThreads()
{
    constexpr int perThread = 1000;
    std::array<QList<int>, 4> arrived;
    std::vector<std::thread> threads;
    for (auto &list : arrived) {
        threads.emplace_back([&] {
            for (int i = 0; i < perThread; ++i) {
                m_queue.post([&list, i, payload = std::make_unique<int>(i).release()] {
                    const std::unique_ptr<int> owned(payload);
                    if (QThread::currentThread() == qApp->thread() && *owned == i)
                        list << i;
                });
            }
        });
    }
    for (auto &thread : threads)
        thread.join();
    for (const auto &list : arrived) {
        QTRY_COMPARE(list.size(), perThread);
        QVERIFY(std::ranges::is_sorted(list));
    }
}

void tst_QtMainQueue::dropsWorkWhenDestroyed()
{
    bool ran = false;
    QFuture<void> sleep;
    {
        QtMainQueue queue;
        queue.post([&] { ran = true; });
        sleep = queue.sleep(0ms);
    }
    bool after = false;
    m_queue.post([&] { after = true; });
    QTRY_VERIFY(after);
    QVERIFY(!ran && sleep.isCanceled());
}

QTEST_GUILESS_MAIN(tst_QtMainQueue)
#include "tst_QtMainQueue.moc"
