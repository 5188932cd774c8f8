#pragma once

#include "Models/APIModels.h"
#include "Models/Station.h"

#include <QString>

#include <optional>

namespace navorin {

enum class ShazamStatus { Listening, Processing, Failed, Recognised, Ready };

/// What the screen says first of all.
[[nodiscard]] ShazamStatus shazamStatus(bool isListening, bool isProcessing, bool hasFailed, bool hasTrack);
/// `errorMessage` is said as it stands.
[[nodiscard]] QString shazamStatusText(ShazamStatus status, const QString &errorMessage);

/// A recognised song as a station with one track, so that it plays like any other.
[[nodiscard]] Station stationFor(const ShazamData &data);

} // namespace navorin
