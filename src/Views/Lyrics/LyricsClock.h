#pragma once

#include "Models/APIModels.h"
#include "Models/Station.h"
#include "Services/Backend/RequestRules.h"

#include <chrono>
#include <optional>

namespace navorin {

/// Where a live programme's song is. Nobody tells its position but the backend, once, as the seconds that had
/// passed when it answered; from there on this is a stopwatch. Seconds throughout.
struct LyricsClock
{
    using TimePoint = std::chrono::steady_clock::time_point;

    double baseElapsed = 0;               ///< the position at `anchor`
    TimePoint anchor;                     ///< when `baseElapsed` was true
    std::optional<double> frozenPosition; ///< held while the station is paused

    /// Back to the beginning of a song of which nothing is known yet.
    void reset(TimePoint now);
    /// What the backend says. Absent, or not above 0, says nothing.
    void adopt(std::optional<double> elapsed, TimePoint now);
    void freeze(TimePoint now);
    /// From where the backend last put the song, not from where it was frozen: the programme has gone on, and
    /// its own word is nearer to the truth than ours.
    void resume(TimePoint now);

    [[nodiscard]] double position(TimePoint now) const;
};

/// How often the lit line is looked up.
constexpr std::chrono::milliseconds lyricsTick{400};

/// The line that is sung at `position` (seconds), or -1: the last of the leading run of timed lines that has
/// begun half a tick from then. A line without a time ends that run, and so does the first one still to come;
/// what stands behind them is never reached.
[[nodiscard]] int activeLine(const QList<LyricsLine> &lines, double position);

/// What the backend is asked about what `station` plays. `playerDuration`, in seconds, counts where the track
/// does not state its own.
[[nodiscard]] QueryItems lyricsQuery(const Station &station, double playerDuration);

} // namespace navorin
