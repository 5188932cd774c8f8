#include "Hall.h"

namespace navorin::demo {

Hall::Path::Path(std::size_t length, float decay)
    : m_line(length)
    , m_decay(decay)
{
}

void Hall::Path::in(float value)
{
    m_smooth += 0.45F * (value - m_smooth);
    m_line[m_at] = m_smooth * m_decay;
    m_at = m_at + 1 == m_line.size() ? 0 : m_at + 1;
}

Hall::Hall(float amount)
    : m_paths{Path(1493, 0.90F), Path(1999, 0.88F), Path(2503, 0.86F), Path(3137, 0.83F)}
    // primes: no common beat
    , m_wet(0.9F * amount)
{
}

std::pair<float, float> Hall::add(float left, float right)
{
    const float a = m_paths[0].out();
    const float b = m_paths[1].out();
    const float c = m_paths[2].out();
    const float d = m_paths[3].out();
    // a Hadamard matrix passes every path into every other without gain
    m_paths[0].in(0.5F * (a + b + c + d) + left);
    m_paths[1].in(0.5F * (a - b + c - d) + right);
    m_paths[2].in(0.5F * (a + b - c - d) + left);
    m_paths[3].in(0.5F * (a - b - c + d) + right);
    return {left + m_wet * (a + c), right + m_wet * (b + d)};
}

} // namespace navorin::demo
