#include "Views/Story/StoryDecisions.h"

#include "Models/Text.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr double shortest = 3;
constexpr double longest = 60;
constexpr double untold = 15;
constexpr qsizetype longestRow = 26;
constexpr qsizetype firstChoice = 6;

bool isIn(const QList<LyricsLine> &lines, qsizetype index)
{
    return index >= 0 && index < lines.size();
}

QString textAt(const QList<LyricsLine> &lines, qsizetype index)
{
    return isIn(lines, index) ? lines[index].text.value_or(QString()) : QString();
}

} // namespace

void sortLines(LyricsData &lyrics)
{
    if (!lyrics.lines)
        return;
    auto &lines = *lyrics.lines;
    std::vector<qsizetype> order(std::size_t(lines.size()));
    std::iota(order.begin(), order.end(), 0);
    std::ranges::stable_sort(order, {}, [&lines](qsizetype index) { return lines[index].time.value_or(0); });
    QList<LyricsLine> sorted;
    for (const auto index : order)
        sorted.append(lines[index]);
    lines = sorted;
}

LineRange defaultRange(qsizetype lineCount)
{
    return {0, std::min(firstChoice, lineCount) - 1};
}

LineRange withStart(LineRange range, qsizetype index)
{
    return {index, std::max(range.end, index)};
}

LineRange withEnd(LineRange range, qsizetype index)
{
    return {std::min(range.start, index), index};
}

double smartDuration(const QList<LyricsLine> &lines, LineRange range)
{
    const auto low = std::min(range.start, range.end);
    const auto high = std::max(range.start, range.end);
    if (!isIn(lines, low) || !isIn(lines, high))
        return untold;
    const auto &from = lines[low].time;
    const auto &to = lines[high].time;
    if (!from || !to || !(*from < *to))
        return untold;
    return std::clamp(*to - *from + 1, shortest, longest);
}

QString lengthText(double seconds)
{
    return QString::asprintf("مدت ویدیو: %.0f ثانیه", seconds);
}

QString lineRowText(const QList<LyricsLine> &lines, qsizetype index)
{
    const auto text = textAt(lines, index);
    const QString cut =
        characterCount(text) > longestRow ? QString(firstCharacters(text, longestRow) % u'…') : text;
    return QString::number(index + 1) % u". "_s % cut;
}

QString numberText(const QList<LyricsLine> &lines, qsizetype index)
{
    if (lines.isEmpty())
        return {};
    return u'#' % QString::number(index + 1) % u" — "_s % textAt(lines, index);
}

std::optional<double> storyAudioStart(const std::optional<LyricsData> &lyrics, qsizetype startLine)
{
    if (!lyrics)
        return {};
    if (lyrics->lines && isIn(*lyrics->lines, startLine) && lyrics->lines->at(startLine).time)
        return lyrics->lines->at(startLine).time;
    if (!lyrics->elapsedSeconds)
        return {};
    return std::max(0.0, *lyrics->elapsedSeconds);
}

QString percentText(double progress)
{
    return QString::number(int(progress * 100)) % u'٪';
}

} // namespace navorin
