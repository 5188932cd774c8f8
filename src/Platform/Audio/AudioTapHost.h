#pragma once

#include "Platform/Audio/AudioTap.h"

#include <atomic>
#include <memory>
#include <mutex>

namespace navorin {

/// Drives the audio tap of one media item. A tap is put in from any thread, also while sound is running; the
/// audio thread takes it over at its next buffer, and from then on prepares, runs and unprepares it alone.
/// The lock between the two is held for the exchange of one pointer.
class AudioTapHost
{
public:
    /// Any thread. The tap takes effect at the next buffer; the one it replaces is let go then.
    void attach(std::shared_ptr<AudioTap> tap);

    // Audio thread, or the thread that has stopped it.

    /// Takes over a newly attached tap. True if there is a tap to run.
    bool update();
    void setFormat(double sampleRate, quint32 channels);
    /// The next buffer does not follow the last one.
    void markStartOfStream() { m_startOfStream = true; }
    /// Runs the tap on interleaved 32-bit float samples, in place. Frames that the tap does not deliver
    /// become silence.
    void process(float *samples, qint64 frames);
    /// No more buffers will come in the present format.
    void stop();

private:
    void prepare();
    void unprepare();

    std::mutex m_mutex;
    std::shared_ptr<AudioTap> m_attached;
    std::atomic_bool m_changed = false;

    std::shared_ptr<AudioTap> m_tap;
    AudioStreamDescription m_format;
    bool m_prepared = false;
    bool m_startOfStream = true;
};

} // namespace navorin
