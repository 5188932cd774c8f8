#pragma once

#include <chrono>

namespace navorin::demo {

/// The server's clock, seconds since 1970, which tests may let run faster from the start of the process on.
class Clock
{
public:
    explicit Clock(double scale)
        : m_scale(scale)
    {
    }

    [[nodiscard]] double now() const { return m_startedAt + (Steady::now() - m_start).count() * m_scale; }

    /// How long this many seconds of the server's clock really take.
    [[nodiscard]] std::chrono::duration<double> real(double seconds) const
    {
        return std::chrono::duration<double>(seconds / m_scale);
    }

private:
    struct Steady
    {
        static std::chrono::duration<double> now()
        {
            return std::chrono::steady_clock::now().time_since_epoch();
        }
    };

    double m_startedAt =
        std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
    std::chrono::duration<double> m_start = Steady::now();
    double m_scale;
};

} // namespace navorin::demo
