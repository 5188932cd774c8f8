#include "Platform/Audio/AudioTap.h"

#include <utility>

namespace navorin {
namespace {

constexpr int statusBadCallbacks = -50;

}

int AudioTap::create(const Callbacks &callbacks, std::shared_ptr<AudioTap> &tap)
{
    if (!callbacks.init || !callbacks.prepare || !callbacks.process || !callbacks.unprepare ||
        !callbacks.finalize)
        return statusBadCallbacks;
    tap = std::shared_ptr<AudioTap>(new AudioTap(callbacks));
    callbacks.init(*tap);
    return statusOk;
}

AudioTap::AudioTap(const Callbacks &callbacks)
    : m_callbacks(callbacks)
{
}

AudioTap::~AudioTap()
{
    m_callbacks.finalize(*this);
}

AudioTap::SourceResult AudioTap::sourceAudio(qint64 frames, AudioBufferList buffers)
{
    constexpr int statusNoSource = -1;
    return m_source ? m_source->pull(frames, buffers) : SourceResult{statusNoSource, 0, 0};
}

void AudioTap::prepare(const AudioStreamDescription &format)
{
    m_callbacks.prepare(*this, format);
}

AudioTap::ProcessResult AudioTap::process(qint64 frames, quint32 flags, AudioBufferList buffers,
                                          SourceAudio &source)
{
    m_source = &source;
    const auto result = m_callbacks.process(*this, frames, flags, buffers);
    m_source = nullptr;
    return result;
}

void AudioTap::unprepare()
{
    m_callbacks.unprepare(*this);
}

} // namespace navorin
