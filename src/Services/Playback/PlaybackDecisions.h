#pragma once

#include "Models/Station.h"
#include "Platform/Audio/MediaPlayer.h"
#include "Platform/Desktop/NowPlayingCenter.h"

#include <QColor>

#include <memory>
#include <optional>

/// What the player decides, apart from carrying it out. Pure functions.
namespace navorin {

/// The brand's colour, and what the theme colour is until an artwork gives another.
[[nodiscard]] QColor accentColor();

/// What one tick makes of the engine's status.
enum class TickOutcome {
    Nothing,
    UserPaused,      ///< the pause that the user asked for has arrived
    Buffering,       ///< no sound although it was asked for
    ArrivedAtPlaying ///< sound, which was not there before
};
[[nodiscard]] TickOutcome tickOutcome(MediaPlayer::TimeControlStatus status, bool isPlaying, bool isBuffering,
                                      bool wantsPlayback);

/// The position to publish, in seconds; absent for one that is never shown.
[[nodiscard]] std::optional<double> publishedPosition(double seconds);
/// The duration to publish, in seconds; 0 for an unknown or endless one.
[[nodiscard]] double publishedDuration(double seconds);
/// Where a seek to `seconds` lands: within the duration if that is known, and never below 0.
[[nodiscard]] double seekTarget(double seconds, double duration);

/// From one tick to the next the position has moved otherwise than by going on playing. Seconds.
[[nodiscard]] bool isJump(double before, double now);

/// The station is played at a track of the caller's choice, so the server must not move it.
[[nodiscard]] bool choosesItsTrack(const Station &station);

/// What a fresh catalogue means for the station that is playing.
enum class MetadataOutcome {
    Nothing,
    LiveUpdate,    ///< new text and artwork, the sound goes on
    ServerRotation ///< the server has moved to another track
};
[[nodiscard]] MetadataOutcome metadataOutcome(const Station &old, const Station &fresh,
                                              bool localTrackOverride);

/// The live station with its fresh text; the track list stays that of `current`.
[[nodiscard]] Station withFreshMetadata(Station fresh, const std::optional<Station> &current);

/// The station `delta` tracks further on its ring, carrying the text of the new track. Its track list must
/// not be empty. Fatal if the index is so far below zero that the step stays outside the list.
[[nodiscard]] Station shiftedTrack(Station station, qint64 delta);

/// Under which the artwork of what plays is kept.
[[nodiscard]] QString artworkKey(const Station &station);

struct PlaybackMoment
{
    bool isPlaying = false;
    bool isLive = true;
    double duration = 0;    ///< seconds, 0 while unknown
    double currentTime = 0; ///< seconds
};
/// The record that the desktop's media controls show.
[[nodiscard]] NowPlayingInfo nowPlayingInfo(const std::optional<Station> &station,
                                            const PlaybackMoment &moment,
                                            std::shared_ptr<const EncodedPicture> artwork);

} // namespace navorin
