#include "Platform/Desktop/UiWatchdog.h"

#include "Platform/Desktop/DebugLine.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>
#include <utility>

namespace navorin {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;

namespace {

constexpr milliseconds unending = 5s;

nanoseconds read(clockid_t clock)
{
    timespec time{};
    ::clock_gettime(clock, &time);
    return std::chrono::seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
}

int openSchedule(const QByteArray &path)
{
    return ::open(path.constData(), O_RDONLY | O_CLOEXEC);
}

/// The second figure of a schedstat file; 0 on a kernel that keeps no account.
nanoseconds queuedOf(int schedule)
{
    std::array<char, 96> text{};
    if (::pread(schedule, text.data(), text.size() - 1, 0) <= 0)
        return {};
    char *rest = nullptr;
    std::strtoull(text.data(), &rest, 10);
    return nanoseconds(std::strtoull(rest, nullptr, 10));
}

/// Those of Qt Quick and of Mesa's software rendering that run now.
std::vector<int> schedulesOfDrawers()
{
    std::vector<int> schedules;
    for (const auto &task : QDir(u"/proc/self/task"_s).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile name(task.filePath() + u"/comm"_s);
        if (!name.open(QFile::ReadOnly))
            continue;
        const auto text = name.readAll();
        if (text.startsWith("QSGRenderThread") || text.startsWith("llvmpipe"))
            schedules.push_back(openSchedule(QFile::encodeName(task.filePath() + u"/schedstat"_s)));
    }
    return schedules;
}

UiHold between(const UiBeat &before, const UiBeat &after)
{
    const auto held = after.time - before.time;
    const auto worked = after.worked - before.worked;
    const auto queued = after.queued - before.queued;
    const auto blocked = std::max(held - worked - queued, nanoseconds(0));
    const auto drawersQueued =
        std::clamp(after.drawersQueued - before.drawersQueued, nanoseconds(0), blocked);
    const auto milli = [](nanoseconds time) { return std::chrono::round<milliseconds>(time); };
    return {milli(held), milli(worked), milli(queued + drawersQueued)};
}

QString lineOf(const UiHold &hold, const QString &more = {})
{
    return u"[Watchdog] UI thread held for %1 ms%2 (worked %3 ms, waited %4 ms for a processor)"_s.arg(
        QString::number(hold.held.count()), more, QString::number(hold.worked.count()),
        QString::number(hold.queued.count()));
}

} // namespace

std::optional<UiHold> holdBetween(const UiBeat &before, const UiBeat &after, milliseconds limit)
{
    auto hold = between(before, after);
    hold.held -= uiPulse;
    if (hold.held - hold.queued <= limit)
        return {};
    return hold;
}

UiWatchdog::UiWatchdog(milliseconds limit, Tell tell, QObject *parent)
    : QObject(parent)
    , m_limit(limit)
    , m_tell(std::move(tell))
    , m_schedule(openSchedule("/proc/thread-self/schedstat"))
    , m_drawerSchedules(schedulesOfDrawers())
{
    ::pthread_getcpuclockid(::pthread_self(), &m_workClock);
    m_pulse.setTimerType(Qt::PreciseTimer);
    connect(&m_pulse, &QTimer::timeout, this, &UiWatchdog::beat);
    m_lastBeat = look();
    m_pulse.start(uiPulse);
    m_watcher = std::thread([this] { watch(); });
}

UiWatchdog::~UiWatchdog()
{
    {
        const std::scoped_lock lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_all();
    m_watcher.join();
    ::close(m_schedule);
    std::ranges::for_each(m_drawerSchedules, ::close);
}

void UiWatchdog::startAsEnvironmentSays(QObject &owner)
{
    if (const auto limit = qEnvironmentVariableIntValue("NAVORIN_WATCHDOG"); limit > 0)
        new UiWatchdog(milliseconds(limit), printDebugLine, &owner);
}

UiBeat UiWatchdog::look() const
{
    nanoseconds drawersQueued{};
    for (const auto schedule : m_drawerSchedules)
        drawersQueued += queuedOf(schedule);
    return {read(CLOCK_MONOTONIC), read(m_workClock), queuedOf(m_schedule), drawersQueued};
}

/// Measured here and not by the watcher, which on a busy machine sleeps through a hold itself.
void UiWatchdog::beat()
{
    const auto now = look();
    const std::scoped_lock lock(m_mutex);
    const auto hold = holdBetween(std::exchange(m_lastBeat, now), now, m_limit);
    m_isToldUnending = false;
    if (!hold)
        return;
    m_holds.push_back(*hold);
    m_changed.notify_all();
}

void UiWatchdog::watch()
{
    std::unique_lock lock(m_mutex);
    while (!m_ending) {
        m_changed.wait_for(lock, 500ms, [this] { return m_ending || !m_holds.empty(); });
        const auto holds = std::exchange(m_holds, {});
        const auto lasting = unendingHold();
        lock.unlock();
        for (const auto &hold : holds)
            m_tell(lineOf(hold));
        if (lasting)
            m_tell(lineOf(*lasting, u" and still is"_s));
        lock.lock();
    }
}

/// Once for each hold.
std::optional<UiHold> UiWatchdog::unendingHold()
{
    const auto hold = m_isToldUnending ? std::nullopt : holdBetween(m_lastBeat, look(), unending);
    m_isToldUnending = m_isToldUnending || hold;
    return hold;
}

} // namespace navorin
