#include "Encoder.h"

#include "GStreamerPlugins.h"
#include "OggPages.h"

#include <QStringBuilder>

#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>
#include <gst/gst.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>

namespace navorin::demo {

namespace {

constexpr int mp3FrameSamples = 1152;
constexpr int aacFrameSamples = 1024;

struct Unref
{
    void operator()(gpointer object) const { gst_object_unref(object); }
};
struct UnrefMessage
{
    void operator()(GstMessage *message) const { gst_message_unref(message); }
};
struct UnrefSample
{
    void operator()(GstSample *sample) const { gst_sample_unref(sample); }
};

using Element = std::unique_ptr<GstElement, Unref>;
using Receive = std::function<void(QByteArray bytes, bool header)>;

QByteArray bytesOf(GstBuffer *buffer)
{
    QByteArray bytes(static_cast<qsizetype>(gst_buffer_get_size(buffer)), Qt::Uninitialized);
    gst_buffer_extract(buffer, 0, bytes.data(), gst_buffer_get_size(buffer));
    return bytes;
}

GstFlowReturn takeSample(GstAppSink *sink, gpointer receive)
{
    const std::unique_ptr<GstSample, UnrefSample> sample(gst_app_sink_pull_sample(sink));
    if (!sample)
        return GST_FLOW_EOS;
    GstBuffer *const buffer = gst_sample_get_buffer(sample.get());
    (*static_cast<const Receive *>(receive))(bytesOf(buffer),
                                             GST_BUFFER_FLAG_IS_SET(buffer, GST_BUFFER_FLAG_HEADER));
    return GST_FLOW_OK;
}

void push(GstElement *element, const SampleSource &source, const std::atomic<bool> &cancelled)
{
    std::uint64_t pushed = 0;
    for (Samples block = source(); !block.empty() && !cancelled; block = source()) {
        const std::size_t size = block.size() * sizeof(float);
        GstBuffer *const buffer = gst_buffer_new_allocate(nullptr, size, nullptr);
        gst_buffer_fill(buffer, 0, block.data(), size);
        GST_BUFFER_PTS(buffer) = gst_util_uint64_scale(pushed, GST_SECOND, sampleRate);
        pushed += block.size() / 2;
        gst_app_src_push_buffer(GST_APP_SRC(element), buffer);
    }
    gst_app_src_end_of_stream(GST_APP_SRC(element));
}

/// True when everything went through; false on an error or when cancelled.
bool waitForEnd(GstElement *pipeline, const std::atomic<bool> &cancelled)
{
    const std::unique_ptr<GstBus, Unref> bus(gst_element_get_bus(pipeline));
    while (!cancelled) {
        const std::unique_ptr<GstMessage, UnrefMessage> message(gst_bus_timed_pop_filtered(
            bus.get(), 100 * GST_MSECOND, GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR)));
        if (message)
            return GST_MESSAGE_TYPE(message.get()) == GST_MESSAGE_EOS;
    }
    return false;
}

/// Runs samples through the elements and hands over every buffer that comes out, on a thread of the pipeline.
bool encode(const SampleSource &source, const char *elements, Receive receive,
            const std::atomic<bool> &cancelled)
{
    loadPlugins(
        {"coreelements", "app", "audioconvert", "lame", "audioparsers", "voaacenc", "vorbis", "isomp4"});
    const std::string description =
        std::string("appsrc name=in format=time max-bytes=0 "
                    "caps=audio/x-raw,format=F32LE,layout=interleaved,rate=44100,channels=2 "
                    "! audioconvert ! ") +
        elements + " ! appsink name=out sync=false";
    GError *error = nullptr;
    const Element pipeline(gst_parse_launch(description.c_str(), &error));
    if (error != nullptr) {
        std::fprintf(stderr, "cannot encode: %s\n", error->message);
        g_clear_error(&error);
        return false;
    }
    const Element in(gst_bin_get_by_name(GST_BIN(pipeline.get()), "in"));
    const Element out(gst_bin_get_by_name(GST_BIN(pipeline.get()), "out"));
    GstAppSinkCallbacks callbacks{};
    callbacks.new_sample = takeSample;
    gst_app_sink_set_callbacks(GST_APP_SINK(out.get()), &callbacks, &receive, nullptr);
    gst_element_set_state(pipeline.get(), GST_STATE_PLAYING);
    push(in.get(), source, cancelled);
    const bool complete = waitForEnd(pipeline.get(), cancelled);
    gst_element_set_state(pipeline.get(), GST_STATE_NULL);
    return complete;
}

/// Counts what each Vorbis packet adds: a quarter of its block and of the one before it.
class VorbisCounter
{
public:
    void setBlocks(const VorbisBlocks &blocks) { m_blocks = blocks; }

