#pragma once

#include "Services/Story/StoryConfig.h"

#include <QList>
#include <QString>

#include <optional>

/// What a story shows when. Pure functions for any thread; times are seconds from the start of the video.
namespace navorin {

inline constexpr int storyFrameRate = 24;

/// Limited to what a story may last; anything that is no number counts as too short.
[[nodiscard]] double storyLength(double duration);
[[nodiscard]] int storyFrameCount(double duration);
/// Of the first frame, 0.
[[nodiscard]] double storyFrameTime(int frame);

struct LineTimings
{
    qsizetype first = 0;  ///< index of the range's first line
    QList<double> starts; ///< of each line of the range
};
/// After the lines' own times if all of the range have one, otherwise by their length.
[[nodiscard]] LineTimings computeLineTimings(const StoryConfig &config);

struct CurrentLine
{
    qsizetype index = 0;
    double start = 0;
    QString text;
    QString translation; ///< empty for none

    bool operator==(const CurrentLine &) const = default;
};
/// Absent before the video and for a time that is no number.
[[nodiscard]] std::optional<CurrentLine> currentLine(const LineTimings &timings, const StoryConfig &config,
                                                     double t);
/// How strong a line is, so many seconds after its start.
[[nodiscard]] double lineAlpha(double age);

} // namespace navorin
