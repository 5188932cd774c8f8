#pragma once

#include <QtGlobal>

#include <algorithm>
#include <cmath>
#include <limits>

namespace navorin::EqTap {

/// Integer samples as floats and back. 16 bits are a fraction of full scale; 32 bits are fixed point with 24
/// bits after the point, not a fraction of full scale.
[[nodiscard]] inline float toFloat(qint16 sample)
{
    return float(sample) * 0x1p-15F;
}
[[nodiscard]] inline float toFloat(qint32 sample)
{
    return float(sample) * 0x1p-24F;
}

/// Truncated toward zero and held within the range. A value that is not finite is fatal. The lowest value of
/// 16 bits is reached in planar sound only.
template <typename Integer>
[[nodiscard]] Integer fromFloat(float value, bool interleaved)
{
    constexpr bool narrow = sizeof(Integer) == sizeof(qint16);
    const float scaled = value * (narrow ? 32767.0F : 0x1p24F);
    if (!std::isfinite(scaled))
        qFatal("a filtered sample is not finite");
    constexpr double lowest = std::numeric_limits<Integer>::min();
    constexpr double highest = std::numeric_limits<Integer>::max();
    return Integer(std::clamp(double(scaled), narrow && interleaved ? -highest : lowest, highest));
}

} // namespace navorin::EqTap