    int samplesOf(const QByteArray &packet)
    {
        // the encoder has two modes, and the second bit of a packet names its own
        const bool isLong = !packet.isEmpty() && (packet[0] & 2) != 0;
        const int block = isLong ? m_blocks.longBlock : m_blocks.shortBlock;
        const int samples = m_before == 0 ? 0 : m_before / 4 + block / 4;
        m_before = block;
        return samples;
    }

private:
    VorbisBlocks m_blocks;
    int m_before = 0;
};

bool encodeVorbis(const SampleSource &source, FrameList &frames, const std::atomic<bool> &cancelled)
{
    std::vector<QByteArray> headers;
    VorbisCounter counter;
    const auto receive = [&](const QByteArray &bytes, bool header) {
        if (header) {
            headers.push_back(bytes);
            counter.setBlocks(vorbisBlocks(headers.front()));
            frames.setHeaders(headers);
        } else if (!bytes.isEmpty()) {
            frames.append({bytes, counter.samplesOf(bytes)});
        }
    };
    return encode(source, "vorbisenc quality=0.4", receive, cancelled);
}

void appendSample(QByteArray &bytes, float sample)
{
    const auto value = static_cast<std::int16_t>(std::lround(std::clamp(sample, -1.0F, 1.0F) * 32767));
    bytes.append(static_cast<char>(value & 0xFF));
    bytes.append(static_cast<char>(value >> 8));
}

} // namespace

void encodeFrames(const SampleSource &source, Codec codec, FrameList &frames,
                  const std::atomic<bool> &cancelled)
{
    if (codec == Codec::Vorbis) {
        frames.finish(!encodeVorbis(source, frames, cancelled));
        return;
    }
    const bool mp3 = codec == Codec::Mp3;
    const int frameSamples = mp3 ? mp3FrameSamples : aacFrameSamples;
    const char *const elements =
        mp3 ? "lamemp3enc target=bitrate cbr=true bitrate=128 encoding-engine-quality=fast ! mpegaudioparse"
            : "voaacenc bitrate=128000 ! aacparse ! audio/mpeg,stream-format=adts";
    const auto receive = [&frames, frameSamples](QByteArray bytes, bool) {
        frames.append({std::move(bytes), frameSamples});
    };
    frames.finish(!encode(source, elements, receive, cancelled));
}

QByteArray encodeMp4(const SampleSource &source, const std::atomic<bool> &cancelled)
{
    QByteArray file;
    const auto receive = [&file](const QByteArray &bytes, bool) { file += bytes; };
    const bool complete =
        encode(source, "voaacenc bitrate=128000 ! aacparse ! mp4mux faststart=true", receive, cancelled);
    return complete ? file : QByteArray();
}

QByteArray encodeWav(const SampleSource &source)
{
    const auto little = [](std::uint32_t value, int bytes) {
        QByteArray out;
        for (int i = 0; i < bytes; ++i)
            out.append(static_cast<char>((value >> (8 * i)) & 0xFFU));
        return out;
    };
    QByteArray data;
    for (Samples block = source(); !block.empty(); block = source()) {
        for (const float sample : block)
            appendSample(data, sample);
    }
    const auto size = static_cast<std::uint32_t>(data.size());
    return QByteArray("RIFF") + little(size + 36, 4) + "WAVEfmt " + little(16, 4) + little(1, 2) +
           little(2, 2) + little(sampleRate, 4) + little(sampleRate * 4, 4) + little(4, 2) + little(16, 2) +
           "data" + little(size, 4) + data;
}

} // namespace navorin::demo
