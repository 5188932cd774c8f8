#pragma once

#include <QFuture>

#include <chrono>
#include <functional>
#include <memory>

namespace navorin {

/// The UI thread as a queue of work. Everything that waits, repeats or hops to the UI thread goes through
/// here, so that a test can put a manual clock in its place and never sleep.
///
/// `post` may be called from any thread; the other members from the UI thread only.
class MainQueue
{
public:
    using Work = std::function<void()>;

    /// Destroying a timer cancels it. It is safe to destroy a timer inside its own work.
    class Timer
    {
    public:
        virtual ~Timer() = default;
    };

    virtual ~MainQueue() = default;

    /// Runs `work` when the event loop turns again, never at once, also when called on the UI thread.
    virtual void post(Work work) = 0;

    /// Runs `work` once, after `delay`.
    [[nodiscard]] virtual std::unique_ptr<Timer> after(std::chrono::milliseconds delay, Work work) = 0;

    /// Runs `work` every `interval`, first after one interval.
    [[nodiscard]] virtual std::unique_ptr<Timer> every(std::chrono::milliseconds interval, Work work) = 0;

    /// Finishes after `delay`; made for `co_await` on the UI thread.
    [[nodiscard]] virtual QFuture<void> sleep(std::chrono::milliseconds delay) = 0;
};

} // namespace navorin
