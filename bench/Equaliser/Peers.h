#pragma once

#include "Services/Equaliser/EqBands.h"

#include <chrono>
#include <cstddef>
#include <ctime>

/// Others' equalisers, set to the same five peaks, fed with stereo floats at 44.1 kHz on one thread.
namespace navorin::bench {

inline constexpr EqGains gains{6, -3, 4, 2, -5};
inline constexpr double quality = 0.85;
inline constexpr int sampleRate = 44100;
inline constexpr std::size_t framesPerBlock = 1024;
inline constexpr std::size_t blocksPerRun = 1000;

using Seconds = std::chrono::duration<double>;

/// Of all threads of the process, so that what else the machine does counts little.
inline Seconds processorTime()
{
    return Seconds(double(std::clock()) / CLOCKS_PER_SEC);
}

/// The processor time for `blocksPerRun` blocks, less that of the same graph without the equaliser. Negative
/// if the peer is missing.
Seconds gstreamerEqualizer();
Seconds ffmpegEqualizer();

} // namespace navorin::bench
