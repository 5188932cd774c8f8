#include "Services/Backend/CallBodies.h"

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 assumedSeconds = 180; // of a live station, or a track that does not tell

QString firstOf(const std::optional<QString> &first, const std::optional<QString> &second,
                const QString &fallback)
{
    return first ? *first : second.value_or(fallback);
}

} // namespace

QJsonObject playlistTrackBody(const Station &station)
{
    const auto *current = station.currentTrack();
    const auto track = current ? *current : PlaylistTrack();
    return {{u"track_type"_s, firstOf(track.trackType, station.source, u"radio"_s)},
            {u"track_id"_s, track.trackID.value_or(station.currentTrackID())},
            {u"title"_s, track.title.value_or(station.displayTrackTitle())},
            {u"artist"_s, track.artist.value_or(station.displayArtist())},
            {u"stream_url"_s, firstOf(track.streamURL, station.currentStreamURL(), {})},
            {u"artwork_url"_s, firstOf(track.artworkURL, station.currentTrackArtworkURL(), {})},
            {u"duration"_s, track.duration.value_or(0)}};
}

QJsonObject downloadTokenBody(const Station &station)
{
    const auto *track = station.currentTrack();
    const auto seconds = track ? track->duration.value_or(0) : 0;
    const auto artist = station.displayArtist();
    return {{u"track_type"_s, station.source.value_or(u"radio"_s)},
            {u"track_id"_s, station.genre},
            {u"title"_s, station.displayTrackTitle()},
            {u"artist"_s, artist.isEmpty() ? station.displayName() : artist},
            {u"stream_url"_s,
             firstOf(station.currentStreamURL(), station.streamURL, u"/stream/"_s + station.genre)},
            {u"artwork_url"_s,
             station.currentTrackArtworkURL().value_or(QString(u"/artwork/"_s + station.genre + u".jpg"_s))},
            {u"seconds"_s, seconds >= 1 ? seconds : assumedSeconds}};
}

QJsonObject favoriteBody(const Station &station)
{
    return {{u"track_type"_s, station.source.value_or(u"live"_s)},
            {u"track_id"_s, station.currentTrackID()},
            {u"title"_s, station.displayTrackTitle()},
            {u"artist"_s, station.displayArtist()},
            {u"stream_url"_s, station.currentStreamURL().value_or(QString())},
            {u"artwork_url"_s, station.artworkURL.value_or(QString())},
            {u"duration"_s, 0}};
}

} // namespace navorin
