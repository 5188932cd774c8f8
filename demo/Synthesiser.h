#pragma once

#include "Score.h"

namespace navorin::demo {

constexpr int sampleRate = 44'100;

/// Interleaved stereo, full scale 1.0.
using Samples = std::vector<float>;

/// Plays a score: plucked strings by digital waveguides, winds, bows and pads by wavetables, drums by shaped
/// noise, one hall for all. The peak is at -3 dBFS.
[[nodiscard]] Samples renderScore(const Score &score);

/// A sine at -20 dBFS, for measurements.
[[nodiscard]] Samples renderTone(double hertz, double seconds);

} // namespace navorin::demo
