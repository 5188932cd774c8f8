#include "Recognition/SnippetDecoder.h"

#include "GStreamerPlugins.h"

#include <QTemporaryFile>

#include <gst/app/gstappsink.h>
#include <gst/gst.h>

#include <memory>
#include <string>

namespace navorin::demo {

namespace {

constexpr std::size_t mostSamples = std::size_t{20} * 44'100;
constexpr GstClockTime step = 100 * GST_MSECOND;
constexpr int mostEmptySteps = 50;

struct Unref
{
    void operator()(gpointer object) const { gst_object_unref(object); }
    void operator()(GstSample *sample) const { gst_sample_unref(sample); }
    void operator()(GstMessage *message) const { gst_message_unref(message); }
};
template <typename T>
using Owned = std::unique_ptr<T, Unref>;

void append(std::vector<float> &samples, GstBuffer *buffer)
{
    const std::size_t before = samples.size();
    samples.resize(before + gst_buffer_get_size(buffer) / sizeof(float));
    gst_buffer_extract(buffer, 0, samples.data() + before, (samples.size() - before) * sizeof(float));
}

bool hasFailed(GstElement *pipeline)
{
    const Owned<GstBus> bus(gst_element_get_bus(pipeline));
    return Owned<GstMessage>(gst_bus_pop_filtered(bus.get(), GST_MESSAGE_ERROR)) != nullptr;
}

std::vector<float> samplesFrom(GstElement *pipeline)
{
    const Owned<GstElement> out(gst_bin_get_by_name(GST_BIN(pipeline), "out"));
    GstAppSink *const sink = GST_APP_SINK(out.get());
    std::vector<float> samples;
    for (int empty = 0; samples.size() < mostSamples && empty < mostEmptySteps;) {
        const Owned<GstSample> sample(gst_app_sink_try_pull_sample(sink, step));
        if (sample)
            append(samples, gst_sample_get_buffer(sample.get()));
        else if (gst_app_sink_is_eos(sink) != FALSE || hasFailed(pipeline))
            break;
        else
            ++empty;
    }
    return samples;
}

/// From a file on the disk: its index may stand at the end.
Owned<GstElement> pipelineFor(const QString &path)
{
    loadPlugins({"coreelements", "app", "audioconvert", "audioresample", "audioparsers", "isomp4", "libav"});
    GError *error = nullptr;
    Owned<GstElement> pipeline(
        gst_parse_launch("filesrc name=in ! qtdemux ! aacparse ! avdec_aac ! audioconvert ! audioresample ! "
                         "appsink name=out sync=false max-buffers=16 "
                         "caps=audio/x-raw,format=F32LE,layout=interleaved,rate=44100,channels=1",
                         &error));
    if (error != nullptr)
        std::fprintf(stderr, "cannot decode: %s\n", error->message);
    g_clear_error(&error);
    if (pipeline) {
        const Owned<GstElement> in(gst_bin_get_by_name(GST_BIN(pipeline.get()), "in"));
        g_object_set(in.get(), "location", path.toUtf8().constData(), nullptr);
    }
    return pipeline;
}

} // namespace

std::vector<float> decodeSnippet(const QByteArray &file)
{
    QTemporaryFile copy;
    std::vector<float> samples;
    if (!copy.open() || copy.write(file) != file.size() || !copy.flush())
        return samples;
    const Owned<GstElement> pipeline = pipelineFor(copy.fileName());
    if (!pipeline)
        return samples;
    gst_element_set_state(pipeline.get(), GST_STATE_PLAYING);
    samples = samplesFrom(pipeline.get());
    gst_element_set_state(pipeline.get(), GST_STATE_NULL);
    return samples;
}

} // namespace navorin::demo
