#include "Platform/Desktop/UiWatchdog.h"
#include "Support/Columns.h"

#include <QRegularExpression>
#include <QStringList>
#include <QTest>

#include <mutex>
#include <thread>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Time = std::chrono::milliseconds;

/// What a watchdog tells, which it does on a thread of its own.
class Told
{
public:
    void add(const QString &line)
    {
        const std::scoped_lock lock(m_mutex);
        m_lines.append(line);
    }
    [[nodiscard]] QStringList lines() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_lines;
    }

private:
    mutable std::mutex m_mutex;
    QStringList m_lines;
};

} // namespace

class tst_UiWatchdog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatCounts_data();
    void whatCounts();
    void tellsWhatBlocks();
};

void tst_UiWatchdog::whatCounts_data()
{
    addColumns<Time, Time, Time, Time, Time>("gap", "worked", "queued", "drawing", "waitedForFrame");
    const auto doesNotCount = -1ms;
    QTest::newRow("beats in time") << 20ms << 1ms << 0ms << 0ms << doesNotCount;
    QTest::newRow("at the limit") << 120ms << 0ms << 0ms << 0ms << doesNotCount;
    QTest::newRow("blocked") << 121ms << 0ms << 0ms << 0ms << 0ms;
    QTest::newRow("worked") << 121ms << 121ms << 0ms << 0ms << 0ms;
    QTest::newRow("no processor to be had") << 900ms << 60ms << 800ms << 0ms << doesNotCount;
    QTest::newRow("worked, on a busy machine") << 900ms << 300ms << 550ms << 0ms << 0ms;
    QTest::newRow("waited for a frame") << 900ms << 10ms << 10ms << 800ms << doesNotCount;
    QTest::newRow("blocked beyond the frame") << 900ms << 10ms << 10ms << 400ms << 400ms;
    QTest::newRow("worked, and so did not wait for a frame") << 900ms << 880ms << 0ms << 1600ms << 20ms;
}

void tst_UiWatchdog::whatCounts()
{
    QFETCH(Time, gap);
    QFETCH(Time, worked);
    QFETCH(Time, queued);
    QFETCH(Time, drawing);
    QFETCH(Time, waitedForFrame);
    const UiBeat before{5s, 2s, 1s, 3s};
    const UiBeat after{before.time + gap, before.worked + worked, before.queued + queued,
                       before.drawing + drawing};
    const auto hold = holdBetween(before, after, 100ms);
    QCOMPARE(hold.has_value(), waitedForFrame >= 0ms);
    if (hold) {
        QCOMPARE(hold->held, gap - uiPulse);
        QCOMPARE(hold->worked, worked);
        QCOMPARE(hold->queued, queued);
        QCOMPARE(hold->drawing, waitedForFrame);
    }
}

void tst_UiWatchdog::tellsWhatBlocks()
{
    Told told;
    const UiWatchdog watchdog(200ms, [&told](const QString &line) { told.add(line); });
    QTest::qWait(60);
    std::this_thread::sleep_for(100ms);
    QTest::qWait(60);
    QCOMPARE(told.lines(), QStringList());
    std::this_thread::sleep_for(300ms);
    QTRY_COMPARE(told.lines().size(), 1);
    const QRegularExpression form(
        u"^\\[Watchdog\\] UI thread held for (\\d+) ms \\(worked (\\d+) ms, waited \\d+ ms for a processor and 0 ms for a frame\\)$"_s);
    const auto match = form.match(told.lines().constFirst());
    QVERIFY2(match.hasMatch(), qPrintable(told.lines().constFirst()));
    QCOMPARE_GE(match.captured(1).toInt(), 280);
    QCOMPARE_LE(match.captured(2).toInt(), 50); // it slept
}

QTEST_GUILESS_MAIN(tst_UiWatchdog)
#include "tst_UiWatchdog.moc"
