#pragma once

#include "Services/Equaliser/Biquad.h"
#include "Services/Equaliser/EqBands.h"

#include <span>

namespace navorin::EqTap {

/// The sections of one channel, in band order: each takes the output of the one before as its input.
using Cascade = std::array<Biquad, eqBandCount>;

/// Five bands for `gains`, with empty memory.
[[nodiscard]] Cascade makeCascade(const EqGains &gains, double sampleRate);

inline float process(Cascade &cascade, float sample)
{
    for (Biquad &section : cascade)
        sample = section.process(sample);
    return sample;
}

/// Samples of one or several channels. Channel c of frame f is at `samples[f * stride + c]`.
struct Frames
{
    float *samples = nullptr;
    std::size_t stride = 1;
    std::size_t count = 0;
};

/// Filters the first channels of `frames` in place, each with its own cascade, whose memory carries on; the
/// channels beyond the cascades stay, and so do the cascades beyond the channels. Uses what this processor
/// has to do so fast. Allocates nothing.
void filter(std::span<Cascade> cascades, const Frames &frames);

/// The same by one of its ways. All give the same bits, for any length and any number of channels.
enum class FilterWay {
    Scalar,   ///< one sample after the other; what the others are held against
    Portable, ///< the sections side by side in vectors of four, for any processor
    Avx2,     ///< in vectors of eight
};
[[nodiscard]] bool isAvailable(FilterWay way);
void filter(FilterWay way, std::span<Cascade> cascades, const Frames &frames);

} // namespace navorin::EqTap
