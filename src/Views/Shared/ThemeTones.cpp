#include "Views/Shared/ThemeTones.h"

#include <cmath>

namespace navorin {

namespace {

constexpr double glowLuminance = 0.10;
constexpr double inkLuminance = 0.30;
constexpr double headerLuminance = 0.043;

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

/// The smallest share, 0 to 1, from which on `holds` is true; `holds` must not turn false again.
template <typename Predicate>
double smallestShare(Predicate holds)
{
    if (holds(0.0))
        return 0;
    double low = 0;
    double high = 1;
    for (int i = 0; i < 20; ++i) {
        const auto middle = (low + high) / 2;
        (holds(middle) ? high : low) = middle;
    }
    return high;
}

QColor lightened(const QColor &color, double target)
{
    const auto share =
        smallestShare([&](double white) { return luminance(blended(color, Qt::white, white)) >= target; });
    return blended(color, Qt::white, share);
}

} // namespace

QColor backgroundColor()
{
    return QColor::fromRgbF(0.043F, 0.043F, 0.051F);
}

double luminance(const QColor &color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor blended(const QColor &under, const QColor &over, double alpha)
{
    const auto mix = [share = float(alpha)](float a, float b) { return a + (b - a) * share; };
    return QColor::fromRgbF(mix(under.redF(), over.redF()), mix(under.greenF(), over.greenF()),
                            mix(under.blueF(), over.blueF()));
}

QColor glowTone(const QColor &color)
{
    return lightened(color, glowLuminance);
}

QColor inkTone(const QColor &color)
{
    return lightened(color, inkLuminance);
}

double veilOpacity(const QColor &color)
{
    const auto washed = blended(backgroundColor(), color, washTop);
    return smallestShare(
        [&](double veil) { return luminance(blended(washed, backgroundColor(), veil)) <= headerLuminance; });
}

} // namespace navorin
