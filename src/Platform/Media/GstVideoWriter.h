#pragma once

#include "Platform/Media/GstWatch.h"
#include "Platform/Media/VideoWriter.h"

namespace navorin {

struct GstBufferUnref
{
    void operator()(GstBuffer *buffer) const { gst_buffer_unref(buffer); }
};

/// Encodes with x264.
class GstVideoWriter final : public VideoWriter
{
public:
    GstVideoWriter(const QString &path, const VideoFormat &format, const std::stop_token &stop);
    ~GstVideoWriter() override;

    /// What encodes and writes: frames go into the element "frames", and "file" wants a location.
    [[nodiscard]] static const char *pipeline();
    /// What the frames are said to be.
    [[nodiscard]] static GstPtr<GstCaps> caps(const VideoFormat &format);

    [[nodiscard]] bool start() override;
    [[nodiscard]] std::optional<VideoFrame> nextFrame() override;
    bool append() override;
    [[nodiscard]] WriteResult finish() override;

private:
    static GstPadProbeReturn onFrameTaken(GstPad *pad, GstPadProbeInfo *info, gpointer data);
    [[nodiscard]] bool makePool(GstCaps *caps);
    void unmap();

    const QString m_path;
    const VideoFormat m_format;
    GstWatch m_watch;
    GstPtr<GstElement> m_entry;
    GstPtr<GstBufferPool> m_pool;
    std::unique_ptr<GstBuffer, GstBufferUnref> m_frame;
    GstMapInfo m_mapping{};
    quint64 m_appended = 0;
    int m_waiting = 0; ///< frames that the encoder has not taken yet; changed through m_watch
};

} // namespace navorin
