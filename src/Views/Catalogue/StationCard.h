#pragma once

#include "Models/Station.h"

namespace navorin {

/// What one card of the grid shows. Two equal cards look the same, which two equal stations need not.
struct StationCard
{
    QString genre; ///< the station's identity
    QString name;
    QString artworkAddress; ///< as the record has it; empty if it has none
    QString trackLine;      ///< the number of tracks; empty on a live station, which shows "زنده"
    bool operator==(const StationCard &) const = default;
};

[[nodiscard]] StationCard cardOf(const Station &station);

/// "۱۲ آهنگ" for a station with tracks whose count the server states; the number is that of the tracks at
/// hand. Empty otherwise.
[[nodiscard]] QString trackLine(const Station &station);

} // namespace navorin
