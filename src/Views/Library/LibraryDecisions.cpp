#include "Views/Library/LibraryDecisions.h"

#include "Models/Text.h"
#include "Platform/Tasks/Detached.h"
#include "Services/Playback/RadioPlayer.h"
#include "Views/Shared/ShownText.h"

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

const QString playlistWord = u"پلیلیست"_s;

QString shownOr(const std::optional<QString> &text, const QString &fallback)
{
    return text && !trimmedBlanks(*text).isEmpty() ? shownText(*text) : fallback;
}

PlaylistTrack asTrack(const SpotifyTrack &track, const std::optional<QString> &cover)
{
    return {{},
            u"spotify"_s,
            track.id,
            track.title,
            track.artist,
            track.artworkURL ? track.artworkURL : cover,
            track.streamURL,
            track.duration};
}

} // namespace

QString playlistTitle(const std::optional<QString> &title)
{
    return shownOr(title, playlistWord);
}

ListRow playlistCard(const PlaylistSummary &playlist)
{
    return {QString::number(playlist.id),
            playlistTitle(playlist.title),
            playlist.trackCount ? QString(QString::number(*playlist.trackCount) + u" آهنگ"_s) : QString(),
            playlist.coverURL.value_or(QString()),
            {}};
}

ListRow playlistChoice(const PlaylistSummary &playlist)
{
    auto row = playlistCard(playlist);
    row.line =
        playlist.trackCount ? playlistWord + u" · "_s + QString::number(*playlist.trackCount) : playlistWord;
    return row;
}

ListRow trackRow(const PlaylistTrack &track)
{
    return {trackKey(track), shownOr(track.title, u"—"_s), shownText(track.artist.value_or(QString())),
            track.artworkURL.value_or(QString()), durationText(track.duration)};
}

ListRow stationRow(const Station &station)
{
    return {station.genre,
            shownOr(station.displayTrackTitle(), u"—"_s),
            shownText(station.displayArtist()),
            station.artworkURL.value_or(QString()),
            {}};
}

QString durationText(const std::optional<qint64> &seconds)
{
    if (seconds.value_or(0) < 1)
        return {};
    return u"%1:%2"_s.arg(*seconds / 60).arg(*seconds % 60, 2, 10, QLatin1Char('0'));
}

QString trackKey(const PlaylistTrack &track)
{
    return track.id ? QString::number(*track.id) : track.trackID.value_or(QString());
}

std::optional<QString> nameOf(const std::optional<User> &user)
{
    if (!user)
        return {};
    return user->displayName ? user->displayName : user->username;
}

std::optional<Station> playlistStation(const PlaylistDetail &detail, const PlaylistSummary &summary,
                                       const std::optional<User> &user, qint64 index)
{
    if (!detail.tracks || detail.tracks->isEmpty())
        return {};
    Station station;
    station.genre = u"custom-p-"_s + QString::number(detail.id.value_or(summary.id));
    station.title = detail.title ? detail.title : summary.title;
    station.artist = nameOf(user);
    station.serverName = station.title;
    station.artworkURL = detail.coverURL ? detail.coverURL : summary.coverURL;
    station.source = u"custom"_s;
    station.category = u"playlists"_s;
    station.trackIndex = index;
    station.trackCount = detail.tracks->size();
    station.tracks = detail.tracks;
    return station;
}

std::optional<Station> spotifyStation(const SpotifyEntity &entity)
{
    if (!entity.tracks || entity.tracks->isEmpty())
        return {};
    Station station;
    station.genre = u"spotify-e-"_s + entity.id.value_or(u"x"_s);
    station.title = entity.title;
    station.artist = entity.artist;
    station.serverName = entity.title;
    station.artworkURL = entity.coverURL;
    station.source = u"spotify"_s;
    station.category = u"spotify"_s;
    station.trackIndex = 0;
    station.trackCount = entity.tracks->size();
    station.tracks.emplace();
    station.tracks->reserve(entity.tracks->size());
    for (const auto &track : *entity.tracks)
        station.tracks->append(asTrack(track, entity.coverURL));
    return station;
}

void playInFullPlayer(RadioPlayer &player, const Station &station)
{
    QMetaObject::invokeMethod(
        &player, [&player, station] { detach(player.selectStation(station), "selecting a station"); },
        Qt::QueuedConnection);
    player.setFullPlayerPresented(true);
}

} // namespace navorin
