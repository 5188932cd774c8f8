#include "Services/Equaliser/Biquad.h"

#include <cmath>
#include <numbers>

namespace navorin::EqTap {
namespace {

constexpr double bandwidthDenominator = 1.7; // a Q of 0.85 for every band
constexpr double lowestSampleRate = 8000;
constexpr double gainDivisor = 40;

} // namespace

Biquad Biquad::peaking(double centre, float gain, double sampleRate)
{
    const double amplitude = std::pow(10.0, double(gain) / gainDivisor);
    const double rate = sampleRate > lowestSampleRate ? sampleRate : lowestSampleRate;
    const double omega = centre * (2 * std::numbers::pi) / rate;
    const double alpha = std::sin(omega) / bandwidthDenominator;
    const double divisor = 1 + alpha / amplitude;

    Biquad section;
    section.b0 = float((1 + alpha * amplitude) / divisor);
    section.b1 = float((-2 * std::cos(omega)) / divisor);
    section.b2 = float((1 - alpha * amplitude) / divisor);
    section.a1 = section.b1;
    section.a2 = float((1 - alpha / amplitude) / divisor);
    return section;
}

} // namespace navorin::EqTap
