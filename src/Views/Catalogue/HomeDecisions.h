#pragma once

#include "Models/Station.h"

#include <QString>

namespace navorin {

/// The greeting under the wordmark, by the hour of the day (0 to 23).
[[nodiscard]] QString greeting(int hour);

/// What the badge of the home screen knows.
struct HomeStatus
{
    bool isBuffering = false;
    bool isPlaying = false;
    bool isLoading = false;
    qsizetype stationCount = 0;
};
[[nodiscard]] QString statusLabel(const HomeStatus &status);

/// What stands below the chips. An error never displaces stations that are already there.
enum class HomeContent { Error, Loading, Grid };
[[nodiscard]] HomeContent homeContent(bool hasError, bool isLoading, bool hasStations);

/// A tap on the card opens the station's screen; otherwise it is a plain live one, which plays at once.
[[nodiscard]] bool opensDetail(const Station &station);

} // namespace navorin
