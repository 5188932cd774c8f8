#pragma once

#include <stddef.h>
#include <stdint.h>

/// The inner loops of a frame. No header of the standard library: what is compiled for a newer processor must
/// not be what the linker keeps for all.
namespace navorin {

/// In how many steps the way from one sample to the next is divided.
inline constexpr int tapSteps = 128;

/// Where the samples of a row lie between those of another: each at `index`, and by the second of its two
/// weights, in 1/tapSteps, towards the next.
struct RowTaps
{
    const int32_t *index;
    const uint32_t *weights; ///< the first in the lower half
    size_t count;            ///< a multiple of 8
};

/// `row` holds values up to 255 * tapSteps, one more of them than the last index.
using SampleKernel = void (*)(const uint16_t *row, RowTaps taps, uint8_t *target);
void sampleRowPortable(const uint16_t *row, RowTaps taps, uint8_t *target);
/// Null if the processor, or the compiler's target, has no AVX2.
[[nodiscard]] SampleKernel avx2SampleKernel();

/// `share` from 0 for all of `a` to tapSteps for all of `b`; the result is tapSteps times as large.
void blendRows(uint16_t *target, const uint8_t *a, const uint8_t *b, size_t count, int share);
/// `share` from 0 for all of `a` to 256 for all of `b`.
void mixRows(uint8_t *target, const uint8_t *a, const uint8_t *b, size_t count, int share);
/// Lays a premultiplied row over another; `strength` up to 256.
void overlayRow(uint8_t *target, const uint8_t *color, const uint8_t *alpha, size_t count, int strength);

} // namespace navorin
