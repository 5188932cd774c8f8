#pragma once

#include "Services/Story/Planes.h"
#include "Services/Story/StoryConfig.h"
#include "Services/Story/StoryCover.h"
#include "Services/Story/StoryTimeline.h"

#include <optional>

namespace navorin {

/// Draws the frames of one story, each of them a pure function of the story and the time. What does not
/// change from frame to frame is drawn once, and everything is mixed in the planes that the encoder takes.
/// For one thread.
class StoryPainter
{
public:
    /// Takes a good part of a second for a large cover.
    explicit StoryPainter(const StoryConfig &config);

    /// All of the canvas, whatever was on it.
    void drawFrame(const PlanarCanvas &canvas, double t);

private:
    void drawStill(const PlanarCanvas &canvas, int y, int glow) const;
    void drawText(const PlanarCanvas &canvas, double t);
    void prepareLine(const CurrentLine &line);

    const LineTimings m_timings;
    StoryConfig m_config;    ///< without its cover
    PlanarPicture m_dark;    ///< all that stands still, without the glow
    PlanarPicture m_glowing; ///< the same under the strongest glow
    std::optional<StoryCover> m_cover;
    qsizetype m_preparedLine = -1;
    PlanarOverlay m_text;
    PlanarOverlay m_translation;
};

} // namespace navorin
