#pragma once

#include "LaunchOptions.h"
#include "Models/Station.h"

#include <QCoro/QCoroTask>

namespace navorin {

class MainQueue;
class OfflineStore;
class RadioPlayer;
class StationStore;

/// Plays the station "persian" once the catalogue is there, waiting for it up to 20 seconds. Nothing happens
/// if a station is current already, or if there is no such station.
[[nodiscard]] QCoro::Task<void> playPersianStation(MainQueue &queue, StationStore &store,
                                                   RadioPlayer &player);

/// Plays a station of one track that the demo backend has. Nothing happens if a station is current already.
[[nodiscard]] QCoro::Task<void> playTestStation(RadioPlayer &player, bool opensFullPlayer);

/// A station of three tracks that the demo backend has.
[[nodiscard]] Station detailTestStation();

/// Downloads what is current after two seconds, if it is a track.
[[nodiscard]] QCoro::Task<void> downloadCurrentTrack(MainQueue &queue, RadioPlayer &player,
                                                     OfflineStore &offline);

/// Carries out the developer flags, as the radio screen appears.
void applyDeveloperFlags(const LaunchOptions &options, MainQueue &queue, StationStore &store,
                         RadioPlayer &player, OfflineStore &offline);

} // namespace navorin
