#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace navorin {

/// A picture as it came, checked to be one; shared by all who show it and never changed.
struct EncodedPicture
{
    QByteArray bytes; ///< the file, undecoded
    QString format;   ///< its usual file extension, "jpeg" or "png"
    QSize size;       ///< pixels

    bool operator==(const EncodedPicture &) const = default;
};

/// What the desktop is told of the thing playing.
struct NowPlayingInfo
{
    QString title;
    std::optional<QString> artist;
    std::optional<QString> albumTitle;
    double playbackRate = 0;           ///< 1 while playing, else 0
    bool isLiveStream = false;         ///< an endless one; without duration and elapsed time
    std::optional<double> duration;    ///< seconds
    std::optional<double> elapsedTime; ///< seconds
    std::shared_ptr<const EncodedPicture> artwork;
    QString identity; ///< changes when the thing playing changes; empty when there is none
};

/// What media controls show and allow beside the record. It may change many times a second.
struct PlaybackState
{
    enum class Status { Stopped, Paused, Playing };

    Status status = Status::Stopped;
    double volume = 0;    ///< linear gain, 0 to 1
    bool canSeek = false; ///< a jump to a position would be carried out

    bool operator==(const PlaybackState &) const = default;
};

/// The desktop's media controls, as far as they show something. UI thread only; nothing waits for the
/// desktop, and without one to tell, all is accepted and nothing happens.
class NowPlayingCenter
{
public:
    virtual ~NowPlayingCenter() = default;

    virtual void setNowPlayingInfo(const NowPlayingInfo &info) = 0;
    virtual void setPlaybackState(const PlaybackState &state) = 0;
    /// Asked whenever the desktop wants to know the position, in seconds.
    virtual void setPositionSource(std::function<double()> position) = 0;
    /// The position is not where it would be had playback just gone on; `seconds` is the new one.
    virtual void announceJump(double seconds) = 0;
};

} // namespace navorin
