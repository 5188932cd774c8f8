#pragma once

#include <QtGlobal>

#include <memory>
#include <span>

namespace navorin {

/// The format of decoded sound, as a tap is told of it before its first buffer.
struct AudioStreamDescription
{
    static constexpr quint32 flagIsFloat = 1U << 0;
    static constexpr quint32 flagIsNonInterleaved = 1U << 5;

    double sampleRate = 0; ///< frames per second
    quint32 formatFlags = 0;
    quint32 channelsPerFrame = 0;
    quint32 bitsPerChannel = 0;
};

/// One run of samples: all channels of interleaved sound, or one channel of planar sound.
struct AudioBuffer
{
    quint32 numberChannels = 0;
    quint32 dataByteSize = 0;
    void *data = nullptr;
};

using AudioBufferList = std::span<AudioBuffer>;

/// A hook that sees the decoded sound of one media item, in order and in place.
///
/// The host (the element in the audio pipeline) drives a tap through init, prepare, process any number of
/// times, unprepare and finalize; a later prepare is like the first. The host never runs prepare, process and
/// unprepare of one tap at the same time. `process` runs on the audio thread; the others on whatever thread
/// the host chooses. The address of the tap is its identity from init to finalize.
class AudioTap
{
public:
    static constexpr quint32 flagStartOfStream = 0x100;
    static constexpr quint32 flagEndOfStream = 0x200;
    static constexpr int statusOk = 0;

    /// What `process` gives back to the host.
    struct ProcessResult
    {
        qint64 frames = 0;
        quint32 flags = 0;
    };
    /// What pulling the source gives.
    struct SourceResult
    {
        int status = statusOk;
        qint64 frames = 0;
        quint32 flags = 0;
    };
    /// Fills the buffer list with up to `frames` frames of the item's decoded sound.
    struct SourceAudio
    {
        virtual SourceResult pull(qint64 frames, AudioBufferList buffers) = 0;

    protected:
        ~SourceAudio() = default;
    };

    /// The five callbacks. All must be set.
    struct Callbacks
    {
        void (*init)(AudioTap &tap) = nullptr;
        void (*prepare)(AudioTap &tap, const AudioStreamDescription &format) = nullptr;
        ProcessResult (*process)(AudioTap &tap, qint64 frames, quint32 flags,
                                 AudioBufferList buffers) = nullptr;
        void (*unprepare)(AudioTap &tap) = nullptr;
        void (*finalize)(AudioTap &tap) = nullptr;
    };

    /// Makes a tap and calls `init`. On a status other than statusOk no tap is made and nothing is called.
    [[nodiscard]] static int create(const Callbacks &callbacks, std::shared_ptr<AudioTap> &tap);

    AudioTap(const AudioTap &) = delete;
    AudioTap &operator=(const AudioTap &) = delete;
    ~AudioTap();

    /// To be called by `process`, on the audio thread: the sound to be filtered.
    [[nodiscard]] SourceResult sourceAudio(qint64 frames, AudioBufferList buffers);

    /// For the host: a new format.
    void prepare(const AudioStreamDescription &format);
    /// For the host: one buffer list; `source` is what sourceAudio() reads during the call.
    ProcessResult process(qint64 frames, quint32 flags, AudioBufferList buffers, SourceAudio &source);
    /// For the host: the format is gone.
    void unprepare();

private:
    explicit AudioTap(const Callbacks &callbacks);

    Callbacks m_callbacks;
    SourceAudio *m_source = nullptr;
};

} // namespace navorin
