#pragma once

#include "Models/Station.h"

namespace navorin {

class RadioPlayer;

/// Plays `station` when the event loop turns again, so that the screen that asked is finished with its own
/// changes. Nothing if the player is gone by then.
void selectSoon(RadioPlayer &player, const Station &station);

/// `station` at the track `index`, wrapped around its list as every index is, and carrying that track's text;
/// as it is without tracks.
[[nodiscard]] Station stationAtTrack(Station station, qint64 index);

} // namespace navorin
