#pragma once

#include <cstdint>
#include <vector>

namespace navorin::demo {

/// Two loud points of a spectrum, close to each other: their pitches and the time between them in one number.
struct Landmark
{
    std::uint32_t pattern = 0;
    std::int32_t time = 0; ///< of the earlier point, in frames

    friend bool operator<(const Landmark &a, const Landmark &b) { return a.pattern < b.pattern; }
};

/// What a sound is known by, whatever its loudness and the codecs between: the landmarks of its spectrum
/// (after Wang 2003), sorted by pattern.
using Fingerprint = std::vector<Landmark>;

/// Of mono samples at 44,100 Hz; empty for silence.
[[nodiscard]] Fingerprint fingerprintOf(const std::vector<float> &samples);

/// How many landmarks of `snippet` stand in `whole` with the same times between them: its best place.
[[nodiscard]] int agreement(const Fingerprint &snippet, const Fingerprint &whole);

} // namespace navorin::demo
