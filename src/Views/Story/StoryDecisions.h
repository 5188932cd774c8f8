#pragma once

#include "Models/APIModels.h"

#include <QList>
#include <QString>

#include <optional>

/// What the story's screen decides: plain functions, lines counted from 0 in the order of their times.
namespace navorin {

/// The lines in the order of their times, those of one time as they came; a line without one counts as 0.
void sortLines(LyricsData &lyrics);

/// The first and the last line of a story, either of which may stand before the other.
struct LineRange
{
    qsizetype start = 0;
    qsizetype end = 0;

    bool operator==(const LineRange &) const = default;
};
/// What is chosen at first.
[[nodiscard]] LineRange defaultRange(qsizetype lineCount);
/// After a pick in the one menu or the other, which takes the other end along where it has to.
[[nodiscard]] LineRange withStart(LineRange range, qsizetype index);
[[nodiscard]] LineRange withEnd(LineRange range, qsizetype index);

/// Seconds; 15 where the times of the range tell nothing.
[[nodiscard]] double smartDuration(const QList<LyricsLine> &lines, LineRange range);
[[nodiscard]] QString lengthText(double seconds);

/// A row of the menus.
[[nodiscard]] QString lineRowText(const QList<LyricsLine> &lines, qsizetype index);
/// What a menu's button says is chosen.
[[nodiscard]] QString numberText(const QList<LyricsLine> &lines, qsizetype index);

/// Where in the song the sound begins, seconds; absent if nothing tells.
[[nodiscard]] std::optional<double> storyAudioStart(const std::optional<LyricsData> &lyrics,
                                                    qsizetype startLine);

[[nodiscard]] QString percentText(double progress);

} // namespace navorin
