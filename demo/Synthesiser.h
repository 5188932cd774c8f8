#pragma once

#include "Score.h"

#include <functional>

namespace navorin::demo {

constexpr int sampleRate = 44'100;

/// Interleaved stereo, full scale 1.0.
using Samples = std::vector<float>;

/// Gives the samples of a sound in order, block by block; empty at the end.
using SampleSource = std::function<Samples()>;

/// Plays a score: plucked strings by digital waveguides, winds, bows and pads by wavetables, drums by shaped
/// noise, one hall for all. The first block costs a few milliseconds, so that a listener need not wait for
/// the whole piece. No sample is above -3 dBFS.
[[nodiscard]] SampleSource playScore(Score score);

/// A sine at -20 dBFS, for measurements.
[[nodiscard]] SampleSource playTone(double hertz, double seconds);

} // namespace navorin::demo
