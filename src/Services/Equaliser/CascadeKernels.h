#pragma once

// No header of the standard library: see StaggeredCascade.h.
#include "Services/Equaliser/Biquad.h"

#include <stddef.h>

namespace navorin::EqTap {

inline constexpr unsigned sectionCount = 5;

/// Filters `channels` channels in place; channel c of frame f is at `samples[f * stride + c]`, its first
/// section at `sections[c * sectionCount]`.
using CascadeKernel = void (*)(Biquad *sections, float *samples, size_t channels, size_t stride,
                               size_t count);

void filterPortable(Biquad *sections, float *samples, size_t channels, size_t stride, size_t count);
/// Null if the processor, or the compiler's target, has no AVX2.
[[nodiscard]] CascadeKernel avx2Kernel();

} // namespace navorin::EqTap
