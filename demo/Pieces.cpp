#include "Random.h"
#include "Score.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace navorin::demo {

namespace {

/// Steps above the tonic in cents; the Persian ones have neutral seconds and thirds.
using Mode = std::array<double, 7>;
constexpr Mode shur{0, 145, 300, 500, 700, 800, 1000};
constexpr Mode homayun{0, 140, 400, 500, 700, 800, 1000};
constexpr Mode segah{0, 150, 350, 500, 650, 850, 1000};
constexpr Mode chahargah{0, 135, 400, 500, 700, 835, 1100};
constexpr Mode mahur{0, 200, 400, 500, 700, 900, 1100};
constexpr Mode dorian{0, 200, 300, 500, 700, 900, 1000};
constexpr Mode aeolian{0, 200, 300, 500, 700, 800, 1000};

enum class Metre { Four, SixEight };
enum class Drums { None, Tombak, Daf, Beat, Brushes };
using Roots = std::array<int, 4>;

struct Piece
{
    Mode mode;
    double tonic; ///< hertz of the melody's home
    double beatsPerMinute;
    int bars;
    Metre metre;
    Timbre lead;
    std::optional<Timbre> second; ///< plays broken chords
    bool pad;
    bool bass;
    Drums drums;
    Roots roots; ///< one chord, two bars each
    double reverb;
    double gain;
    std::uint64_t seed;
};

constexpr Roots drone{0, 0, 0, 0};

// clang-format off
const std::array<Piece, 14> pieces{{
    {shur,      293.7, 100, 16, Metre::SixEight, Timbre::Tar,       Timbre::Santur, true,  false, Drums::Tombak,  drone,        0.28, 1.6, 11},
    {mahur,     261.6, 112, 18, Metre::Four,     Timbre::Santur,    Timbre::Setar,  true,  true,  Drums::Daf,     {0, 3, 4, 0}, 0.30, 1.3, 23},
    {homayun,   220.0,  66, 10, Metre::Four,     Timbre::Setar,     std::nullopt,   true,  false, Drums::None,    drone,        0.42, 2.1, 31},
    {segah,     330.0,  60,  9, Metre::Four,     Timbre::Ney,       Timbre::Santur, true,  false, Drums::None,    drone,        0.48, 1.0, 47},
    {mahur,     329.6, 104, 16, Metre::Four,     Timbre::Keys,      Timbre::Glass,  true,  true,  Drums::Beat,    {0, 5, 3, 4}, 0.22, 1.0, 53},
    {dorian,    293.7,  78, 12, Metre::Four,     Timbre::Keys,      Timbre::Setar,  true,  true,  Drums::Brushes, {0, 3, 6, 0}, 0.30, 1.0, 61},
    {aeolian,   220.0,  58,  8, Metre::Four,     Timbre::Glass,     std::nullopt,   true,  true,  Drums::None,    {0, 5, 2, 6}, 0.55, 1.0, 71},
    {aeolian,   246.9, 118, 18, Metre::Four,     Timbre::Glass,     Timbre::Keys,   true,  true,  Drums::Beat,    {0, 5, 2, 6}, 0.26, 1.0, 83},
    {mahur,     196.0,  72, 10, Metre::Four,     Timbre::Santur,    Timbre::Keys,   true,  true,  Drums::None,    {0, 4, 5, 3}, 0.45, 1.2, 97},
    {shur,      246.9, 132, 20, Metre::SixEight, Timbre::Santur,    Timbre::Tar,    false, true,  Drums::Daf,     drone,        0.20, 1.6, 101},
    {chahargah, 261.6,  88, 14, Metre::Four,     Timbre::Tar,       std::nullopt,   true,  false, Drums::Tombak,  drone,        0.34, 2.0, 113},
    {aeolian,   261.6,  64,  9, Metre::Four,     Timbre::Keys,      Timbre::Keys,   true,  false, Drums::None,    {0, 5, 3, 4}, 0.44, 1.2, 127},
    {homayun,   293.7,  70, 12, Metre::SixEight, Timbre::Kamancheh, Timbre::Santur, true,  false, Drums::Tombak,  drone,        0.42, 1.0, 131},
    {dorian,    196.0,  92, 14, Metre::Four,     Timbre::Setar,     Timbre::Glass,  true,  true,  Drums::Brushes, {0, 6, 3, 0}, 0.34, 1.2, 149},
}};
// clang-format on

constexpr double tailSeconds = 3;

/// A bar is eight (or six) steps.
int stepsPerBar(const Piece &piece)
{
    return piece.metre == Metre::Four ? 8 : 6;
}

double stepSeconds(const Piece &piece)
{
    return 60 / piece.beatsPerMinute / (piece.metre == Metre::Four ? 2 : 1.5);
}

double degreeHertz(const Piece &piece, int degree)
{
    const int octave = static_cast<int>(std::floor(degree / 7.0));
    const double cents = piece.mode[static_cast<std::size_t>(degree - 7 * octave)] + 1200.0 * octave;
    return piece.tonic * std::exp2(cents / 1200);
}

struct MelodyStep
{
    int steps;
    int degree;
    bool rests;
};

using Phrase = std::vector<MelodyStep>;

std::vector<int> barRhythm(Metre metre, Random &random)
{
    static const std::array<std::vector<int>, 7> four{
        {{2, 1, 1, 2, 2}, {3, 1, 2, 2}, {1, 1, 2, 1, 1, 2}, {4, 2, 2}, {2, 2, 4}, {3, 3, 2}, {3, 1, 4}}};
    static const std::array<std::vector<int>, 6> six{
        {{2, 1, 2, 1}, {3, 3}, {1, 1, 1, 3}, {2, 1, 1, 1, 1}, {3, 2, 1}, {3, 1, 1, 1}}};
    return metre == Metre::Four ? four[static_cast<std::size_t>(random.below(7))]
                                : six[static_cast<std::size_t>(random.below(6))];
}

/// Two bars of melody that wander by steps and come to rest on `goal`.
Phrase makePhrase(const Piece &piece, int from, int goal, Random &random)
{
    Phrase phrase;
    int degree = from;
    for (int bar = 0; bar < 2; ++bar) {
        for (const int steps : barRhythm(piece.metre, random)) {
            phrase.push_back({steps, degree, random.chance(0.06)});
            const int leap = random.chance(0.18) ? 2 + random.below(2) : 1;
            const bool upwards = degree < -1 || (degree < 8 && random.chance(degree < goal ? 0.68 : 0.42));
            degree += random.chance(0.12) ? 0 : (upwards ? leap : -leap);
        }
    }
    phrase.back() = {phrase.back().steps, goal, false};
    if (phrase.size() > 2)
        phrase[phrase.size() - 2].degree = goal + (random.chance(0.5) ? 1 : -1);
    phrase.front().rests = false;
    return phrase;
}

bool isPlucked(Timbre timbre)
{
    return timbre == Timbre::Tar || timbre == Timbre::Santur || timbre == Timbre::Setar;
}

class Composer
{
public:
    explicit Composer(const Piece &piece)
        : m_piece(piece)
        , m_random(piece.seed)
        , m_step(stepSeconds(piece))
        , m_bar(m_step * stepsPerBar(piece))
    {
        m_score.reverb = piece.reverb;
        m_score.gain = piece.gain;
    }

