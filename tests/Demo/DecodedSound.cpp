#include "DecodedSound.h"

#include "Platform/Audio/GstPointers.h"

#include <QTemporaryFile>

#include <gst/app/gstappsink.h>

#include <cmath>
#include <vector>

namespace navorin {

namespace {

constexpr double rate = 44'100;

struct Meter
{
    qint64 crossings = 0;
    float before = 0;
    double energy = 0;
};

void addBuffer(GstBuffer *buffer, DecodedSound &sound, Meter &meter)
{
    std::vector<float> samples(gst_buffer_get_size(buffer) / sizeof(float));
    gst_buffer_extract(buffer, 0, samples.data(), samples.size() * sizeof(float));
    for (const float sample : samples) {
        meter.energy += double(sample) * double(sample);
        meter.crossings += (meter.before < 0) != (sample < 0) ? 1 : 0;
        meter.before = sample;
    }
    sound.seconds += double(samples.size()) / rate;
    sound.level = std::sqrt(meter.energy / (sound.seconds * rate));
    sound.position = double(GST_BUFFER_PTS(buffer)) / GST_SECOND + double(samples.size()) / rate;
    sound.hertz = double(meter.crossings) / 2 / sound.seconds;
}

QString errorOf(GstElement *pipeline)
{
    const GstPtr<GstBus> bus(gst_element_get_bus(pipeline));
    const GstPtr<GstMessage> message(gst_bus_pop_filtered(bus.get(), GST_MESSAGE_ERROR));
    if (!message)
        return {};
    GError *error = nullptr;
    gst_message_parse_error(message.get(), &error, nullptr);
    return QString::fromUtf8(GstPtr<GError>(error)->message);
}

} // namespace

DecodedSound decodeSound(const QByteArray &bytes)
{
    QTemporaryFile file;
    if (!file.open() || file.write(bytes) != bytes.size() || !file.flush())
        return {.error = file.errorString()};
    gst_init(nullptr, nullptr);
    const QByteArray description =
        "filesrc location=" + file.fileName().toUtf8() +
        " ! decodebin ! audioconvert ! audioresample ! appsink name=out sync=false max-buffers=8 "
        "caps=audio/x-raw,format=F32LE,rate=44100,channels=1";
    const GstPtr<GstElement> pipeline(gst_parse_launch(description.constData(), nullptr));
    const GstPtr<GstElement> sink(gst_bin_get_by_name(GST_BIN(pipeline.get()), "out"));
    gst_element_set_state(pipeline.get(), GST_STATE_PLAYING);
    DecodedSound sound;
    Meter meter;
    while (GstSample *const sample =
               gst_app_sink_try_pull_sample(GST_APP_SINK(sink.get()), 20 * GST_SECOND)) {
        addBuffer(gst_sample_get_buffer(sample), sound, meter);
        gst_sample_unref(sample);
    }
    sound.error = errorOf(pipeline.get());
    gst_element_set_state(pipeline.get(), GST_STATE_NULL);
    return sound;
}

} // namespace navorin
