#pragma once

#include "Platform/Audio/MediaPlayer.h"
#include "Platform/Tasks/MainQueue.h"

#include <QByteArray>
#include <QPromise>

#include <chrono>
#include <memory>
#include <optional>

namespace navorin {

class AudioTapHost;
class GstItemPipeline;
class ThreadGroup;

/// What GstMediaPlayer plays. Its pipeline exists while it is the current item.
class GstMediaItem final : public MediaItem
{
    Q_OBJECT
public:
    struct Surroundings
    {
        MainQueue &queue;
        std::shared_ptr<ThreadGroup> threads;
        QByteArray sink;
        std::chrono::seconds networkTimeout;
    };

    GstMediaItem(const Surroundings &surroundings, const QUrl &url);
    ~GstMediaItem() override;

    [[nodiscard]] Status status() const override { return m_status; }
    [[nodiscard]] std::optional<QString> error() const override { return m_error; }
    [[nodiscard]] double duration() const override { return m_duration; }
    [[nodiscard]] QFuture<QList<AudioTrack>> loadAudioTracks() override;
    void setAudioTap(const AudioTrack &track, std::shared_ptr<AudioTap> tap) override;

    // For the player.
    void open(float volume);
    void close();
    void setPlaying(bool playing);
    void setVolume(float volume);
    void seek(double seconds);
    [[nodiscard]] double position() const;
    [[nodiscard]] bool isSounding() const { return m_sounding; }
    /// True from the end of the item until a seek.
    [[nodiscard]] bool isAtEnd() const { return m_atEnd; }

Q_SIGNALS:
    void soundingChanged();
    void playedToEnd();
    void corked(bool corked);

private:
    struct Handler;

    void failTracks(const QString &error);

    Surroundings m_surroundings;
    QUrl m_url;
    Status m_status = Status::Unknown;
    std::optional<QString> m_error;
    double m_duration;
    bool m_sounding = false;
    bool m_atEnd = false;
    bool m_tracksSettled = false;
    quint64 m_lastSeek = 0;
    std::optional<double> m_seekTarget;
    QPromise<QList<AudioTrack>> m_tracks;
    std::shared_ptr<AudioTapHost> m_tap;
    std::shared_ptr<GstItemPipeline> m_pipeline;
    std::shared_ptr<int> m_session; // events of an earlier pipeline hold an expired one
};

} // namespace navorin
