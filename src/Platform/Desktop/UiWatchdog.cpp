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

nanoseconds now(clockid_t clock)
{
    timespec time{};
    ::clock_gettime(clock, &time);
    return std::chrono::seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
}

int openSchedule(const QByteArray &path)
{
    return ::open(path.constData(), O_RDONLY | O_CLOEXEC);
}

struct Schedule
{
    nanoseconds worked{};
    nanoseconds queued{};
};

/// The first two figures of a schedstat file; 0 on a kernel that keeps no account.
Schedule read(int schedule)
{
    std::array<char, 96> text{};
    if (::pread(schedule, text.data(), text.size() - 1, 0) <= 0)
        return {};
    char *rest = nullptr;
    const auto worked = std::strtoull(text.data(), &rest, 10);
    return {nanoseconds(worked), nanoseconds(std::strtoull(rest, nullptr, 10))};
}

/// Those of Qt Quick and of Mesa's software rendering that run now.
std::vector<int> openDrawers()
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
    const auto drawing = std::clamp(after.drawing - before.drawing, nanoseconds(0), blocked);
    const auto milli = [](nanoseconds time) { return std::chrono::round<milliseconds>(time); };
    return {milli(held), milli(worked), milli(queued), milli(drawing)};
}

QString lineOf(const UiHold &hold, const QString &more = {})
{
    const auto text = [](milliseconds time) { return QString::number(time.count()); };
    return u"[Watchdog] UI thread held for %1 ms%2 (worked %3 ms, waited %4 ms for a processor and %5 ms for a frame)"_s
        .arg(text(hold.held), more, text(hold.worked), text(hold.queued), text(hold.drawing));
}

} // namespace

std::optional<UiHold> holdBetween(const UiBeat &before, const UiBeat &after, milliseconds limit)
{
    auto hold = between(before, after);
    hold.held -= uiPulse;
    if (hold.held - hold.queued - hold.drawing <= limit)
        return {};
    return hold;
}

UiWatchdog::UiWatchdog(milliseconds limit, Tell tell, QObject *parent)
    : QObject(parent)
    , m_limit(limit)
    , m_tell(std::move(tell))
    , m_schedule(openSchedule("/proc/thread-self/schedstat"))
    , m_drawers(openDrawers())
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
    std::ranges::for_each(m_drawers, ::close);
}

void UiWatchdog::startAsEnvironmentSays(QObject &owner)
{
    const auto limit = qEnvironmentVariableIntValue("NAVORIN_WATCHDOG");
    if (limit <= 0)
        return;
    new UiWatchdog(milliseconds(limit), printDebugLine, &owner);
    printDebugLine(u"[Watchdog] watches"_s);
}

UiBeat UiWatchdog::look() const
{
    nanoseconds drawing{};
    for (const auto drawer : m_drawers) {
        const auto account = read(drawer);
        drawing += account.worked + account.queued;
    }
    return {now(CLOCK_MONOTONIC), now(m_workClock), read(m_schedule).queued, drawing};
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
