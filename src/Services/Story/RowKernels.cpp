#include "Services/Story/RowKernels.h"

namespace navorin {

void sampleRowPortable(const uint16_t *row, RowTaps taps, uint8_t *target)
{
    constexpr uint32_t half = tapSteps * tapSteps / 2;
    for (size_t i = 0; i < taps.count; ++i) {
        const auto *pair = row + taps.index[i];
        const uint32_t weights = taps.weights[i];
        target[i] = uint8_t((pair[0] * (weights & 0xffff) + pair[1] * (weights >> 16) + half) / (2 * half));
    }
}

void blendRows(uint16_t *target, const uint8_t *a, const uint8_t *b, size_t count, int share)
{
    const auto second = uint16_t(share);
    const auto first = uint16_t(tapSteps - share);
    for (size_t i = 0; i < count; ++i)
        target[i] = uint16_t(a[i] * first + b[i] * second);
}

void mixRows(uint8_t *target, const uint8_t *a, const uint8_t *b, size_t count, int share)
{
    const auto second = uint16_t(share);
    const auto first = uint16_t(256 - share);
    for (size_t i = 0; i < count; ++i)
        target[i] = uint8_t(uint16_t(a[i] * first + b[i] * second + 128) >> 8);
}

void overlayRow(uint8_t *target, const uint8_t *color, const uint8_t *alpha, size_t count, int strength)
{
    constexpr uint32_t whole = 255 * 256;
    const auto share = uint32_t(strength);
    for (size_t i = 0; i < count; ++i) {
        const uint32_t sum = target[i] * (whole - alpha[i] * share) + color[i] * share * 255 + whole / 2;
        target[i] = uint8_t((sum * 257) >> 24); // by `whole`, near enough for every value here
    }
}

} // namespace navorin
