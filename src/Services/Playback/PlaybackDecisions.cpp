#include "Services/Playback/PlaybackDecisions.h"

#include <cmath>
#include <utility>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

QColor accentColor()
{
    return QColor::fromRgbF(0.39F, 0.40F, 0.95F);
}

TickOutcome tickOutcome(MediaPlayer::TimeControlStatus status, bool isPlaying, bool isBuffering,
                        bool wantsPlayback)
{
    switch (status) {
    case MediaPlayer::TimeControlStatus::Paused:
        return isPlaying && !wantsPlayback ? TickOutcome::UserPaused : TickOutcome::Nothing;
    case MediaPlayer::TimeControlStatus::WaitingToPlay:
        return isPlaying || wantsPlayback ? TickOutcome::Buffering : TickOutcome::Nothing;
    case MediaPlayer::TimeControlStatus::Playing:
        return isPlaying && !isBuffering ? TickOutcome::Nothing : TickOutcome::ArrivedAtPlaying;
    }
    return TickOutcome::Nothing;
}

std::optional<double> publishedPosition(double seconds)
{
    return std::isfinite(seconds) && seconds > 0 ? std::optional(seconds) : std::nullopt;
}

double publishedDuration(double seconds)
{
    return std::isfinite(seconds) && seconds > 0 ? seconds : 0;
}

double seekTarget(double seconds, double duration)
{
    const auto bound = duration > 0 ? duration : seconds;
    const auto target = bound < seconds ? bound : seconds; // NaN stays, and ends at 0
    return target >= 0 ? target : 0;
}

bool isJump(double before, double now)
{
    constexpr double longestStep = 2; // a tick comes every half second, or somewhat later
    return now < before || now > before + longestStep;
}

bool choosesItsTrack(const Station &station)
{
    return station.hasTracks() && station.trackIndex.has_value();
}

MetadataOutcome metadataOutcome(const Station &old, const Station &fresh, bool localTrackOverride)
{
    if (old.hasTracks()) {
        const auto serverMoved = fresh.hasTracks() && fresh.trackIndex != old.trackIndex;
        return serverMoved && !localTrackOverride ? MetadataOutcome::ServerRotation
                                                  : MetadataOutcome::Nothing;
    }
    const auto changed =
        old.title != fresh.title || old.artist != fresh.artist || old.artworkURL != fresh.artworkURL;
    return changed ? MetadataOutcome::LiveUpdate : MetadataOutcome::Nothing;
}

Station withFreshMetadata(Station fresh, const std::optional<Station> &current)
{
    fresh.tracks = current ? current->tracks : std::nullopt;
    fresh.trackIndex = current ? current->trackIndex : std::nullopt;
    return fresh;
}

Station shiftedTrack(Station station, qint64 delta)
{
    const auto count = qint64(station.tracks->size());
    const auto next = (station.trackIndex.value_or(0) + delta + count) % count;
    if (next < 0)
        qFatal("the server's track index lies too far below zero");
    const auto track = station.tracks->at(next);
    station.trackIndex = next;
    station.title = track.title;
    station.artist = track.artist;
    if (track.artworkURL)
        station.artworkURL = track.artworkURL;
    station.elapsedSeconds.reset();
    return station;
}

QString artworkKey(const Station &station)
{
    return station.currentTrackArtworkURL().value_or(station.genre);
}

NowPlayingInfo nowPlayingInfo(const std::optional<Station> &station, const PlaybackMoment &moment,
                              std::shared_ptr<const EncodedPicture> artwork)
{
    NowPlayingInfo info;
    info.title = station ? station->displayTrackTitle() : u"ناورین رادیو"_s;
    info.playbackRate = moment.isPlaying ? 1.0 : 0.0;
    info.isLiveStream = moment.isLive;
    if (!moment.isLive && moment.duration > 0) {
        info.duration = moment.duration;
        info.elapsedTime = moment.currentTime;
    }
    if (!station)
        return info;
    const auto artist = station->displayArtist();
    info.artist = artist.isEmpty() ? station->displayName() : artist;
    info.albumTitle = station->displayName();
    info.artwork = std::move(artwork);
    info.identity = station->currentTrackID();
    return info;
}

} // namespace navorin
