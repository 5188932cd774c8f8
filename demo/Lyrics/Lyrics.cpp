#include "Lyrics.h"

#include "Lyrics/Verses.h"
#include "Random.h"
#include "Score.h"

#include <array>

namespace navorin::demo {

namespace {

enum class Kind {
    Ordinary,
    Untranslated,
    PartlyTimed,
    FirstUntimed,
    Untimed,
    Mixed,
    Endless,
    Absent,
    Withheld
};

constexpr double firstLine = 6;
constexpr double restAtEnd = 8;
constexpr int endlessLines = 2000;

Kind kindOf(std::string_view title)
{
    struct Special
    {
        std::string_view title;
        Kind kind;
    };
    static constexpr std::array specials{
        Special{"چای و خاطره", Kind::Untranslated},
        Special{"بوی باران", Kind::PartlyTimed},
        Special{"پاییز بی‌قرار", Kind::FirstUntimed},
        Special{"نامه‌های نرسیده", Kind::Untimed},
        Special{"صدای پای آب", Kind::Mixed},
        Special{"یلدای بلند", Kind::Endless},
        Special{"خانه‌ی مادربزرگ", Kind::Absent},
        Special{"آخرین قطار", Kind::Withheld},
    };
    for (const Special &special : specials) {
        if (special.title == title)
            return special.kind;
    }
    return Kind::Ordinary;
}

const std::vector<VerseLine> &poemFor(const Song &song, Repertoire repertoire, Kind kind)
{
    if (kind == Kind::Mixed)
        return mixedPoem();
    const auto &poems = repertoire == Repertoire::Latin ? latinPoems() : persianPoems();
    return poems[hashText(std::string(song.title)) % poems.size()];
}

/// Two lines make a couplet, with a breath behind it.
double stepAfter(std::size_t line)
{
    return line % 2 == 0 ? 4.5 : 5.5;
}

std::vector<SungLine> sung(const std::vector<VerseLine> &poem, double seconds)
{
    std::vector<SungLine> lines;
    double time = firstLine;
    for (std::size_t i = 0; time < seconds - restAtEnd; time += stepAfter(i), ++i) {
        const VerseLine &line = poem[i % poem.size()];
        lines.push_back({time, std::string(line.text), std::string(line.translation)});
    }
    return lines;
}

std::vector<SungLine> hurried(const std::vector<VerseLine> &poem, double seconds)
{
    std::vector<SungLine> lines;
    for (std::size_t i = 0; i < endlessLines; ++i) {
        const VerseLine &line = poem[i % poem.size()];
        lines.push_back({firstLine + (seconds - firstLine) * static_cast<double>(i) / endlessLines,
                         std::to_string(i + 1) + ". " + std::string(line.text),
                         std::string(line.translation)});
    }
    return lines;
}

void takeTimes(std::vector<SungLine> &lines, std::size_t from, std::size_t to)
{
    for (std::size_t i = from; i < to; ++i)
        lines[i].time.reset();
}

} // namespace

Lyrics lyricsOf(const Song &song, Repertoire repertoire)
{
    const Kind kind = kindOf(song.title);
    if (repertoire == Repertoire::Calm || kind == Kind::Absent)
        return {};
    const auto &poem = poemFor(song, repertoire, kind);
    const double seconds = pieceSeconds(song.piece);
    Lyrics lyrics{kind == Kind::Endless ? hurried(poem, seconds) : sung(poem, seconds),
                  kind == Kind::Withheld};
    auto &lines = lyrics.lines;
    if (kind == Kind::PartlyTimed)
        takeTimes(lines, lines.size() / 2, lines.size());
    if (kind == Kind::FirstUntimed)
        takeTimes(lines, 0, 1);
    if (kind == Kind::Untimed)
        takeTimes(lines, 0, lines.size());
    if (kind == Kind::Untranslated || kind == Kind::Untimed) {
        for (SungLine &line : lines)
            line.translation.clear();
    }
    return lyrics;
}

} // namespace navorin::demo
