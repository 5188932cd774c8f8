#include "Services/Equaliser/Ctx.h"

#include "Services/Equaliser/IntegerSamples.h"

#include <algorithm>
#include <utility>

namespace navorin::EqTap {
namespace {

/// Equal to no five gains.
constexpr float formatIsNew = -1.0F;

bool holds(const AudioBuffer &buffer, std::size_t frames, std::size_t bytesPerSample)
{
    return buffer.data && buffer.dataByteSize / (bytesPerSample * channelsOf(buffer)) >= frames;
}

template <typename Integer>
void filterIntegers(std::span<Cascade> cascades, Integer *samples, std::size_t stride, std::size_t frames,
                    bool interleaved)
{
    const auto channels = std::min(cascades.size(), stride);
    for (std::size_t frame = 0; frame < frames; ++frame) {
        for (std::size_t channel = 0; channel < channels; ++channel) {
            Integer &sample = samples[frame * stride + channel];
            sample = fromFloat<Integer>(process(cascades[channel], toFloat(sample)), interleaved);
        }
    }
}

} // namespace

void Ctx::setup(const AudioStreamDescription &format)
{
    floatFormat = format.formatFlags & AudioStreamDescription::flagIsFloat;
    interleaved = !(format.formatFlags & AudioStreamDescription::flagIsNonInterleaved);
    sampleRate = format.sampleRate;
    channels = std::max<std::size_t>(format.channelsPerFrame, 1);
    bitsPerSample = format.bitsPerChannel;
    applied = {formatIsNew};
    cascades.clear();
}

void Ctx::sync(const SnapshotBox &box)
{
    enabled = box.enabled;
    gains = box.gains;
    if (std::ranges::equal(applied, *gains) && cascades.size() == channels)
        return;
    cascades.assign(channels, makeCascade(*gains, sampleRate));
    applied.assign(gains->begin(), gains->end());
}

void Ctx::resetCascadeState()
{
    for (Cascade &cascade : cascades)
        for (Biquad &section : cascade)
            section.reset();
}

bool Ctx::filterBuffer(std::size_t index, const AudioBuffer &buffer, qint64 frames)
{
    if (!floatFormat && bitsPerSample != 16 && bitsPerSample != 32)
        return false;
    const auto count = std::size_t(std::max<qint64>(frames, 0));
    if (!holds(buffer, count, !floatFormat && bitsPerSample == 16 ? sizeof(qint16) : sizeof(float)))
        return false;
    if (!interleaved && index >= cascades.size())
        return false;
    const auto mine = interleaved ? std::span(cascades) : std::span(cascades).subspan(index, 1);
    const auto stride = interleaved ? channelsOf(buffer) : 1;
    if (floatFormat)
        filter(mine, {static_cast<float *>(buffer.data), stride, count});
    else if (bitsPerSample == 16)
        filterIntegers(mine, static_cast<qint16 *>(buffer.data), stride, count, interleaved);
    else
        filterIntegers(mine, static_cast<qint32 *>(buffer.data), stride, count, interleaved);
    return true;
}

void CtxStore::insert(const AudioTap &tap)
{
    const std::scoped_lock lock(m_lock);
    m_map.insert_or_assign(&tap, std::make_shared<Ctx>());
}

std::shared_ptr<Ctx> CtxStore::find(const AudioTap &tap) const
{
    const std::scoped_lock lock(m_lock);
    const auto found = m_map.find(&tap);
    return found != m_map.end() ? found->second : nullptr;
}

void CtxStore::remove(const AudioTap &tap)
{
    const std::scoped_lock lock(m_lock);
    m_map.erase(&tap);
}

CtxStore &ctxStore()
{
    // never destroyed: a tap may outlive the end of main
    static auto &store = *new CtxStore;
    return store;
}

} // namespace navorin::EqTap
