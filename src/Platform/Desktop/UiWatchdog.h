#pragma once

#include <QString>
#include <QTimer>

#include <chrono>
#include <condition_variable>
#include <ctime>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace navorin {

/// The UI thread's clocks at one heartbeat.
struct UiBeat
{
    std::chrono::nanoseconds time{};    ///< since some fixed moment
    std::chrono::nanoseconds worked{};  ///< on a processor so far
    std::chrono::nanoseconds queued{};  ///< able to run so far, but without a processor
    std::chrono::nanoseconds drawing{}; ///< worked or queued by the threads that draw its frames, together
};

/// A time in which the UI thread did not come to its events.
struct UiHold
{
    std::chrono::milliseconds held{};
    std::chrono::milliseconds worked{};
    std::chrono::milliseconds queued{};
    std::chrono::milliseconds drawing{}; ///< while the thread was blocked
};

/// How often the heart beats.
inline constexpr std::chrono::milliseconds uiPulse{20};

/// The hold between two beats, if it was longer than the limit also without the time in which only the
/// machine had no processor to give, and without that in which the thread was blocked while the frame before
/// was drawn: without a graphics card that is long, and is no fault of what the thread does. So a frame that
/// is slow to draw is not seen here; what works on the thread or blocks it in a call is.
[[nodiscard]] std::optional<UiHold> holdBetween(const UiBeat &before, const UiBeat &after,
                                                std::chrono::milliseconds limit);

/// Watches over the thread that makes it, which must have an event loop, and tells each time that thread was
/// held for longer than a limit; a hold of five seconds is told while it lasts, for it may have no end. For
/// test builds: it wakes the thread fifty times a second.
class UiWatchdog final : public QObject
{
    Q_OBJECT
public:
    using Tell = std::function<void(const QString &line)>; ///< called on a thread of the watchdog's own

    UiWatchdog(std::chrono::milliseconds limit, Tell tell, QObject *parent = nullptr);
    ~UiWatchdog() override;
    Q_DISABLE_COPY_MOVE(UiWatchdog)

    /// Watches while the owner lives and tells on standard output, if NAVORIN_WATCHDOG names a limit in
    /// milliseconds.
    static void startAsEnvironmentSays(QObject &owner);

private:
    [[nodiscard]] UiBeat look() const;
    void beat();
    void watch();
    [[nodiscard]] std::optional<UiHold> unendingHold();

    const std::chrono::milliseconds m_limit;
    const Tell m_tell;
    clockid_t m_workClock{};
    // Accounts with the kernel's scheduler.
    int m_schedule = -1;
    std::vector<int> m_drawers;
    QTimer m_pulse;

    std::mutex m_mutex; ///< guards all below
    std::condition_variable m_changed;
    UiBeat m_lastBeat;
    std::vector<UiHold> m_holds; ///< not told yet
    bool m_isToldUnending = false;
    bool m_ending = false;
    std::thread m_watcher;
};

} // namespace navorin
