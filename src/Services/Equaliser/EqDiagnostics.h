#pragma once

#include "Platform/Audio/AudioTap.h"
#include "Services/Equaliser/EqBands.h"

#include <optional>
#include <span>
#include <string>

/// The lines that a tap leaves on standard output. Their numbers look the same in every locale.
namespace navorin::EqTap {

/// The root of the mean square in single precision; 0 without samples.
[[nodiscard]] float rootMeanSquare(std::span<const float> samples);

[[nodiscard]] std::string createFailedLine(int status);
[[nodiscard]] std::string prepareLine(const AudioStreamDescription &format);

/// What a buffer list looked like when it was filtered. The loudness is that of the first buffer.
struct ProcessReport
{
    qint64 number = 0; ///< counting the lists that were filtered
    std::size_t buffers = 0;
    AudioBuffer first;
    float loudnessBefore = 0;
    std::optional<float> loudnessAfter;
    bool enabled = false;
    EqGains gains{};
};
[[nodiscard]] std::string processLine(const ProcessReport &report);

/// Writes the line at once and whole, line break included.
void print(std::string line);

} // namespace navorin::EqTap
