#pragma once

#include "Platform/Audio/MediaPlayer.h"
#include "Platform/Tasks/MainQueue.h"

#include <QByteArray>

#include <chrono>
#include <functional>
#include <memory>

namespace navorin {

class GstMediaItem;
class ThreadGroup;

/// The audio engine over GStreamer. Everything that can block (opening, seeking, changing state, closing) is
/// done on a thread of the item; no member waits for it. Where the sound goes and what a computer without
/// sound output gets is told at makeAudioSink().
///
/// A connection that is silent for the network time-out, breaks, or answers with an error makes the item
/// fail, once what was received has been played; a clean end of the stream is the end of the item. Nothing is
/// retried. A sound server that dies makes the item fail.
class GstMediaPlayer final : public MediaPlayer
{
    Q_OBJECT
public:
    struct Options
    {
        QByteArray sink; ///< as on a gst-launch line; empty for the desktop's own
        std::chrono::seconds networkTimeout{15};

        /// The sink from NAVORIN_AUDIO_SINK.
        static Options fromEnvironment();
    };

    explicit GstMediaPlayer(MainQueue &queue, Options options = Options::fromEnvironment());
    /// Waits for the pipelines to close, but no longer than a few seconds.
    ~GstMediaPlayer() override;

    [[nodiscard]] std::shared_ptr<MediaItem> makeItem(const QUrl &url) override;
    [[nodiscard]] std::shared_ptr<MediaItem> currentItem() const override;
    /// `item` must come from makeItem() of this player.
    void replaceCurrentItem(std::shared_ptr<MediaItem> item) override;
    void play() override;
    void pause() override;
    void setVolume(float volume) override;
    void seek(double seconds) override;
    [[nodiscard]] TimeControlStatus timeControlStatus() const override { return m_status; }
    void setPeriodicTimeObserver(std::chrono::milliseconds interval,
                                 std::function<void(double)> observer) override;

Q_SIGNALS:
    /// The sound server asks for silence, as for a telephone call, or takes that back. Nothing is done about
    /// it here.
    void outputCorked(bool corked);

private:
    void update();
    void tick();
    void itemEnded();

    MainQueue &m_queue;
    Options m_options;
    std::shared_ptr<ThreadGroup> m_threads;
    std::shared_ptr<GstMediaItem> m_item;
    float m_volume = 1;
    bool m_playRequested = false;
    bool m_stoppedAtEnd = false; // play() must be asked for anew, after a seek
    TimeControlStatus m_status = TimeControlStatus::Paused;
    std::chrono::milliseconds m_interval{500};
    std::function<void(double)> m_observer;
    std::unique_ptr<MainQueue::Timer> m_ticker;
    std::shared_ptr<int> m_alive = std::make_shared<int>();
};

} // namespace navorin
