#pragma once

#include "Platform/Media/MediaExporter.h"

#include <QByteArray>

#include <optional>

namespace navorin {

/// What the sound of a range is read as: interleaved 16-bit stereo.
inline constexpr int audioRangeRate = 44100;
inline constexpr int audioRangeFrameBytes = 4;

struct AudioReading
{
    bool foundTrack = false; ///< the source was opened, and there is sound in it
    /// Empty if there is none in that range; absent if it could not be read to its end.
    std::optional<QByteArray> sound;
};

/// Decodes a stretch of a source into memory, ten megabytes a minute. Blocks; any thread that may.
[[nodiscard]] AudioReading readAudioRange(const AudioRange &range, const MediaExporter::Progress &progress,
                                          const std::stop_token &stop);

} // namespace navorin
