#pragma once

#include <QColor>

namespace navorin {

/// The two fixed colours of the interface, and the tones that a colour taken from an artwork is turned into
/// before it may carry something. The raw colour itself only washes the background.

/// Behind everything.
[[nodiscard]] QColor backgroundColor();

/// Relative luminance of an sRGB colour, 0 to 1 (WCAG 2.2, "relative luminance").
[[nodiscard]] double luminance(const QColor &color);
/// `over` laid over `under` with the opacity `alpha`, in sRGB as the screen blends.
[[nodiscard]] QColor blended(const QColor &under, const QColor &over, double alpha);

/// For lights and the current row: as it is, or lightened until its luminance is .10.
[[nodiscard]] QColor glowTone(const QColor &color);
/// For glyphs, bars and fills that must be seen on a dark panel: lightened until its luminance is .30.
[[nodiscard]] QColor inkTone(const QColor &color);
/// How much of the background colour lies between the wash and the content, 0 to 1: just enough that white
/// text at half opacity stays readable at the top, where the wash is strongest.
[[nodiscard]] double veilOpacity(const QColor &color);

/// Opacity of the wash at the top, in the middle and at the bottom of the window.
inline constexpr double washTop = 0.55;
inline constexpr double washMiddle = 0.25;
inline constexpr double washBottom = 0.10;

} // namespace navorin
