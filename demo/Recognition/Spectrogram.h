#pragma once

#include <cstddef>
#include <vector>

namespace navorin::demo {

/// Loudness in decibels by time and pitch, of the part of the spectrum that survives a loudspeaker.
class Spectrogram
{
public:
    /// Mono samples at 44,100 Hz. A frame is 23 ms on from the one before.
    explicit Spectrogram(const std::vector<float> &samples);

    static constexpr int bins = 384; ///< of 10.8 Hz each

    [[nodiscard]] int frames() const { return static_cast<int>(m_levels.size()) / bins; }
    [[nodiscard]] float at(int frame, int bin) const { return m_levels[place(frame, bin)]; }

private:
    [[nodiscard]] static std::size_t place(int frame, int bin)
    {
        return static_cast<std::size_t>(frame) * bins + static_cast<std::size_t>(bin);
    }

    std::vector<float> m_levels;
};

} // namespace navorin::demo
