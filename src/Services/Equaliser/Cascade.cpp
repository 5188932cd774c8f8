#include "Services/Equaliser/Cascade.h"

#include "Services/Equaliser/CascadeKernels.h"

#include <algorithm>

namespace navorin::EqTap {
namespace {

static_assert(eqBandCount == sectionCount && sizeof(Cascade) == sectionCount * sizeof(Biquad));

void filterScalar(Biquad *sections, float *samples, std::size_t channels, std::size_t stride,
                  std::size_t count)
{
    for (std::size_t frame = 0; frame < count; ++frame) {
        for (std::size_t channel = 0; channel < channels; ++channel) {
            float sample = samples[frame * stride + channel];
            for (std::size_t band = 0; band < sectionCount; ++band)
                sample = sections[channel * sectionCount + band].process(sample);
            samples[frame * stride + channel] = sample;
        }
    }
}

CascadeKernel kernel(FilterWay way)
{
    switch (way) {
    case FilterWay::Scalar:
        return filterScalar;
    case FilterWay::Portable:
        return filterPortable;
    case FilterWay::Avx2:
        break;
    }
    return avx2Kernel();
}

const CascadeKernel fastestKernel = avx2Kernel() ? avx2Kernel() : filterPortable;

void run(CascadeKernel kernel, std::span<Cascade> cascades, const Frames &frames)
{
    const auto channels = std::min(cascades.size(), frames.stride);
    if (channels > 0 && frames.count > 0)
        kernel(cascades.front().data(), frames.samples, channels, frames.stride, frames.count);
}

} // namespace

Cascade makeCascade(const EqGains &gains, double sampleRate)
{
    Cascade cascade;
    for (std::size_t band = 0; band < eqBandCount; ++band)
        cascade[band] = Biquad::peaking(eqBandCentres[band], gains[band], sampleRate);
    return cascade;
}

void filter(std::span<Cascade> cascades, const Frames &frames)
{
    run(fastestKernel, cascades, frames);
}

bool isAvailable(FilterWay way)
{
    return kernel(way) != nullptr;
}

void filter(FilterWay way, std::span<Cascade> cascades, const Frames &frames)
{
    run(kernel(way), cascades, frames);
}

} // namespace navorin::EqTap
