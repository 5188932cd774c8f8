#include "Views/Shared/SpringCurve.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace navorin {

namespace {

constexpr double restingOffset = 0.001;
/// Qt 6.4 keeps room for ten segments in a curve and writes past it without a word if there are more.
constexpr int segments = 10;

struct Oscillation
{
    double decay;     ///< 1/s
    double frequency; ///< rad/s of the damped swing
};

Oscillation oscillationOf(const SpringCurve &spring)
{
    const auto natural = 2 * std::numbers::pi / spring.response;
    const auto ratio = std::clamp(spring.damping, 0.05, 0.999); // at 1 the swing has no frequency
    return {ratio * natural, natural * std::sqrt(1 - ratio * ratio)};
}

} // namespace

int SpringCurve::duration() const
{
    const auto [decay, frequency] = oscillationOf(*this);
    const auto swing = std::hypot(1.0, decay / frequency);
    int milliseconds = 0;
    for (double reach = 1; reach > restingOffset; ++milliseconds) {
        const auto decayed = decay * milliseconds / 1000;
        reach = std::exp(-decayed) * std::min(swing, 1 + decayed);
    }
    return milliseconds;
}

double SpringCurve::position(double seconds) const
{
    const auto [decay, frequency] = oscillationOf(*this);
    const auto angle = frequency * seconds;
    return 1 - std::exp(-decay * seconds) * (std::cos(angle) + decay / frequency * std::sin(angle));
}

double SpringCurve::velocity(double seconds) const
{
    const auto [decay, frequency] = oscillationOf(*this);
    const auto natural2 = decay * decay + frequency * frequency;
    return natural2 / frequency * std::exp(-decay * seconds) * std::sin(frequency * seconds);
}

QList<double> SpringCurve::bezier() const
{
    const auto length = duration() / 1000.0;
    const auto step = length / segments;
    QList<double> curve;
    for (int i = 0; i < segments; ++i) {
        const auto from = i * step;
        const auto to = from + step;
        const bool last = i == segments - 1;
        const auto end = last ? 1.0 : position(to);
        const auto endSlope = last ? 0.0 : velocity(to);
        curve << (from + step / 3) / length << position(from) + velocity(from) * step / 3
              << (to - step / 3) / length << end - endSlope * step / 3 << (last ? 1.0 : to / length) << end;
    }
    return curve;
}

} // namespace navorin
