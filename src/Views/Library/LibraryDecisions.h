#pragma once

#include "Models/APIModels.h"
#include "Models/Station.h"
#include "Views/Shared/RowListModel.h"

#include <QString>

#include <optional>

namespace navorin {

class RadioPlayer;

/// What stands in for a title that is absent or blank.
[[nodiscard]] QString playlistTitle(const std::optional<QString> &title);

/// A playlist as one of the library's cards, told apart by its identifier.
[[nodiscard]] ListRow playlistCard(const PlaylistSummary &playlist);
/// A playlist to put a track into.
[[nodiscard]] ListRow playlistChoice(const PlaylistSummary &playlist);
/// A playlist's track, told apart by its key.
[[nodiscard]] ListRow trackRow(const PlaylistTrack &track);
/// What a search found, told apart by its genre.
[[nodiscard]] ListRow stationRow(const Station &station);

/// "3:05"; empty for a length that nobody knows.
[[nodiscard]] QString durationText(const std::optional<qint64> &seconds);

/// What names a track in the address of a request; empty if nothing does.
[[nodiscard]] QString trackKey(const PlaylistTrack &track);

/// Whose name a list of the user's goes by; absent without a user.
[[nodiscard]] std::optional<QString> nameOf(const std::optional<User> &user);

/// The playlist as one thing to play, from the track at `index` on; absent without tracks. Its identity is
/// the playlist's, so that editing it leaves it the same station.
[[nodiscard]] std::optional<Station> playlistStation(const PlaylistDetail &detail,
                                                     const PlaylistSummary &summary,
                                                     const std::optional<User> &user, qint64 index);

/// What a link of Spotify leads to as one thing to play; absent without tracks.
[[nodiscard]] std::optional<Station> spotifyStation(const SpotifyEntity &entity);

/// Starts `station` when the event loop turns, and asks for the full player at once.
void playInFullPlayer(RadioPlayer &player, const Station &station);

} // namespace navorin
