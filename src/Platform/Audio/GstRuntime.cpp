#include "Platform/Audio/GstRuntime.h"

#include "Platform/Audio/GstPointers.h"

#include <QDebug>

#include <mutex>

namespace navorin {

void initialiseGStreamer()
{
    static std::once_flag once;
    std::call_once(once, [] {
        GError *error = nullptr;
        if (!gst_init_check(nullptr, nullptr, &error)) {
            qWarning() << "[Audio] GStreamer does not start:" << (error ? error->message : "no reason given");
            g_clear_error(&error);
        }
    });
}

void warmUpGStreamer()
{
    initialiseGStreamer();
    for (const auto name :
         {"souphttpsrc", "filesrc", "queue2", "decodebin", "typefind", "icydemux", "id3demux",
          "mpegaudioparse", "mpg123audiodec", "avdec_aac", "oggdemux", "vorbisdec", "opusdec", "qtdemux",
          "audioconvert", "audioresample", "volume", "pulsesink"}) {
        const GstPtr<GstElementFactory> factory(gst_element_factory_find(name));
        if (factory)
            GstPtr<GstPluginFeature>(gst_plugin_feature_load(GST_PLUGIN_FEATURE(factory.get())));
    }
    GstPtr<GstPlugin>(gst_plugin_load_by_name("typefindfunctions"));
}

} // namespace navorin
