#include "Synthesiser.h"

#include "Hall.h"
#include "Random.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <numbers>

namespace navorin::demo {

namespace {

constexpr double rate = sampleRate;
constexpr double fullTurn = 2 * std::numbers::pi;

/// Where voices are mixed.
struct Mix
{
    explicit Mix(double seconds)
        : left(static_cast<std::size_t>(seconds * rate))
        , right(left.size())
    {
    }

    std::vector<float> left;
    std::vector<float> right;
};

/// One voice's place in the mix: a position that moves on with every sample.
class Pen
{
public:
    Pen(Mix &mix, double start, double pan, double level)
        : m_mix(mix)
        , m_at(static_cast<std::size_t>(start * rate))
        , m_left(static_cast<float>(level * std::cos((pan + 1) * std::numbers::pi / 4)))
        , m_right(static_cast<float>(level * std::sin((pan + 1) * std::numbers::pi / 4)))
    {
    }

    /// False at the end of the piece.
    bool put(double sample)
    {
        if (m_at >= m_mix.left.size())
            return false;
        const auto value = static_cast<float>(sample);
        m_mix.left[m_at] += value * m_left;
        m_mix.right[m_at] += value * m_right;
        ++m_at;
        return true;
    }

private:
    Mix &m_mix;
    std::size_t m_at;
    float m_left;
    float m_right;
};

/// One cycle of a wave made of harmonics.
class Wavetable
{
public:
    explicit Wavetable(std::initializer_list<double> harmonics)
    {
        for (std::size_t i = 0; i < size; ++i) {
            double turn = 0;
            for (const double level : harmonics) {
                turn += fullTurn * static_cast<double>(i) / size;
                m_wave[i] += static_cast<float>(level * std::sin(turn));
            }
        }
        m_wave[size] = m_wave[0];
    }

