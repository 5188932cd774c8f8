#pragma once

#include "Platform/Audio/AudioTap.h"

#include <QFuture>
#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace navorin {

struct AudioTrack
{
    qint32 trackId = 0;
};

/// One thing to be played, from the address to its decoded sound. It owns its pipeline: when the item goes,
/// every late message of it goes too. UI thread only.
class MediaItem : public QObject
{
    Q_OBJECT
public:
    enum class Status { Unknown, ReadyToPlay, Failed };

    ~MediaItem() override;

    [[nodiscard]] virtual Status status() const = 0;
    /// What went wrong, in the platform's words; present once the status is Failed.
    [[nodiscard]] virtual std::optional<QString> error() const = 0;
    /// Length in seconds; NaN while unknown and for an endless stream.
    [[nodiscard]] virtual double duration() const = 0;
    /// The audio tracks, once they are known; empty for a medium without sound. Fails with std::runtime_error
    /// if the item fails, is replaced or goes first. Loading starts by itself when the item becomes current.
    [[nodiscard]] virtual QFuture<QList<AudioTrack>> loadAudioTracks() = 0;
    /// Puts `tap` into the path of the decoded sound, from the next buffer on.
    virtual void setAudioTap(const AudioTrack &track, std::shared_ptr<AudioTap> tap) = 0;
};

/// The one audio engine. UI thread only; signals arrive on the UI thread.
class MediaPlayer : public QObject
{
    Q_OBJECT
public:
    enum class TimeControlStatus { Paused = 0, WaitingToPlay = 1, Playing = 2 };

    ~MediaPlayer() override;

    /// An item for `url` (http, https or file). Nothing is opened before the item becomes current.
    [[nodiscard]] virtual std::shared_ptr<MediaItem> makeItem(const QUrl &url) = 0;

    [[nodiscard]] virtual std::shared_ptr<MediaItem> currentItem() const = 0;
    /// Stops the old item at once. The new one starts at its beginning, and plays if play() was the last
    /// request.
    virtual void replaceCurrentItem(std::shared_ptr<MediaItem> item) = 0;

    virtual void play() = 0;
    virtual void pause() = 0;
    /// Linear gain, 0 to 1, kept across items.
    virtual void setVolume(float volume) = 0;
    /// Absolute position in seconds. On an item that cannot seek nothing happens.
    virtual void seek(double seconds) = 0;

    /// Paused: nothing was asked to play, or the item came to its end. WaitingToPlay: play was asked for and
    /// no sound comes (connecting, an underrun, or a failed item, which stays so until it is replaced).
    /// Playing: sound.
    [[nodiscard]] virtual TimeControlStatus timeControlStatus() const = 0;

    /// Calls `observer` with the current position in seconds (NaN while unknown) every `interval` while an
    /// item is current and the status is not Paused, and once soon after every change of status. There is one
    /// observer.
    virtual void setPeriodicTimeObserver(std::chrono::milliseconds interval,
                                         std::function<void(double seconds)> observer) = 0;

Q_SIGNALS:
    /// The current item was played to its end.
    void itemDidPlayToEnd(navorin::MediaItem *item);
};

} // namespace navorin
