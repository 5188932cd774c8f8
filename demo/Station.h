#pragma once

#include "MediaStore.h"

#include <string>
#include <string_view>
#include <vector>

namespace navorin::demo {

struct Song
{
    std::string_view title;
    std::string_view artist;
    int piece = 0; ///< the music behind it
};

enum class StationKind {
    Live,     ///< one endless stream
    List,     ///< a track list in the catalogue
    Deferred, ///< a track list that is fetched on demand
};

/// Whether the catalogue says which track is on.
enum class Rotation {
    None,
    Follows,    ///< always
    LeavesZero, ///< except while it is the first one, which needs no index
};

enum class Repertoire { Persian, Latin, Calm };

/// One station of the demo, in the terms of its content; Catalogue turns it into the wire's form.
struct Station
{
    std::string genre;
    std::string name;  ///< `server_name`
    std::string title; ///< of a list; a live one's is its programme
    std::string displayGenre;
    std::string category;
    StationKind kind = StationKind::Live;
    Codec codec = Codec::Mp3;
    FileFormat format = FileFormat::Mp3;
    Rotation rotation = Rotation::None;
    Repertoire repertoire = Repertoire::Persian;
    int songCount = 6;
    bool tracksHaveAddress = true; ///< otherwise the client builds it from the index
    bool numbersAsText = false;    ///< ids and durations as texts
    bool statesTrackCount = true;
    std::vector<Song> songs;
};

/// The built-in stations with their songs, padded with generated live ones to at least `stationCount`; the
/// station "archive" has `archiveTracks` songs.
[[nodiscard]] std::vector<Station> makeStations(int stationCount, int archiveTracks);

/// Where a ring of songs stands at a time of the server's clock.
struct RingPosition
{
    int index = 0;
    double elapsed = 0; ///< seconds into that song
};
[[nodiscard]] RingPosition ringPosition(const Station &station, double now);

} // namespace navorin::demo
