#include "Services/Story/StoryTimeline.h"

#include "Models/Text.h"

#include <algorithm>
#include <span>

namespace navorin {

namespace {

constexpr double shortest = 3;
constexpr double longest = 60;
constexpr qsizetype leastWeight = 6;

qsizetype weightOf(const LyricsLine &line)
{
    return std::max(leastWeight, characterCount(line.text.value_or(QString())) +
                                     characterCount(line.translation.value_or(QString())));
}

QList<double> startsByTime(std::span<const LyricsLine> lines)
{
    QList<double> starts;
    for (const auto &line : lines)
        starts.append(std::max(0.0, *line.time - *lines.front().time));
    return starts;
}

QList<double> startsByLength(std::span<const LyricsLine> lines, double length)
{
    qsizetype total = 0;
    for (const auto &line : lines)
        total += weightOf(line);
    QList<double> starts;
    double start = 0;
    for (const auto &line : lines) {
        starts.append(start);
        start += length * double(weightOf(line)) / double(total);
    }
    return starts;
}

/// Where the line at `t` stands in a list of starts that is not empty.
qsizetype positionAt(const QList<double> &starts, double t)
{
    const auto last = starts.size() - 1;
    for (qsizetype i = 0; i < last; ++i) {
        if (starts[i] <= t && t < starts[i + 1])
            return i;
    }
    return last;
}

} // namespace

double storyLength(double duration)
{
    return duration >= shortest ? std::min(duration, longest) : shortest;
}

int storyFrameCount(double duration)
{
    return int(storyLength(duration) * storyFrameRate);
}

double storyFrameTime(int frame)
{
    return double(frame) / storyFrameRate;
}

LineTimings computeLineTimings(const StoryConfig &config)
{
    const auto last = config.lines.size() - 1;
    const auto low = std::max<qsizetype>(0, std::min(config.startLine, last));
    const auto high = std::max(low, std::min(config.endLine, last));
    const auto lines = std::span(config.lines).subspan(std::size_t(low), std::size_t(high - low + 1));
    const bool isTimed = std::ranges::all_of(lines, [](const auto &line) { return line.time.has_value(); });
    return {low, isTimed ? startsByTime(lines) : startsByLength(lines, storyLength(config.duration))};
}

std::optional<CurrentLine> currentLine(const LineTimings &timings, const StoryConfig &config, double t)
{
    if (timings.starts.isEmpty() || !(t >= 0))
        return {};
    const auto position = positionAt(timings.starts, t);
    const auto &line = config.lines.at(timings.first + position);
    return CurrentLine{timings.first + position, timings.starts[position], line.text.value_or(QString()),
                       line.translation.value_or(QString())};
}

double lineAlpha(double age)
{
    constexpr double weakest = 0.25;
    constexpr double fadeTime = 0.35;
    return weakest + (1 - weakest) * std::clamp(age / fadeTime, 0.0, 1.0);
}

} // namespace navorin
