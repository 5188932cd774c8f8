#include "Platform/Audio/GstAudioSink.h"

#include "Platform/Audio/GstPointers.h"

#include <QDebug>

namespace navorin {
namespace {

GstElement *describedSink(const QByteArray &description)
{
    GError *error = nullptr;
    auto sink = gst_parse_bin_from_description_full(description.constData(), TRUE, nullptr,
                                                    GST_PARSE_FLAG_FATAL_ERRORS, &error);
    if (error)
        qWarning() << "[Audio] cannot make the sink" << description << ":" << error->message;
    g_clear_error(&error);
    return sink;
}

void giveUp(GstElement *sink)
{
    gst_element_set_state(sink, GST_STATE_NULL);
    gst_object_unref(gst_object_ref_sink(sink));
}

/// Whether the sink opens and can be given sound: a sound server without any output, as it is while somebody
/// logs in, opens and takes none.
bool opens(GstElement *sink)
{
    if (gst_element_set_state(sink, GST_STATE_READY) == GST_STATE_CHANGE_FAILURE)
        return false;
    const GstPtr<GstPad> input(gst_element_get_static_pad(sink, "sink"));
    const GstPtr<GstCaps> caps(gst_pad_query_caps(input.get(), nullptr));
    return !gst_caps_is_empty(caps.get());
}

/// The sound server's sink, connected; none if there is no server.
GstElement *soundServerSink()
{
    auto sink = gst_element_factory_make("pulsesink", nullptr);
    if (!sink)
        return nullptr;
    auto properties = gst_structure_new("properties", "media.role", G_TYPE_STRING, "music", "application.id",
                                        G_TYPE_STRING, "ir.navorin.NavorinRadio", "application.icon_name",
                                        G_TYPE_STRING, "ir.navorin.NavorinRadio", nullptr);
    g_object_set(sink, "client-name", "Navorin", "stream-properties", properties, nullptr);
    gst_structure_free(properties);
    if (opens(sink))
        return sink;
    giveUp(sink);
    return nullptr;
}

/// The best sink that opens; where none does, one that plays to nobody.
GstElement *anySink()
{
    if (const auto sink = gst_element_factory_make("autoaudiosink", nullptr)) {
        const bool isOpen = opens(sink);
        // Its own way of telling that nothing else opened.
        const GstPtr<GstElement> fake(gst_bin_get_by_name(GST_BIN(sink), "fake-audio-sink"));
        if (isOpen && !fake)
            return sink;
        giveUp(sink);
    }
    qWarning() << "[Audio] no sound output was found: playing to nobody";
    return describedSink("fakesink sync=true");
}

} // namespace

GstElement *makeAudioSink(const QByteArray &description)
{
    if (!description.isEmpty())
        return describedSink(description);
    const auto sink = soundServerSink();
    return sink ? sink : anySink();
}

} // namespace navorin
