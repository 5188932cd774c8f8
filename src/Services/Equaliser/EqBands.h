#pragma once

#include <QStringView>

#include <array>

namespace navorin {

/// The bands of the equaliser. Their number is part of the design: the filters, the saved settings and the
/// screen all count on it.
inline constexpr std::size_t eqBandCount = 5;
inline constexpr std::array<double, eqBandCount> eqBandCentres{80, 300, 1000, 3500, 10000}; ///< hertz
inline constexpr std::array<QStringView, eqBandCount> eqBandLabels{u"بیس", u"میانپایین", u"میان", u"میانبالا",
                                                                   u"تربل"};
inline constexpr float eqLowestGain = -12; ///< decibels
inline constexpr float eqHighestGain = 12; ///< decibels

/// The gain of each band in decibels.
using EqGains = std::array<float, eqBandCount>;

} // namespace navorin
