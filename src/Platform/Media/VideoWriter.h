#pragma once

#include <QSize>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace navorin {

/// A picture to be written: one plane of luma and two of colour difference, these of half the width and
/// height, in 8 bits of limited range after BT.709. The rows of a plane follow each other without gaps.
struct VideoFrame
{
    quint8 *luma = nullptr;
    quint8 *blue = nullptr;
    quint8 *red = nullptr;
};

struct VideoFormat
{
    QSize size; ///< even both ways
    int framesPerSecond = 0;
};

/// How a file came out. True in a condition if it is whole.
struct WriteResult
{
    bool isComplete = false;
    QString error; ///< the Persian text for a person; empty if there is nothing to tell

    explicit operator bool() const { return isComplete; }
};

/// Writes frames, evenly spaced, to an MPEG-4 file of H.264 that can be played while it is still being
/// fetched. Used by one thread, which it may block. Destroying it gives up what is not finished; a file
/// that was begun stays.
class VideoWriter
{
public:
    virtual ~VideoWriter() = default;

    /// False if there is no encoder, or the file cannot be made.
    [[nodiscard]] virtual bool start() = 0;
    /// Room for the next frame, with whatever was in it; absent if there is no memory.
    [[nodiscard]] virtual std::optional<VideoFrame> nextFrame() = 0;
    /// Hands over what nextFrame() gave, and waits while the encoder is behind. False once the file has
    /// failed or the writer was stopped: further frames are useless.
    virtual bool append() = 0;
    /// Waits until all is written.
    [[nodiscard]] virtual WriteResult finish() = 0;
};

/// Makes a writer for a file; `stop` ends its waiting.
using VideoWriterFactory = std::function<std::unique_ptr<VideoWriter>(
    const QString &path, const VideoFormat &format, const std::stop_token &stop)>;

/// The real one, which encodes with x264.
[[nodiscard]] std::unique_ptr<VideoWriter> makeVideoWriter(const QString &path, const VideoFormat &format,
                                                           const std::stop_token &stop);

} // namespace navorin
