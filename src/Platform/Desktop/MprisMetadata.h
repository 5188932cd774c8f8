#pragma once

#include "Platform/Desktop/NowPlayingCenter.h"

#include <QDBusObjectPath>
#include <QVariantMap>

namespace navorin {

/// What MPRIS calls the thing playing: the same for the same `identity`, and a path of its own where there is
/// none.
[[nodiscard]] QDBusObjectPath mprisTrackId(const QString &identity);

/// Absent where `seconds` is not finite, below 0 or more than microseconds can tell in 64 bits.
[[nodiscard]] std::optional<qlonglong> mprisMicroseconds(double seconds);

/// The length in microseconds; absent for what has none, as an endless stream.
[[nodiscard]] std::optional<qlonglong> mprisLength(const NowPlayingInfo &info);

/// The record with the types that D-Bus wants. `artUrl` may be empty.
[[nodiscard]] QVariantMap mprisMetadata(const NowPlayingInfo &info, const QString &artUrl);

[[nodiscard]] QString mprisPlaybackStatus(PlaybackState::Status status);

} // namespace navorin
