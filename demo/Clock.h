#pragma once

#include <chrono>

namespace navorin::demo {

/// The server's clock, seconds since 1970, which tests may let run faster from the start of the process on.
class Clock
{
public:
    explicit Clock(double scale)
        : m_start(wallSeconds())
        , m_scale(scale)
    {
    }

    [[nodiscard]] double now() const { return m_start + (wallSeconds() - m_start) * m_scale; }

private:
    static double wallSeconds()
    {
        const auto since = std::chrono::system_clock::now().time_since_epoch();
        return std::chrono::duration<double>(since).count();
    }

    double m_start;
    double m_scale;
};

} // namespace navorin::demo
