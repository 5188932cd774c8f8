#pragma once

#include <QFont>
#include <QRect>
#include <QRectF>
#include <QSize>

/// Where everything of a story stands, in pixels from the top left. Pure functions; times are seconds.
namespace navorin {

inline constexpr QSize storySize(720, 1280);

inline constexpr QRectF storyGlowBox(10, 110.8, 700, 700);
inline constexpr double storyMostGlow = 0.14 + 0.08;
/// Opacity of the glow: it pulses.
[[nodiscard]] double storyGlowAlpha(double t);

inline constexpr QRectF storyBlurBox(-440, -160, 1600, 1600);
inline constexpr double storyBlurAlpha = 0.32;
inline constexpr double storyBlurSigma = 50; ///< in pixels of the cover

/// A square that breathes and floats; always wider than the canvas.
[[nodiscard]] QRectF storyCoverRect(double t);
inline constexpr double storyCoverRadius = 44;
inline constexpr double storyBorderWidth = 5;
inline constexpr double storyBorderAlpha = 0.25;

struct StoryTextStyle
{
    int pixelSize;
    QFont::Weight weight;
    QRect box;
    double alpha = 1; ///< of the whole text
    /// From line to line, in pixel sizes. The font's own is half as much again as its letters need, for
    /// stacked marks that songs do not use; two lines would not fit where two lines have to.
    double lineHeight = 1.2;
};
inline constexpr StoryTextStyle storyTitleStyle{46, QFont::Black, {70, 1040, 580, 60}};
inline constexpr StoryTextStyle storyArtistStyle{30, QFont::Medium, {70, 1090, 580, 42}, 0.62};
inline constexpr StoryTextStyle storyLineStyle{44, QFont::Bold, {60, 720, 600, 130}};
inline constexpr StoryTextStyle storyTranslationStyle{30, QFont::DemiBold, {60, 840, 600, 64}, 1, 32 / 30.0};
inline constexpr StoryTextStyle storyNameStyle{24, QFont::DemiBold, {80, 1184, 560, 34}, 0.42};

inline constexpr double storyShadowSigma = 4;
inline constexpr double storyShadowAlpha = 0.8;
inline constexpr int storyShadowDrop = 2;

} // namespace navorin
