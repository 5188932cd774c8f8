#pragma once

#include "Services/Story/StoryConfig.h"

namespace navorin {

/// The app's own fonts, which a test without its screens has to load.
void loadAppFonts();

/// A picture with edges, slopes and colours.
[[nodiscard]] QImage sampleCover(QSize size);
/// Three lines from 42.5 s on, with a translation; 5 s long.
[[nodiscard]] StoryConfig sampleStory(const QImage &cover);

} // namespace navorin
