#include "DemoUser.h"

#include "AccountStore.h"
#include "Catalogue.h"
#include "LibraryStore.h"
#include "Score.h"
#include "Station.h"

#include <utility>
#include <vector>

namespace navorin::demo {

namespace {

using Place = std::pair<const char *, std::size_t>; ///< a station and a track of it

const std::vector<Place> eveningTracks{{"kavir", 0},  {"kavir", 4},    {"yalda", 2},        {"sarvestan", 7},
                                       {"vinyl", 11}, {"kuhestan", 3}, {"songsara-1204", 5}};
const std::vector<Place> roadTracks{{"highway", 1}, {"lisboa", 3}, {"lofi", 6}, {"highway", 8}, {"tango", 2}};
const std::vector<Place> favorites{{"lisboa", 1}, {"santur", 4}, {"kavir", 3}};

/// As the client would have sent it from the track's own record.
SavedTrack listed(const Station &station, std::size_t index)
{
    const Song &song = station.songs.at(index);
    const std::string number = std::to_string(index);
    return {0,
            station.kind == StationKind::Deferred ? "songsara" : "radio",
            station.genre + "-" + number,
            std::string(song.title),
            std::string(song.artist),
            "/stream/" + station.genre + "?track=" + number,
            "/artwork/" + station.genre + "-" + number + ".jpg",
            pieceSeconds(song.piece)};
}

/// A favourite goes by the place in its station.
SavedTrack hearted(const Station &station, std::size_t index)
{
    SavedTrack track = listed(station, index);
    track.type = "playlist";
    track.trackId = station.genre + "#" + std::to_string(index);
    return track;
}

} // namespace

void addDemoUser(AccountStore &accounts, LibraryStore &library, const Catalogue &catalogue,
                 const std::string &username, const std::string &password)
{
    const auto made = accounts.ensureUser(username, password);
    if (!made)
        return;
    const auto fill = [&](const char *title, const char *description, const std::vector<Place> &places) {
        const Playlist playlist = library.createPlaylist(made->id, title, description);
        for (const auto &[genre, index] : places)
            library.addTrack(made->id, playlist.id, listed(*catalogue.find(genre), index));
    };
    fill("جاده و باران", "برای سفرهای دور", roadTracks);
    fill("شب‌های بی‌خوابی", "آرام، تا خود صبح", eveningTracks);
    for (const auto &[genre, index] : favorites)
        library.toggleFavorite(made->id, hearted(*catalogue.find(genre), index));
}

} // namespace navorin::demo
