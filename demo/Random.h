#pragma once

#include <cstdint>
#include <string_view>

namespace navorin::demo {

/// A small generator with the same sequence on every machine: artwork and music must not change between runs.
class Random
{
public:
    explicit Random(std::uint64_t seed)
        : m_state(seed)
    {
    }

    std::uint64_t next()
    {
        m_state += 0x9E3779B97F4A7C15U;
        std::uint64_t z = m_state;
        z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
        return z ^ (z >> 31U);
    }

    /// From 0 up to, not including, 1.
    double unit() { return static_cast<double>(next() >> 11U) * 0x1.0p-53; }
    double between(double low, double high) { return low + (high - low) * unit(); }
    /// From 0 up to, not including, `count`.
    int below(int count) { return static_cast<int>(next() % static_cast<std::uint64_t>(count)); }
    bool chance(double probability) { return unit() < probability; }

private:
    std::uint64_t m_state;
};

/// FNV-1a.
[[nodiscard]] constexpr std::uint64_t hashText(std::string_view text)
{
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
    return hash;
}

} // namespace navorin::demo