    /// `phase` in turns, not negative.
    [[nodiscard]] double at(double phase) const
    {
        const double place = (phase - static_cast<double>(static_cast<std::int64_t>(phase))) * size;
        const auto index = static_cast<std::size_t>(place);
        const double part = place - static_cast<double>(index);
        return m_wave[index] + part * (m_wave[index + 1] - m_wave[index]);
    }

private:
    static constexpr std::size_t size = 2048;
    std::array<float, size + 1> m_wave{};
};

const Wavetable &sine()
{
    static const Wavetable wave{1.0};
    return wave;
}

struct String
{
    double detuneCents;
    double brightness; ///< of the stroke, 0 to 1
    double damping;    ///< of the string's highs, 0 to 0.5
    double ring;       ///< seconds to fall by 60 dB at 220 Hz
    double strokeAt;   ///< where it is plucked, as part of its length
};

/// A plucked string: a burst of noise that circles in a delay line of the note's period and loses its highs
/// at every turn (Karplus and Strong 1983, tuned with an allpass as in Jaffe and Smith 1983).
void pluck(Mix &mix, const Note &note, const String &string, double level, Random &random)
{
    const double hertz = note.hertz * std::exp2(string.detuneCents / 1200);
    const double period = rate / hertz;
    const double whole = std::floor(period - string.damping - 0.2);
    const double rest = period - string.damping - whole;
    const double tuning = (1 - rest) / (1 + rest);
    const auto size = static_cast<std::size_t>(whole);
    std::vector<double> line(size);
    double smooth = 0;
    for (double &value : line)
        value = smooth += string.brightness * (random.between(-1, 1) - smooth);
    const auto stroke = std::max<std::size_t>(1, static_cast<std::size_t>(whole * string.strokeAt));
    const std::vector<double> burst = line;
    for (std::size_t i = 0; i < size; ++i)
        line[i] -= burst[(i + size - stroke) % size];
    const double ring = string.ring * std::sqrt(220 / hertz);
    const double loss = std::pow(10, -3 * period / (rate * ring));
    const auto sounding = static_cast<std::size_t>(std::min(note.length + 0.25, ring) * rate);
    Pen pen(mix, note.start, note.pan, level);
    double before = 0;
    double allpassIn = 0;
    double allpassOut = 0;
    for (std::size_t i = 0, at = 0; i < sounding; ++i, at = at + 1 == size ? 0 : at + 1) {
        const double value = line[at];
        const double damped = loss * ((1 - string.damping) * value + string.damping * before);
        before = value;
        allpassOut = tuning * (damped - allpassOut) + allpassIn;
        allpassIn = damped;
        line[at] = allpassOut;
        const double left = static_cast<double>(sounding - i) / rate;
        if (!pen.put(value * std::min(1.0, left / 0.2)))
            return;
    }
}

/// Seconds of rising and falling around a held note.
double envelope(double time, double length, double rise, double fall)
{
    const double up = std::min(1.0, time / rise);
    const double down = std::clamp((length + fall - time) / fall, 0.0, 1.0);
    return up * up * (3 - 2 * up) * down * down;
}

struct Held
{
    const Wavetable &wave;
    double rise;
    double fall;
    double vibratoHertz;
    double vibratoDepth; ///< as part of the frequency
    double breath;       ///< level of the noise around the note
    double spreadCents;  ///< between two voices; 0 for one
};

void hold(Mix &mix, const Note &note, const Held &held, double level, Random &random)
{
    Pen pen(mix, note.start, note.pan, level);
    const auto count = static_cast<std::size_t>((note.length + held.fall) * rate);
    const double spread = std::exp2(held.spreadCents / 1200);
    double phase = random.unit();
    double other = random.unit();
    const double narrow = std::exp(-fullTurn * 60 / rate);
    const double turn = 2 * narrow * std::cos(fullTurn * note.hertz / rate);
    double breath1 = 0;
    double breath2 = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double time = static_cast<double>(i) / rate;
        const double sway =
            held.vibratoDepth * std::min(1.0, time / 0.6) * sine().at(time * held.vibratoHertz);
        const double step = note.hertz * (1 + sway) / rate;
        double value = held.wave.at(phase += step);
        if (held.spreadCents > 0)
            value = 0.5 * (value + held.wave.at(other += step * spread));
        if (held.breath > 0) {
            const double noise = random.between(-1, 1) + turn * breath1 - narrow * narrow * breath2;
            breath2 = breath1;
            breath1 = noise;
            value += held.breath * noise;
        }
        if (!pen.put(value * envelope(time, note.length, held.rise, held.fall)))
            return;
    }
}

/// A struck bar or bell: one sine bends the phase of another.
void strike(Mix &mix, const Note &note, double ratio, double bend, double ring, double level)
{
    Pen pen(mix, note.start, note.pan, level);
    const auto count = static_cast<std::size_t>(std::min(note.length + 1.2, 3 * ring) * rate);
    const double step = note.hertz / rate;
    const double fade = std::exp(-1 / (ring * rate));
    const double dull = std::exp(-1 / (0.25 * ring * rate));
    double loud = 1;
    double bright = bend;
    for (std::size_t i = 0; i < count; ++i, loud *= fade, bright *= dull) {
        const double turns = static_cast<double>(i) * step;
        const double value = sine().at(turns + 8 + bright * sine().at(turns * ratio) / fullTurn);
        const double left = static_cast<double>(count - i) / rate;
        const double rise = std::min(1.0, static_cast<double>(i) / (0.004 * rate));
        if (!pen.put(value * loud * rise * std::min(1.0, left / 0.3)))
            return;
    }
}

void play(Mix &mix, const Note &note, Random &random)
{
    static const Wavetable reed{1.0, 0.28, 0.42, 0.08, 0.12};
    static const Wavetable bowed{1.0, 0.62, 0.48, 0.30, 0.24, 0.16, 0.11, 0.08, 0.05};
    static const Wavetable soft{1.0, 0.34, 0.20, 0.10, 0.07, 0.04};
    const double level = note.level;
    switch (note.timbre) {
    case Timbre::Tar:
        pluck(mix, note, {0, 0.62, 0.32, 2.6, 0.13}, 0.62 * level, random);
        pluck(mix, note, {5, 0.62, 0.34, 2.2, 0.17}, 0.46 * level, random);
        return;
    case Timbre::Setar:
        pluck(mix, note, {0, 0.80, 0.22, 2.8, 0.09}, 0.62 * level, random);
        return;
    case Timbre::Santur:
        for (const double cents : {-3.0, 0.5, 4.0})
            pluck(mix, note, {cents, 0.72, 0.14, 3.6, 0.21}, 0.34 * level, random);
        return;
    case Timbre::Bass:
        pluck(mix, note, {0, 0.14, 0.42, 2.4, 0.42}, 1.7 * level, random);
        return;
    case Timbre::Ney:
        hold(mix, note, {reed, 0.09, 0.16, 5.2, 0.006, 0.003, 0}, 0.36 * level, random);
        return;
    case Timbre::Kamancheh:
        hold(mix, note, {bowed, 0.11, 0.14, 5.8, 0.007, 0.0005, 0}, 0.24 * level, random);
        return;
    case Timbre::Pad:
        hold(mix, note, {soft, 1.1, 1.6, 0.3, 0.001, 0, 7}, 0.42 * level, random);
        return;
    case Timbre::Glass:
        strike(mix, note, 3.5, 1.1, 0.9, 0.42 * level);
        return;
    case Timbre::Keys:
        strike(mix, note, 1.0, 1.5, 1.1, 0.5 * level);
        return;
    }
}

void thump(Mix &mix, const Hit &hit, Random &random)
{
    Pen pen(mix, hit.start, hit.pan, hit.level);
    double phase = 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(0.5 * rate); ++i) {
        const double time = static_cast<double>(i) / rate;
        phase += (62 + 90 * std::exp(-time / 0.03)) / rate;
        const double skin = random.between(-1, 1) * std::exp(-time / 0.006) * 0.25;
        if (!pen.put((sine().at(phase) * std::exp(-time / 0.13) + skin) * std::min(1.0, time / 0.002)))
            return;
    }
}

