#include "Platform/Desktop/UiWatchdog.h"

#include "Platform/Desktop/DebugLine.h"

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

UiHold between(const UiBeat &before, const UiBeat &after)
{
    const auto milli = [](nanoseconds time) { return std::chrono::round<milliseconds>(time); };
    return {milli(after.time - before.time), milli(after.worked - before.worked),
            milli(after.queued - before.queued)};
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
    , m_schedule(::open("/proc/thread-self/schedstat", O_RDONLY | O_CLOEXEC))
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
    if (m_schedule >= 0)
        ::close(m_schedule);
}

void UiWatchdog::startAsEnvironmentSays(QObject &owner)
{
    if (const auto limit = qEnvironmentVariableIntValue("NAVORIN_WATCHDOG"); limit > 0)
        new UiWatchdog(milliseconds(limit), printDebugLine, &owner);
}

UiBeat UiWatchdog::look() const
{
    return {read(CLOCK_MONOTONIC), read(m_workClock), queuedOf(m_schedule)};
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
