#pragma once

#include <QColor>
#include <QImage>

#include <optional>

/// One colour out of a picture, for the light that the screens take from it. Pure functions for any thread.
namespace navorin {

/// The arithmetic mean of red, green and blue over all pixels, without gamma handling, each rounded to 8
/// bits; what is transparent counts as black. Absent for a null picture.
[[nodiscard]] std::optional<QColor> averageColor(const QImage &image);

/// `average` pushed toward a usable accent: more saturated and brighter, but never glaring. A grey stays grey
/// and black stays black.
[[nodiscard]] QColor vibrantColor(const QColor &average);
[[nodiscard]] std::optional<QColor> vibrantColor(const QImage &image);

} // namespace navorin
