#pragma once

#include "Outside/Search.h"

#include <string>

namespace navorin::demo {

class Catalogue;

/// What a link of Spotify leads to: songs of this server's own under a name that belongs to the link.
struct SpotifyPage
{
    std::string kind; ///< "playlist", "album" or "track"
    std::string id;
    std::string title;
    std::string artist; ///< empty on a playlist
    std::vector<Found> songs;
};

/// Takes "https://open.spotify.com/playlist/ID", the same without its scheme, and "spotify:playlist:ID".
/// Every ID leads somewhere, always to the same, but for "private" and "gone"; "empty" holds no song. Throws
/// a Refusal for these and for what is no such link.
[[nodiscard]] SpotifyPage spotifyPage(const Catalogue &catalogue, const std::string &link);

} // namespace navorin::demo
