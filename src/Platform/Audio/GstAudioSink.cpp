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
    if (gst_element_set_state(sink, GST_STATE_READY) != GST_STATE_CHANGE_FAILURE)
        return sink;
    gst_element_set_state(sink, GST_STATE_NULL);
    gst_object_unref(gst_object_ref_sink(sink));
    return nullptr;
}

/// The best sink that opens; where none does, GStreamer puts one that plays to nobody in its place.
GstElement *anySink()
{
    const auto sink = gst_element_factory_make("autoaudiosink", nullptr);
    if (!sink)
        return nullptr;
    gst_element_set_state(sink, GST_STATE_READY);
    if (const GstPtr<GstElement> fake(gst_bin_get_by_name(GST_BIN(sink), "fake-audio-sink")); fake)
        qWarning() << "[Audio] no sound output was found: playing to nobody";
    return sink;
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
