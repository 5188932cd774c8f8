#include "Platform/Media/GstVideoWriter.h"

#include "Platform/Storage/FileStore.h"

#include <QFile>

namespace navorin {
namespace {

/// Enough to keep the encoder busy while a frame is drawn.
constexpr int mostWaiting = 8;

guint frameBytes(QSize size)
{
    return guint(size.width() * size.height() * 3 / 2);
}

} // namespace

const char *GstVideoWriter::pipeline()
{
    return "appsrc name=frames format=time max-bytes=0 "
           "! x264enc pass=qual quantizer=23 speed-preset=veryfast key-int-max=48 "
           "! h264parse ! mp4mux faststart=true ! filesink name=file";
}

GstPtr<GstCaps> GstVideoWriter::caps(const VideoFormat &format)
{
    return GstPtr<GstCaps>(gst_caps_new_simple(
        "video/x-raw", "format", G_TYPE_STRING, "I420", "width", G_TYPE_INT, format.size.width(), "height",
        G_TYPE_INT, format.size.height(), "framerate", GST_TYPE_FRACTION, format.framesPerSecond, 1,
        "pixel-aspect-ratio", GST_TYPE_FRACTION, 1, 1, "interlace-mode", G_TYPE_STRING, "progressive",
        "colorimetry", G_TYPE_STRING, "bt709", "chroma-site", G_TYPE_STRING, "jpeg", nullptr));
}

GstVideoWriter::GstVideoWriter(const QString &path, const VideoFormat &format, const std::stop_token &stop)
    : m_path(path)
    , m_format(format)
    , m_watch(pipeline(), stop)
{
}

GstVideoWriter::~GstVideoWriter()
{
    unmap();
    m_frame.reset();
    if (m_watch.pipeline())
        (void)m_watch.setState(GST_STATE_NULL);
    if (m_pool)
        gst_buffer_pool_set_active(m_pool.get(), FALSE);
}

bool GstVideoWriter::start()
{
    if (!m_watch.pipeline())
        return false;
    m_entry = m_watch.element("frames");
    const auto caps = GstVideoWriter::caps(m_format);
    g_object_set(m_entry.get(), "caps", caps.get(), nullptr);
    g_object_set(m_watch.element("file").get(), "location", QFile::encodeName(m_path).constData(), nullptr);
    const GstPtr<GstPad> output(gst_element_get_static_pad(m_entry.get(), "src"));
    gst_pad_add_probe(output.get(), GST_PAD_PROBE_TYPE_BUFFER, onFrameTaken, this, nullptr);
    return makePool(caps.get()) && m_watch.setState(GST_STATE_PLAYING) && !m_watch.hasFailed();
}

bool GstVideoWriter::makePool(GstCaps *caps)
{
    // Without an upper limit: the encoder keeps as many frames as it looks ahead.
    m_pool.reset(gst_buffer_pool_new());
    auto *config = gst_buffer_pool_get_config(m_pool.get());
    gst_buffer_pool_config_set_params(config, caps, frameBytes(m_format.size), 0, 0);
    return gst_buffer_pool_set_config(m_pool.get(), config) && gst_buffer_pool_set_active(m_pool.get(), TRUE);
}

std::optional<VideoFrame> GstVideoWriter::nextFrame()
{
    GstBuffer *buffer = nullptr;
    if (gst_buffer_pool_acquire_buffer(m_pool.get(), &buffer, nullptr) != GST_FLOW_OK)
        return {};
    m_frame.reset(buffer);
    if (!gst_buffer_map(buffer, &m_mapping, GST_MAP_WRITE)) {
        m_mapping = {};
        return {};
    }
    const auto pixels = m_format.size.width() * m_format.size.height();
    return VideoFrame{m_mapping.data, m_mapping.data + pixels, m_mapping.data + pixels + pixels / 4};
}

void GstVideoWriter::unmap()
{
    if (m_mapping.memory)
        gst_buffer_unmap(m_frame.get(), &m_mapping);
    m_mapping = {};
}

bool GstVideoWriter::append()
{
    unmap();
    const auto time = [this](quint64 frame) {
        return gst_util_uint64_scale(frame, GST_SECOND, guint64(m_format.framesPerSecond));
    };
    GST_BUFFER_PTS(m_frame.get()) = time(m_appended);
    GST_BUFFER_DURATION(m_frame.get()) = time(m_appended + 1) - time(m_appended);
    ++m_appended;
    m_watch.change([this] { ++m_waiting; });
    GstFlowReturn result = GST_FLOW_OK;
    g_signal_emit_by_name(m_entry.get(), "push-buffer", m_frame.get(), &result);
    m_frame.reset();
    m_watch.wait([this] { return m_waiting < mostWaiting; });
    return result == GST_FLOW_OK && !m_watch.isOver();
}

WriteResult GstVideoWriter::finish()
{
    GstFlowReturn result = GST_FLOW_OK;
    g_signal_emit_by_name(m_entry.get(), "end-of-stream", &result);
    m_watch.wait([] { return false; });
    const bool isComplete = m_watch.hasEnded() && !m_watch.isOver();
    (void)m_watch.setState(GST_STATE_NULL); // closes the file
    if (m_watch.ranOutOfSpace())
        return {false, FileResult{FileResult::Failure::NoSpace}.description()};
    return {isComplete, {}};
}

GstPadProbeReturn GstVideoWriter::onFrameTaken(GstPad *, GstPadProbeInfo *, gpointer data)
{
    auto *self = static_cast<GstVideoWriter *>(data);
    self->m_watch.change([self] { --self->m_waiting; });
    return GST_PAD_PROBE_OK;
}

std::unique_ptr<VideoWriter> makeVideoWriter(const QString &path, const VideoFormat &format,
                                             const std::stop_token &stop)
{
    return std::make_unique<GstVideoWriter>(path, format, stop);
}

} // namespace navorin
