#pragma once

#include <QFuture>
#include <QString>

#include <memory>

namespace navorin {

/// How a recording is encoded: AAC in an MPEG-4 file.
struct RecordingSettings
{
    int sampleRate = 44'100; ///< hertz
    int channels = 1;
    int bitRate = 128'000; ///< bits per second
};

/// A recording under way. Destroying it ends it at once and leaves whatever is in the file so far.
class AudioRecording
{
public:
    virtual ~AudioRecording() = default;

    /// Ends the recording; finishes when the file is complete, also when the microphone went away meanwhile.
    /// Once only. Never fails: a file that cannot be completed is found out by who reads it.
    [[nodiscard]] virtual QFuture<void> stop() = 0;
};

/// The microphone. Everything else goes on sounding while it is listened to. UI thread only; no member waits.
class AudioRecorder
{
public:
    virtual ~AudioRecorder() = default;

    /// Whether there is a microphone and this program may listen to it. Answers within a second, also where
    /// the desktop does not.
    [[nodiscard]] virtual QFuture<bool> requestPermission() = 0;

    /// Begins to record into a new file at `path`, in place of one that is there. Finishes when the first
    /// sound has arrived; with null, and without a file, if none can.
    [[nodiscard]] virtual QFuture<std::shared_ptr<AudioRecording>>
    record(const QString &path, const RecordingSettings &settings) = 0;
};

} // namespace navorin
