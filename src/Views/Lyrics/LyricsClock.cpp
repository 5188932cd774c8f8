#include "Views/Lyrics/LyricsClock.h"

#include <cmath>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr double lookAhead = std::chrono::duration<double>(lyricsTick).count() / 2;
constexpr double longestDuration = 1e15; // well within a whole number

qint64 songDuration(const Station &station, double playerDuration)
{
    if (const auto *const track = station.currentTrack(); track && track->duration)
        return *track->duration;
    return playerDuration > 0 && playerDuration < longestDuration ? qint64(playerDuration) : 0;
}

} // namespace

void LyricsClock::reset(TimePoint now)
{
    *this = {0, now, {}};
}

void LyricsClock::adopt(std::optional<double> elapsed, TimePoint now)
{
    if (!elapsed || !(*elapsed > 0))
        return;
    baseElapsed = *elapsed;
    anchor = now;
}

void LyricsClock::freeze(TimePoint now)
{
    frozenPosition = position(now);
}

void LyricsClock::resume(TimePoint now)
{
    frozenPosition.reset();
    anchor = now;
}

double LyricsClock::position(TimePoint now) const
{
    return frozenPosition.value_or(baseElapsed + std::chrono::duration<double>(now - anchor).count());
}

int activeLine(const QList<LyricsLine> &lines, double position)
{
    const auto heard = position + lookAhead;
    int active = -1;
    for (const auto &line : lines) {
        if (!line.time || *line.time > heard)
            break;
        ++active;
    }
    return active;
}

QueryItems lyricsQuery(const Station &station, double playerDuration)
{
    const auto duration = songDuration(station, playerDuration);
    return {{u"genre"_s, station.genre},
            {u"title"_s, station.displayTrackTitle()},
            {u"artist"_s, station.displayArtist()},
            {u"duration"_s, duration >= 1 ? QString::number(duration) : QString()}};
}

} // namespace navorin