    Score compose()
    {
        addMelody();
        for (int bar = 0; bar < m_piece.bars; ++bar) {
            if (m_piece.pad && bar % 2 == 0)
                addPad(bar);
            if (m_piece.second)
                addBrokenChord(bar, *m_piece.second);
            if (m_piece.bass)
                addBass(bar);
            if (bar >= 2)
                addDrums(bar);
        }
        addEnding();
        return std::move(m_score);
    }

private:
    int rootOf(int bar) const { return m_piece.roots[static_cast<std::size_t>(bar / 2 % 4)]; }

    double swayed(double seconds) { return std::max(0.0, seconds + m_random.between(-0.006, 0.006)); }

    void addNote(double start, double length, int degree, double level, double pan, Timbre timbre)
    {
        m_score.notes.push_back({swayed(start), length, degreeHertz(m_piece, degree),
                                 level * m_random.between(0.85, 1.0), pan, timbre});
    }

    /// Question, variation, contrast, answer: each two bars.
    void addMelody()
    {
        const Phrase question = makePhrase(m_piece, 4, 4, m_random);
        const Phrase contrast = makePhrase(m_piece, 5, 2, m_random);
        const Phrase answer = makePhrase(m_piece, 4, 0, m_random);
        const std::array<const Phrase *, 6> form{&question, &answer, &contrast, &answer, &question, &answer};
        const int first = m_piece.drums == Drums::None ? 0 : 2;
        int line = 0;
        for (int bar = first; bar + 2 <= m_piece.bars; bar += 2)
            playPhrase(*form[static_cast<std::size_t>(line++ % 6)], bar * m_bar);
    }

    void playPhrase(const Phrase &phrase, double start)
    {
        double time = start;
        for (const MelodyStep &step : phrase) {
            const double length = step.steps * m_step;
            if (!step.rests)
                playLead(time, length, step);
            time += length;
        }
    }

    void playLead(double time, double length, const MelodyStep &step)
    {
        const Timbre timbre = m_piece.lead;
        const double level = time - std::floor(time / m_bar) * m_bar < m_step ? 0.95 : 0.8;
        if (!isPlucked(timbre)) {
            addNote(time, length * 1.02, step.degree, level, 0.05, timbre);
            return;
        }
        if (step.steps >= 3 && m_random.chance(0.6)) {
            addTremolo(time, length, step.degree, level, timbre);
            return;
        }
        if (m_random.chance(0.16))
            addNote(time - 0.07, 0.3, step.degree + 1, level * 0.5, 0.05, timbre);
        addNote(time, length + 0.6, step.degree, level, 0.05, timbre);
    }

