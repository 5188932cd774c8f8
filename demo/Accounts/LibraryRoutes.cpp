#include "LibraryRoutes.h"

#include "AccountStore.h"
#include "Envelope.h"
#include "LibraryStore.h"
#include "Refusal.h"
#include "RequestBody.h"
#include "Routes.h"

#include <charconv>

namespace navorin::demo {

namespace {

constexpr std::size_t longestTitle = 200;
constexpr std::size_t longestDescription = 2000;
constexpr std::size_t longestTrackText = 500;
constexpr std::size_t longestAddress = 2000;
constexpr std::int64_t longestDuration = 1'000'000;

Json record(const Playlist &playlist)
{
    return {{"id", playlist.id},
            {"title", playlist.title},
            {"description", playlist.description},
            {"cover_url", textOrNull(playlist.coverUrl)},
            {"track_count", playlist.trackCount}};
}

Json records(const std::vector<SavedTrack> &tracks)
{
    Json list = Json::array();
    for (const SavedTrack &track : tracks) {
        list.push_back({{"id", track.id},
                        {"track_type", track.type},
                        {"track_id", track.trackId},
                        {"title", track.title},
                        {"artist", track.artist},
                        {"artwork_url", textOrNull(track.artworkUrl)},
                        {"stream_url", textOrNull(track.streamUrl)},
                        {"duration", track.duration > 0 ? Json(track.duration) : Json(nullptr)}});
    }
    return list;
}

SavedTrack readTrack(const RequestBody &body)
{
    return {0,
            body.filledText("track_type", longestTrackText),
            body.filledText("track_id", longestTrackText),
            body.filledText("title", longestTrackText),
            body.optionalText("artist", longestTrackText),
            body.optionalText("stream_url", longestAddress),
            body.optionalText("artwork_url", longestAddress),
            body.optionalCount("duration", longestDuration)};
}

/// What stands behind "/api/playlists/": "7", "7/tracks" or "7/tracks/12".
struct PlaylistPath
{
    std::int64_t playlist = 0;
    bool namesTracks = false;
    std::string track;

    static PlaylistPath parse(const std::string &rest)
    {
        constexpr std::string_view tracks = "/tracks";
        PlaylistPath path;
        const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), path.playlist);
        std::string_view tail(end, static_cast<std::size_t>(rest.data() + rest.size() - end));
        path.namesTracks = tail.starts_with(tracks);
        if (path.namesTracks)
            tail.remove_prefix(tracks.size());
        const bool namesOne = path.namesTracks && tail.starts_with('/');
        if (error != std::errc() || (!tail.empty() && !namesOne))
            throw Refusal(404, "پیدا نشد");
        path.track = tail.substr(namesOne ? 1 : 0);
        return path;
    }
};

Reply listPlaylists(LibraryStore &library, const User &user)
{
    Json list = Json::array();
    for (const Playlist &playlist : library.playlists(user.id))
        list.push_back(record(playlist));
    return envelope({{"playlists", list}, {"favorites_count", library.favorites(user.id).size()}});
}

Reply showPlaylist(LibraryStore &library, const User &user, const PlaylistPath &path)
{
    if (path.namesTracks)
        throw Refusal(405, "این روش مجاز نیست");
    const auto [playlist, tracks] = library.playlist(user.id, path.playlist);
    Json detail = record(playlist);
    detail["tracks"] = records(tracks);
    return envelope(detail);
}

Reply createPlaylist(LibraryStore &library, const User &user, const RequestBody &body)
{
    return envelope(record(library.createPlaylist(user.id, body.filledText("title", longestTitle),
                                                  body.optionalText("description", longestDescription))));
}

Reply addTrack(LibraryStore &library, const User &user, const PlaylistPath &path, const RequestBody &body)
{
    if (!path.namesTracks || !path.track.empty())
        throw Refusal(405, "این روش مجاز نیست");
    library.addTrack(user.id, path.playlist, readTrack(body));
    return envelopeOfMessage("آهنگ اضافه شد");
}

Reply edit(LibraryStore &library, const User &user, const PlaylistPath &path, const RequestBody &body)
{
    if (!path.namesTracks)
        library.editPlaylist(user.id, path.playlist, body.filledText("title", longestTitle),
                             body.optionalText("description", longestDescription));
    else
        library.editTrack(user.id, path.playlist, path.track, body.filledText("title", longestTrackText),
                          body.optionalText("artist", longestTrackText));
    return envelopeOfMessage("ذخیره شد");
}

Reply remove(LibraryStore &library, const User &user, const PlaylistPath &path)
{
    if (path.namesTracks)
        library.deleteTrack(user.id, path.playlist, path.track);
    else
        library.deletePlaylist(user.id, path.playlist);
    return envelopeOfMessage("حذف شد");
}

Reply toggleFavorite(LibraryStore &library, const User &user, const RequestBody &body)
{
    return envelope({{"favorited", library.toggleFavorite(user.id, readTrack(body))}});
}

/// Who asks is settled before anything else about the request.
using UserHandler = std::function<Reply(const User &, const httplib::Request &, const std::string &rest)>;
Routes::Handler forUser(AccountStore &accounts, UserHandler handler)
{
    return
        [&accounts, handler = std::move(handler)](const httplib::Request &request, const std::string &rest) {
            return handler(signedInUser(accounts, request), request, rest);
        };
}

} // namespace

void addLibraryRoutes(Routes &routes, AccountStore &accounts, LibraryStore &library)
{
    using Request = httplib::Request;
    const auto add = [&](const char *method, const char *path, UserHandler handler) {
        routes.add(method, path, forUser(accounts, std::move(handler)));
    };
    add("GET", "/api/playlists",
        [&library](const User &user, const auto &, const auto &) { return listPlaylists(library, user); });
    add("POST", "/api/playlists", [&library](const User &user, const Request &request, const auto &) {
        return createPlaylist(library, user, RequestBody(request.body));
    });
    add("GET", "/api/playlists/", [&library](const User &user, const auto &, const std::string &rest) {
        return showPlaylist(library, user, PlaylistPath::parse(rest));
    });
    add("POST", "/api/playlists/",
        [&library](const User &user, const Request &request, const std::string &rest) {
            return addTrack(library, user, PlaylistPath::parse(rest), RequestBody(request.body));
        });
    add("PUT", "/api/playlists/",
        [&library](const User &user, const Request &request, const std::string &rest) {
            return edit(library, user, PlaylistPath::parse(rest), RequestBody(request.body));
        });
    add("DELETE", "/api/playlists/", [&library](const User &user, const auto &, const std::string &rest) {
        return remove(library, user, PlaylistPath::parse(rest));
    });
    add("GET", "/api/favorites", [&library](const User &user, const auto &, const auto &) {
        return envelope(records(library.favorites(user.id)));
    });
    add("POST", "/api/favorites/toggle", [&library](const User &user, const Request &request, const auto &) {
        return toggleFavorite(library, user, RequestBody(request.body));
    });
}

} // namespace navorin::demo
