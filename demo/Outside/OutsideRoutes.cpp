#include "OutsideRoutes.h"

#include "Accounts/AccountStore.h"
#include "Accounts/Envelope.h"
#include "Accounts/LibraryStore.h"
#include "Accounts/RequestBody.h"
#include "Catalogue.h"
#include "Outside/SpotifyLink.h"
#include "Routes.h"
#include "Score.h"

namespace navorin::demo {

namespace {

constexpr std::size_t mostHits = 25;
constexpr std::size_t longestTitle = 200;
constexpr std::size_t longestDescription = 2000;
constexpr std::size_t longestAddress = 2000;

std::string streamOf(const Found &found)
{
    return "/stream/" + found.station->genre + "?track=" + std::to_string(found.index);
}

std::string artworkOf(const Found &found)
{
    return "/artwork/" + found.station->genre + "-" + std::to_string(found.index) + ".jpg";
}

/// A hit is a station of its own that plays one song.
Json hit(const Found &found)
{
    return {{"genre", "soundcloud-" + found.station->genre + "-" + std::to_string(found.index)},
            {"server_name", "SoundCloud"},
            {"title", found.song().title},
            {"artist", found.song().artist},
            {"stream_url", streamOf(found)},
            {"artwork_url", artworkOf(found)},
            {"source", "soundcloud"}};
}

std::string trackIdOf(const SpotifyPage &page, std::size_t number)
{
    return page.id + "x" + std::to_string(number);
}

/// Every third song has no picture of its own.
Json spotifyTracks(const SpotifyPage &page)
{
    Json list = Json::array();
    for (std::size_t i = 0; i < page.songs.size(); ++i) {
        const Found &found = page.songs[i];
        list.push_back({{"id", trackIdOf(page, i)},
                        {"title", found.song().title},
                        {"artist", found.song().artist},
                        {"duration", pieceSeconds(found.song().piece)},
                        {"stream_url", streamOf(found)},
                        {"artwork_url", i % 3 == 2 ? Json(nullptr) : Json(artworkOf(found))}});
    }
    return list;
}

std::string coverOf(const SpotifyPage &page)
{
    return "/artwork/spotify-" + page.id + ".jpg";
}

/// An album uses the other names of its fields.
Json entity(const SpotifyPage &page)
{
    const bool isAlbum = page.kind == "album";
    return {{"id", page.id},
            {isAlbum ? "kind" : "type", page.kind},
            {"title", page.title},
            {"artist", textOrNull(page.artist)},
            {isAlbum ? "artwork_url" : "cover_url", coverOf(page)},
            {"track_count", page.songs.size()},
            {"tracks", spotifyTracks(page)}};
}

Reply importPage(const Catalogue &catalogue, LibraryStore &library, const User &user, const RequestBody &body)
{
    const SpotifyPage page = spotifyPage(catalogue, body.filledText("url", longestAddress));
    const Playlist made = library.createPlaylist(user.id, body.filledText("title", longestTitle),
                                                 body.optionalText("description", longestDescription));
    for (std::size_t i = 0; i < page.songs.size(); ++i) {
        const Found &found = page.songs[i];
        library.addTrack(user.id, made.id,
                         {0, "spotify", trackIdOf(page, i), std::string(found.song().title),
                          std::string(found.song().artist), streamOf(found),
                          i % 3 == 2 ? coverOf(page) : artworkOf(found), pieceSeconds(found.song().piece)});
    }
    return envelopeOfMessage(std::to_string(page.songs.size()) + " آهنگ ذخیره شد");
}

} // namespace

void addOutsideRoutes(Routes &routes, const Catalogue &catalogue, AccountStore &accounts,
                      LibraryStore &library)
{
    using Request = httplib::Request;
    routes.add("GET", "/api/soundcloud/search", [&catalogue](const Request &request, const auto &) {
        Json hits = Json::array();
        for (const Found &found : findSongs(catalogue, request.get_param_value("q"), mostHits))
            hits.push_back(hit(found));
        return envelope(hits);
    });
    routes.add("GET", "/api/spotify/resolve", [&catalogue](const Request &request, const auto &) {
        return envelope(entity(spotifyPage(catalogue, request.get_param_value("url"))));
    });
    routes.add("POST", "/api/spotify/import",
               [&catalogue, &accounts, &library](const Request &request, const auto &) {
                   const User user = signedInUser(accounts, request);
                   return importPage(catalogue, library, user, RequestBody(request.body));
               });
}

} // namespace navorin::demo
