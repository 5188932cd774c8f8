#include "Peers.h"

#include <gst/gst.h>

#include <memory>
#include <string>

namespace navorin::bench {
namespace {

struct Unref
{
    void operator()(GstElement *element) const { gst_object_unref(element); }
};
using Pipeline = std::unique_ptr<GstElement, Unref>;

Pipeline makePipeline(const std::string &filter)
{
    const std::string description =
        "audiotestsrc wave=saw num-buffers=" + std::to_string(blocksPerRun) +
        " samplesperbuffer=" + std::to_string(framesPerBlock) +
        " ! audio/x-raw,format=F32LE,channels=2,rate=" + std::to_string(sampleRate) + " ! " + filter +
        " ! fakesink sync=false";
    return Pipeline(gst_parse_launch(description.c_str(), nullptr));
}

void setBands(GstElement *pipeline)
{
    const auto equalizer = Pipeline(gst_bin_get_by_name(GST_BIN(pipeline), "eq"));
    for (std::size_t band = 0; band < eqBandCount; ++band) {
        const auto set = [&](const char *field, auto value) {
            const std::string name = "band" + std::to_string(band) + "::" + field;
            gst_child_proxy_set(GST_CHILD_PROXY(equalizer.get()), name.c_str(), value, nullptr);
        };
        set("type", 0); // the outermost bands would be shelves
        set("freq", eqBandCentres[band]);
        set("bandwidth", eqBandCentres[band] / quality);
        set("gain", double(gains[band]));
    }
}

Seconds play(GstElement *pipeline)
{
    gst_element_set_state(pipeline, GST_STATE_PAUSED);
    gst_element_get_state(pipeline, nullptr, nullptr, GST_CLOCK_TIME_NONE);
    const auto start = processorTime();
    gst_element_set_state(pipeline, GST_STATE_PLAYING);
    GstBus *bus = gst_element_get_bus(pipeline);
    gst_message_unref(gst_bus_timed_pop_filtered(bus, GST_CLOCK_TIME_NONE,
                                                 GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR)));
    const auto duration = processorTime() - start;
    gst_object_unref(bus);
    gst_element_set_state(pipeline, GST_STATE_NULL);
    return duration;
}

} // namespace

Seconds gstreamerEqualizer()
{
    const auto with = makePipeline("equalizer-nbands name=eq num-bands=" + std::to_string(eqBandCount));
    const auto without = makePipeline("identity silent=true");
    if (!with || !without)
        return Seconds(-1);
    setBands(with.get());
    return play(with.get()) - play(without.get());
}

} // namespace navorin::bench
