#pragma once

#include "Services/Story/StoryGeometry.h"

#include <QColor>
#include <QImage>
#include <QString>

namespace navorin {

/// `text` in an opaque `color` on a transparent picture of the size of its style's box: centred, set from
/// right to left, wrapped at words. A line that does not fit any more is left out, and whatever of the first
/// does not fit is cut off. Any thread; the app's fonts must be loaded.
[[nodiscard]] QImage storyText(const QString &text, const StoryTextStyle &style, const QColor &color);

/// The same above its own soft shadow.
[[nodiscard]] QImage shadowedStoryText(const QString &text, const StoryTextStyle &style, const QColor &color);

} // namespace navorin
