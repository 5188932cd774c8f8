#include "Platform/Audio/AudioTapHost.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace navorin {
namespace {

/// The samples lie where the tap will filter them, so that a pull copies only for a tap that brings buffers
/// of its own.
struct InPlaceSource final : AudioTap::SourceAudio
{
    AudioTap::SourceResult pull(qint64 frames, AudioBufferList buffers) override
    {
        const auto taken = std::clamp<qint64>(frames, 0, available);
        const auto bytes = size_t(taken) * channels * sizeof(float);
        if (!buffers.empty() && buffers[0].data && buffers[0].data != samples)
            std::memcpy(buffers[0].data, samples, std::min<size_t>(bytes, buffers[0].dataByteSize));
        return {AudioTap::statusOk, taken, flags};
    }

    float *samples = nullptr;
    qint64 available = 0;
    quint32 channels = 0;
    quint32 flags = 0;
};

} // namespace

void AudioTapHost::attach(std::shared_ptr<AudioTap> tap)
{
    const std::scoped_lock lock(m_mutex);
    m_attached.swap(tap); // what was waiting unused is let go by the caller's copy, after the lock
    m_changed.store(true, std::memory_order_release);
}

bool AudioTapHost::update()
{
    if (m_changed.load(std::memory_order_acquire)) {
        unprepare();
        std::shared_ptr<AudioTap> next;
        {
            const std::scoped_lock lock(m_mutex);
            m_changed.store(false, std::memory_order_relaxed);
            next = std::exchange(m_attached, nullptr);
        }
        m_tap = std::move(next);
        m_startOfStream = true;
    }
    return m_tap != nullptr;
}

void AudioTapHost::setFormat(double sampleRate, quint32 channels)
{
    unprepare();
    m_format = {sampleRate, AudioStreamDescription::flagIsFloat, channels, 32};
    m_startOfStream = true;
}

void AudioTapHost::process(float *samples, qint64 frames)
{
    if (!m_tap)
        return;
    prepare();
    InPlaceSource source;
    source.samples = samples;
    source.available = frames;
    source.channels = m_format.channelsPerFrame;
    source.flags = std::exchange(m_startOfStream, false) ? AudioTap::flagStartOfStream : 0;

    const auto frameSize = qint64(m_format.channelsPerFrame) * qint64(sizeof(float));
    AudioBuffer buffer{m_format.channelsPerFrame, quint32(frames * frameSize), samples};
    const auto result = m_tap->process(frames, 0, AudioBufferList(&buffer, 1), source);
    const auto delivered = std::clamp<qint64>(result.frames, 0, frames);
    std::fill(samples + delivered * m_format.channelsPerFrame, samples + frames * m_format.channelsPerFrame,
              0.0F);
}

void AudioTapHost::stop()
{
    unprepare();
    m_startOfStream = true;
}

void AudioTapHost::prepare()
{
    if (!std::exchange(m_prepared, true))
        m_tap->prepare(m_format);
}

void AudioTapHost::unprepare()
{
    if (std::exchange(m_prepared, false))
        m_tap->unprepare();
}

} // namespace navorin
