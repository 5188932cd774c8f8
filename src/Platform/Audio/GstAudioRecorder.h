#pragma once

#include "Platform/Audio/AudioRecorder.h"
#include "Platform/Tasks/MainQueue.h"

#include <QByteArray>

#include <chrono>

namespace navorin {

class ThreadGroup;

/// The desktop's default input through GStreamer. Each recording has a thread of its own, since a sound
/// server may take as long as it likes.
class GstAudioRecorder final : public AudioRecorder
{
public:
    struct Options
    {
        QByteArray source;                       ///< as on a gst-launch line; empty for the desktop's own
        std::chrono::milliseconds patience{900}; ///< until the first sound must have arrived

        /// The source from NAVORIN_AUDIO_SOURCE.
        static Options fromEnvironment();
    };

    explicit GstAudioRecorder(MainQueue &queue, Options options = Options::fromEnvironment());
    /// Waits for the microphone to be let go, but no longer than a few seconds.
    ~GstAudioRecorder() override;

    [[nodiscard]] QFuture<bool> requestPermission() override;
    [[nodiscard]] QFuture<std::shared_ptr<AudioRecording>> record(const QString &path,
                                                                  const RecordingSettings &settings) override;

private:
    MainQueue &m_queue;
    Options m_options;
    std::shared_ptr<ThreadGroup> m_threads;
};

} // namespace navorin
