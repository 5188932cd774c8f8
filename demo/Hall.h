#pragma once

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

namespace navorin::demo {

/// The sound of a room: a feedback network of four paths of different lengths.
class Hall
{
public:
    /// `amount` from 0 (none) to 1.
    explicit Hall(float amount);

    /// One stereo sample with the room added.
    [[nodiscard]] std::pair<float, float> add(float left, float right);

private:
    /// One way between the walls: a delay that loses its highs.
    class Path
    {
    public:
        Path(std::size_t length, float decay);
        [[nodiscard]] float out() const { return m_line[m_at]; }
        void in(float value);

    private:
        std::vector<float> m_line;
        std::size_t m_at = 0;
        float m_smooth = 0;
        float m_decay;
    };

    std::array<Path, 4> m_paths;
    float m_wet;
};

} // namespace navorin::demo