    void addTremolo(double time, double length, int degree, double level, Timbre timbre)
    {
        const double stroke = m_step / std::round(m_step / 0.085);
        const int count = static_cast<int>(length * 0.8 / stroke);
        for (int i = 0; i < count; ++i) {
            const double swell = 0.55 + 0.25 * std::sin(3.14159 * i / count);
            const bool last = i + 1 == count;
            addNote(time + i * stroke, last ? 0.9 : 0.3, degree, level * (i == 0 ? 0.9 : swell), 0.05,
                    timbre);
        }
    }

    void addPad(int bar)
    {
        const int root = rootOf(bar) - 7;
        const double length = 2 * m_bar + 0.4;
        addNote(bar * m_bar, length, root, 0.34, -0.35, Timbre::Pad);
        addNote(bar * m_bar, length, root + 4, 0.26, 0.35, Timbre::Pad);
        if (m_piece.roots != drone)
            addNote(bar * m_bar, length, root + 9, 0.2, 0.0, Timbre::Pad);
    }

    void addBrokenChord(int bar, Timbre timbre)
    {
        static constexpr std::array<int, 4> chord{0, 4, 7, 9};
        const int steps = stepsPerBar(m_piece);
        const int stride = m_piece.beatsPerMinute < 80 ? 2 : 1;
        for (int i = 0; i < steps; i += stride) {
            if (m_random.chance(0.22) && i != 0)
                continue;
            const int degree = rootOf(bar) - 7 + chord[static_cast<std::size_t>(i / stride * 3 % 4)];
            addNote(bar * m_bar + i * m_step, m_step * stride + 0.5, degree, i == 0 ? 0.34 : 0.24, -0.4,
                    timbre);
        }
    }

    void addBass(int bar)
    {
        const int root = rootOf(bar) - 14;
        const double start = bar * m_bar;
        const int half = stepsPerBar(m_piece) / 2;
        addNote(start, m_step * half, root, 0.7, 0, Timbre::Bass);
        addNote(start + half * m_step, m_step * 2, bar % 2 == 0 ? root : root + 4, 0.55, 0, Timbre::Bass);
    }

    void hit(int bar, int step, Drum drum, double level, double pan = 0)
    {
        m_score.hits.push_back(
            {swayed(bar * m_bar + step * m_step), level * m_random.between(0.8, 1.0), pan, drum});
    }

    void addDrums(int bar)
    {
        const int steps = stepsPerBar(m_piece);
        for (int step = 0; step < steps; ++step)
            addDrumStep(bar, step, step % (steps / 2) == 0);
    }

    void addDrumStep(int bar, int step, bool strong)
    {
        switch (m_piece.drums) {
        case Drums::None:
            return;
        case Drums::Tombak:
            if (step == 0 || (step == stepsPerBar(m_piece) / 2 + 1 && bar % 2 == 1))
                hit(bar, step, Drum::Dum, 0.6, 0.15);
            else if (strong || m_random.chance(0.5))
                hit(bar, step, Drum::Tak, strong ? 0.34 : 0.18, 0.2);
            return;
        case Drums::Daf:
            if (strong)
                hit(bar, step, Drum::Dum, 0.6, -0.1);
            else
                hit(bar, step, m_random.chance(0.4) ? Drum::Tak : Drum::Shaker, 0.28, 0.25);
            return;
        case Drums::Beat:
            if (strong)
                hit(bar, step, step == 0 ? Drum::Dum : Drum::Snap, step == 0 ? 0.85 : 0.4);
            hit(bar, step, Drum::Shaker, step % 2 == 0 ? 0.16 : 0.24, 0.3);
            return;
        case Drums::Brushes:
            if (step == 0 || step == 5)
                hit(bar, step, Drum::Dum, 0.55);
            if (step == 2 || step == 6)
                hit(bar, step, Drum::Snap, 0.2, -0.15);
            hit(bar, step, Drum::Shaker, 0.12, 0.3);
            return;
        }
    }

    void addEnding()
    {
        const double start = m_piece.bars * m_bar;
        addNote(start, tailSeconds, 0, 0.8, 0.05, m_piece.lead);
        if (m_piece.pad)
            addNote(start, tailSeconds - 0.5, -7, 0.34, 0, Timbre::Pad);
        if (m_piece.bass)
            addNote(start, tailSeconds, -14, 0.6, 0, Timbre::Bass);
        m_score.seconds = std::ceil(start + tailSeconds);
    }

    const Piece &m_piece;
    Random m_random;
    double m_step;
    double m_bar;
    Score m_score;
};

} // namespace

int pieceCount()
{
    return static_cast<int>(pieces.size());
}

int pieceSeconds(int piece)
{
    const Piece &p = pieces.at(static_cast<std::size_t>(piece));
    return static_cast<int>(std::ceil(p.bars * stepSeconds(p) * stepsPerBar(p) + tailSeconds));
}

Score composePiece(int piece)
{
    return Composer(pieces.at(static_cast<std::size_t>(piece))).compose();
}

} // namespace navorin::demo
