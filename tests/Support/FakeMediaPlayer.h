#pragma once

#include "Platform/Audio/MediaPlayer.h"

#include <QPromise>
#include <QStringList>

#include <limits>
#include <stdexcept>
#include <vector>

namespace navorin {

/// An item that is and says what a test sets.
class FakeMediaItem final : public MediaItem
{
    Q_OBJECT
public:
    explicit FakeMediaItem(QUrl url)
        : url(std::move(url))
    {
        m_tracks.start();
    }

    [[nodiscard]] Status status() const override { return failure ? Status::Failed : Status::ReadyToPlay; }
    [[nodiscard]] std::optional<QString> error() const override { return failure; }
    [[nodiscard]] double duration() const override { return length; }
    [[nodiscard]] QFuture<QList<AudioTrack>> loadAudioTracks() override { return m_tracks.future(); }
    void setAudioTap(const AudioTrack &, std::shared_ptr<AudioTap> newTap) override
    {
        tap = std::move(newTap);
    }

    void finishTracks(const QList<AudioTrack> &tracks)
    {
        m_settled = true;
        m_tracks.addResult(tracks);
        m_tracks.finish();
    }
    void failTracks()
    {
        if (std::exchange(m_settled, true))
            return;
        m_tracks.setException(std::make_exception_ptr(std::runtime_error("no tracks")));
        m_tracks.finish();
    }

    QUrl url;
    std::optional<QString> failure;
    double length = std::numeric_limits<double>::quiet_NaN();
    std::shared_ptr<AudioTap> tap;

private:
    QPromise<QList<AudioTrack>> m_tracks;
    bool m_settled = false;
};

/// An engine that makes no sound: it notes what it was told, and a test moves its status and its clock.
class FakeMediaPlayer final : public MediaPlayer
{
    Q_OBJECT
public:
    [[nodiscard]] std::shared_ptr<MediaItem> makeItem(const QUrl &url) override
    {
        return made.emplace_back(std::make_shared<FakeMediaItem>(url));
    }
    [[nodiscard]] std::shared_ptr<MediaItem> currentItem() const override { return item; }
    void replaceCurrentItem(std::shared_ptr<MediaItem> newItem) override
    {
        item = std::static_pointer_cast<FakeMediaItem>(newItem);
        calls << QStringLiteral("replace ") + item->url.toString();
    }
    void play() override { calls << QStringLiteral("play"); }
    void pause() override { calls << QStringLiteral("pause"); }
    void setVolume(float volume) override { lastVolume = volume; }
    void seek(double seconds) override { calls << QStringLiteral("seek %1").arg(seconds); }
    [[nodiscard]] TimeControlStatus timeControlStatus() const override { return status; }
    void setPeriodicTimeObserver(std::chrono::milliseconds, std::function<void(double)> newObserver) override
    {
        observer = std::move(newObserver);
    }

    /// Ends whoever still waits for the tracks of an item.
    void failPendingTracks()
    {
        for (const auto &each : made)
            each->failTracks();
    }
    QStringList takeCalls() { return std::exchange(calls, {}); }

    std::shared_ptr<FakeMediaItem> item;
    std::vector<std::shared_ptr<FakeMediaItem>> made;
    TimeControlStatus status = TimeControlStatus::Paused;
    std::function<void(double)> observer;
    float lastVolume = -1;
    QStringList calls;
};

} // namespace navorin