/// Noise through a resonance: a finger on the rim, a clap, a rattle.
void rattle(Mix &mix, const Hit &hit, double hertz, double width, double seconds, Random &random)
{
    Pen pen(mix, hit.start, hit.pan, hit.level);
    const double radius = std::exp(-std::numbers::pi * width / rate);
    const double turn = 2 * radius * std::cos(fullTurn * hertz / rate);
    const double gain = 1 - radius;
    double first = 0;
    double second = 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(5 * seconds * rate); ++i) {
        const double value = gain * random.between(-1, 1) + turn * first - radius * radius * second;
        const double out = value - second;
        second = first;
        first = value;
        const double time = static_cast<double>(i) / rate;
        if (!pen.put(2 * out * std::exp(-time / seconds) * std::min(1.0, time / 0.001)))
            return;
    }
}

void play(Mix &mix, const Hit &hit, Random &random)
{
    switch (hit.drum) {
    case Drum::Dum:
        thump(mix, hit, random);
        return;
    case Drum::Tak:
        rattle(mix, hit, 1300, 900, 0.035, random);
        return;
    case Drum::Snap:
        rattle(mix, hit, 1900, 2200, 0.07, random);
        return;
    case Drum::Shaker:
        rattle(mix, hit, 6500, 5000, 0.03, random);
        return;
    }
}

/// A piece being played: events are voiced as their time comes, so everything before it is final.
class Performance
{
public:
    explicit Performance(Score score)
        : m_score(std::move(score))
        , m_mix(m_score.seconds)
        , m_hall(static_cast<float>(m_score.reverb))
    {
        const auto earlier = [](const auto &a, const auto &b) { return a.start < b.start; };
        std::stable_sort(m_score.notes.begin(), m_score.notes.end(), earlier);
        std::stable_sort(m_score.hits.begin(), m_score.hits.end(), earlier);
    }

    Samples next()
    {
        const std::size_t end = std::min(m_done + blockFrames, m_mix.left.size());
        const double until = static_cast<double>(end) / rate;
        for (; m_note < m_score.notes.size() && m_score.notes[m_note].start < until; ++m_note)
            play(m_mix, m_score.notes[m_note], m_random);
        for (; m_hit < m_score.hits.size() && m_score.hits[m_hit].start < until; ++m_hit)
            play(m_mix, m_score.hits[m_hit], m_random);
        Samples block;
        block.reserve(2 * (end - m_done));
        for (; m_done < end; ++m_done) {
            const auto [left, right] = m_hall.add(m_mix.left[m_done], m_mix.right[m_done]);
            block.push_back(master(left));
            block.push_back(master(right));
        }
        return block;
    }

private:
    static constexpr std::size_t blockFrames = sampleRate;

    /// Rounds off where voices pile up, and fades both ends.
    [[nodiscard]] float master(float sample) const
    {
        const float fadeIn = static_cast<float>(m_done) / (0.004F * sampleRate);
        const float fadeOut = static_cast<float>(m_mix.left.size() - m_done) / (1.2F * sampleRate);
        return 0.7079F * std::tanh(sample * static_cast<float>(m_score.gain)) *
               std::min({1.0F, fadeIn, fadeOut});
    }

    Score m_score;
    Mix m_mix;
    Hall m_hall;
    Random m_random{77};
    std::size_t m_note = 0;
    std::size_t m_hit = 0;
    std::size_t m_done = 0;
};

} // namespace

SampleSource playScore(Score score)
{
    return [performance = std::make_shared<Performance>(std::move(score))] { return performance->next(); };
}

SampleSource playTone(double hertz, double seconds)
{
    return [hertz, left = static_cast<std::size_t>(seconds * rate)]() mutable {
        Samples samples;
        samples.reserve(2 * left);
        for (std::size_t i = 0; i < left; ++i) {
            const double turns = std::fmod(hertz * static_cast<double>(i) / rate, 1.0);
            samples.insert(samples.end(), 2, static_cast<float>(0.1 * std::sin(fullTurn * turns)));
        }
        left = 0;
        return samples;
    };
}

} // namespace navorin::demo
