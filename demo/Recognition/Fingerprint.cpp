#include "Recognition/Fingerprint.h"

#include "Recognition/Spectrogram.h"

#include <algorithm>
#include <unordered_map>

namespace navorin::demo {

namespace {

struct Peak
{
    int frame = 0;
    int bin = 0;
};

// A peak is the loudest point so far around it.
constexpr int timeReach = 7;
constexpr int pitchReach = 10;
constexpr int lowestBin = 8;
constexpr float softest = 50; ///< decibels below the loudest point of all
constexpr float silence = -60;

// Each peak is paired with the next ones within these bounds.
constexpr int shortestGap = 2;
constexpr int longestGap = 63;
constexpr int widestStep = 127;
constexpr int pairsPerPeak = 6;

bool isPeak(const Spectrogram &spectrum, int frame, int bin)
{
    const float level = spectrum.at(frame, bin);
    const int lastFrame = std::min(frame + timeReach, spectrum.frames() - 1);
    const int lastBin = std::min(bin + pitchReach, Spectrogram::bins - 1);
    for (int f = std::max(frame - timeReach, 0); f <= lastFrame; ++f) {
        for (int b = std::max(bin - pitchReach, 0); b <= lastBin; ++b) {
            if (spectrum.at(f, b) > level)
                return false;
        }
    }
    return true;
}

float loudest(const Spectrogram &spectrum)
{
    float level = silence;
    for (int frame = 0; frame < spectrum.frames(); ++frame) {
        for (int bin = lowestBin; bin < Spectrogram::bins; ++bin)
            level = std::max(level, spectrum.at(frame, bin));
    }
    return level;
}

/// In order of time.
std::vector<Peak> peaksOf(const Spectrogram &spectrum)
{
    const float threshold = std::max(loudest(spectrum) - softest, silence);
    std::vector<Peak> peaks;
    for (int frame = 0; frame < spectrum.frames(); ++frame) {
        for (int bin = lowestBin; bin < Spectrogram::bins; ++bin) {
            if (spectrum.at(frame, bin) > threshold && isPeak(spectrum, frame, bin))
                peaks.push_back({frame, bin});
        }
    }
    return peaks;
}

std::uint32_t patternOf(const Peak &from, const Peak &to)
{
    const auto number = [](int value) { return static_cast<std::uint32_t>(value); };
    return (number(from.bin) << 15U) | (number(to.bin) << 6U) | number(to.frame - from.frame);
}

} // namespace

Fingerprint fingerprintOf(const std::vector<float> &samples)
{
    const std::vector<Peak> peaks = peaksOf(Spectrogram(samples));
    Fingerprint landmarks;
    for (auto from = peaks.begin(); from != peaks.end(); ++from) {
        int pairs = 0;
        for (auto to = from + 1; to != peaks.end() && pairs < pairsPerPeak; ++to) {
            const int gap = to->frame - from->frame;
            if (gap > longestGap)
                break;
            if (gap < shortestGap || std::abs(to->bin - from->bin) > widestStep)
                continue;
            landmarks.push_back({patternOf(*from, *to), from->frame});
            ++pairs;
        }
    }
    std::sort(landmarks.begin(), landmarks.end());
    return landmarks;
}

int agreement(const Fingerprint &snippet, const Fingerprint &whole)
{
    std::unordered_map<int, int> votes;
    for (const Landmark &landmark : snippet) {
        const auto [first, last] = std::equal_range(whole.begin(), whole.end(), landmark);
        for (auto found = first; found != last; ++found)
            ++votes[found->time - landmark.time];
    }
    int best = 0;
    for (const auto &[offset, count] : votes) {
        // half a frame lies between two
        const auto next = votes.find(offset + 1);
        best = std::max(best, count + (next == votes.end() ? 0 : next->second));
    }
    return best;
}

} // namespace navorin::demo
