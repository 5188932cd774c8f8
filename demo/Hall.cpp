#include "Hall.h"

#include <array>
#include <cstddef>

namespace navorin::demo {

namespace {

/// One path between the walls: a delay that loses its highs.
class Path
{
public:
    Path(std::size_t length, float decay)
        : m_line(length)
        , m_decay(decay)
    {
    }

    float out() const { return m_line[m_at]; }

    void in(float value)
    {
        m_smooth += 0.45F * (value - m_smooth);
        m_line[m_at] = m_smooth * m_decay;
        m_at = m_at + 1 == m_line.size() ? 0 : m_at + 1;
    }

private:
    std::vector<float> m_line;
    std::size_t m_at = 0;
    float m_smooth = 0;
    float m_decay;
};

} // namespace

void addHall(std::vector<float> &left, std::vector<float> &right, float amount)
{
    // a feedback network of four paths with prime lengths, mixed by a Hadamard matrix
    std::array<Path, 4> paths{Path(1493, 0.90F), Path(1999, 0.88F), Path(2503, 0.86F), Path(3137, 0.83F)};
    const float wet = amount * 0.9F;
    for (std::size_t i = 0; i < left.size(); ++i) {
        const float a = paths[0].out();
        const float b = paths[1].out();
        const float c = paths[2].out();
        const float d = paths[3].out();
        paths[0].in(0.5F * (a + b + c + d) + left[i]);
        paths[1].in(0.5F * (a - b + c - d) + right[i]);
        paths[2].in(0.5F * (a + b - c - d) + left[i]);
        paths[3].in(0.5F * (a - b - c + d) + right[i]);
        left[i] += wet * (a + c);
        right[i] += wet * (b + d);
    }
}

} // namespace navorin::demo
