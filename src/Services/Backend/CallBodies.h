#pragma once

#include "Models/Station.h"

#include <QJsonObject>

/// What some calls send of a station: pure functions, for any thread.
namespace navorin {

/// To put what the station plays into a playlist: the current track's own fields, else the station's.
[[nodiscard]] QJsonObject playlistTrackBody(const Station &station);

/// To have what the station plays sent by the bot: of the station alone, with a length that it may not have.
[[nodiscard]] QJsonObject downloadTokenBody(const Station &station);

/// To make what the station plays a favourite, or none: of the station alone, and without a length.
[[nodiscard]] QJsonObject favoriteBody(const Station &station);

} // namespace navorin
