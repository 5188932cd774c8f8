#pragma once

#include "Platform/Audio/GstMediaPlayer.h"
#include "Platform/Tasks/QtMainQueue.h"

#include <QSignalSpy>

#include <atomic>
#include <memory>

namespace navorin {

/// What a tap was told. A test reads it while the sound runs.
struct TapLog
{
    std::atomic_int prepared = 0;
    std::atomic_int unprepared = 0;
    std::atomic_int finalized = 0;
    std::atomic_int starts = 0;
    std::atomic<qint64> frames = 0;
    std::atomic<double> sampleRate = 0;
    std::atomic<quint32> channels = 0;
    std::atomic<quint32> flags = 0;
    std::atomic<double> loudest = 0;
    std::atomic_bool unpreparedSound = false; // sound without a format
    std::atomic<float> gain = 1;
    std::atomic_bool deaf = false;
};

/// A tap that writes into `log`, which must outlive it, and multiplies what it sees by the gain given there.
std::shared_ptr<AudioTap> makeTap(TapLog &log);

/// The real queue, which knows whether anything is ticking or was posted.
class CountingQueue final : public MainQueue
{
public:
    void post(Work work) override
    {
        m_queue.post(std::move(work));
        ++posted;
    }
    std::unique_ptr<Timer> after(std::chrono::milliseconds delay, Work work) override
    {
        return m_queue.after(delay, std::move(work));
    }
    std::unique_ptr<Timer> every(std::chrono::milliseconds interval, Work work) override
    {
        struct Counted final : Timer
        {
            Counted(int &count, std::unique_ptr<Timer> timer)
                : count(count)
                , timer(std::move(timer))
            {
                ++count;
            }
            ~Counted() override { --count; }
            int &count;
            std::unique_ptr<Timer> timer;
        };
        return std::make_unique<Counted>(tickers, m_queue.every(interval, std::move(work)));
    }
    QFuture<void> sleep(std::chrono::milliseconds delay) override { return m_queue.sleep(delay); }

    int tickers = 0;
    std::atomic_int posted = 0;

private:
    QtMainQueue m_queue;
};

/// A player whose statuses are written down, in order and without repetitions.
struct Rig
{
    using Status = MediaPlayer::TimeControlStatus;

    explicit Rig(const QByteArray &sink = "fakesink sync=true",
                 std::chrono::seconds timeout = std::chrono::seconds(15))
        : player(queue, {sink, timeout})
    {
        player.setPeriodicTimeObserver(std::chrono::milliseconds(50), [this](double seconds) {
            positions << seconds;
            if (statuses.isEmpty() || statuses.last() != player.timeControlStatus())
                statuses << player.timeControlStatus();
        });
    }
    std::shared_ptr<MediaItem> start(const QUrl &url)
    {
        auto item = player.makeItem(url);
        player.replaceCurrentItem(item);
        player.play();
        return item;
    }
    bool is(Status status) const { return player.timeControlStatus() == status; }

    CountingQueue queue;
    GstMediaPlayer player;
    QSignalSpy ended{&player, &MediaPlayer::itemDidPlayToEnd};
    QList<Status> statuses;
    QList<double> positions;
};

} // namespace navorin
