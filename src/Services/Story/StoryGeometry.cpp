#include "Services/Story/StoryGeometry.h"

#include <cmath>
#include <numbers>

namespace navorin {
namespace {

/// -1 to 1, once in `period` seconds.
double wave(double t, double period)
{
    return std::sin(2 * std::numbers::pi * t / period);
}

} // namespace

double storyGlowAlpha(double t)
{
    return 0.14 + 0.08 * wave(t, 9);
}

QRectF storyCoverRect(double t)
{
    constexpr double middle = 409.6;
    const double side = 740 * (1.02 + 0.02 * wave(t, 13));
    return {(storySize.width() - side) / 2, middle - side / 2 + 10 * wave(t, 10), side, side};
}

} // namespace navorin
