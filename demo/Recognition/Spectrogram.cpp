#include "Recognition/Spectrogram.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <utility>

namespace navorin::demo {

namespace {

using Complex = std::complex<float>;

constexpr std::size_t decimation = 4; // to 11,025 Hz
constexpr std::size_t window = 1024;
constexpr std::size_t hop = 256;
constexpr float floorLevel = -100;

double hann(std::size_t i, std::size_t length)
{
    return 0.5 - 0.5 * std::cos(2 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(length));
}

/// A low pass at 5 kHz.
std::vector<float> lowPass()
{
    constexpr std::size_t taps = 64;
    constexpr double cutoff = 2 * 5000.0 / 44'100;
    std::vector<float> filter(taps + 1);
    for (std::size_t i = 0; i <= taps; ++i) {
        const double x = std::numbers::pi * cutoff * (static_cast<double>(i) - taps / 2.0);
        filter[i] = static_cast<float>(cutoff * (x == 0 ? 1 : std::sin(x) / x) * hann(i, taps));
    }
    return filter;
}

std::vector<float> decimated(const std::vector<float> &samples)
{
    static const std::vector<float> filter = lowPass();
    std::vector<float> result;
    result.reserve(samples.size() / decimation);
    for (std::size_t at = 0; at + filter.size() <= samples.size(); at += decimation) {
        float sum = 0;
        for (std::size_t i = 0; i < filter.size(); ++i)
            sum += samples[at + i] * filter[i];
        result.push_back(sum);
    }
    return result;
}

std::vector<Complex> turns()
{
    std::vector<Complex> result(window / 2);
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] =
            std::polar(1.0F, static_cast<float>(-2 * std::numbers::pi * static_cast<double>(i) / window));
    return result;
}

/// The language's own looks for infinities, which takes ten times as long.
Complex product(const Complex &a, const Complex &b)
{
    return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

/// In place, by halves (Cooley and Tukey 1965).
void transform(std::vector<Complex> &values)
{
    static const std::vector<Complex> turn = turns();
    for (std::size_t i = 1, j = 0; i < window; ++i) {
        std::size_t bit = window >> 1U;
        for (; (j & bit) != 0; bit >>= 1U)
            j ^= bit;
        j ^= bit;
        if (i < j)
            std::swap(values[i], values[j]);
    }
    for (std::size_t length = 2; length <= window; length *= 2) {
        for (std::size_t start = 0; start < window; start += length) {
            for (std::size_t i = 0; i < length / 2; ++i) {
                Complex &low = values[start + i];
                Complex &high = values[start + i + length / 2];
                const Complex turned = product(high, turn[i * (window / length)]);
                high = low - turned;
                low += turned;
            }
        }
    }
}

} // namespace

Spectrogram::Spectrogram(const std::vector<float> &samples)
{
    const std::vector<float> sound = decimated(samples);
    std::vector<float> shape(window);
    for (std::size_t i = 0; i < window; ++i)
        shape[i] = static_cast<float>(hann(i, window));
    std::vector<Complex> values(window);
    for (std::size_t at = 0; at + window <= sound.size(); at += hop) {
        for (std::size_t i = 0; i < window; ++i)
            values[i] = sound[at + i] * shape[i];
        transform(values);
        for (std::size_t bin = 0; bin < bins; ++bin)
            m_levels.push_back(std::max(floorLevel, 10 * std::log10(std::norm(values[bin]) + 1e-12F)));
    }
}

} // namespace navorin::demo
