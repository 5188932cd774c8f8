#include "Platform/Audio/GstAudioSource.h"

#include <QDebug>

namespace navorin {
namespace {

GstElement *describedSource(const QByteArray &description)
{
    GError *error = nullptr;
    auto source = gst_parse_bin_from_description_full(description.constData(), TRUE, nullptr,
                                                      GST_PARSE_FLAG_FATAL_ERRORS, &error);
    if (error)
        qWarning() << "[Audio] cannot make the source" << description << ":" << error->message;
    g_clear_error(&error);
    return source;
}

/// `source` if it opens.
GstElement *opened(GstElement *source)
{
    if (!source || gst_element_set_state(source, GST_STATE_READY) != GST_STATE_CHANGE_FAILURE)
        return source;
    gst_element_set_state(source, GST_STATE_NULL);
    gst_object_unref(gst_object_ref_sink(source));
    return nullptr;
}

GstElement *soundServerSource()
{
    auto source = gst_element_factory_make("pulsesrc", nullptr);
    if (!source)
        return nullptr;
    auto properties =
        gst_structure_new("properties", "application.id", G_TYPE_STRING, "ir.navorin.NavorinRadio",
                          "application.icon_name", G_TYPE_STRING, "ir.navorin.NavorinRadio", nullptr);
    g_object_set(source, "client-name", "Navorin", "stream-properties", properties, nullptr);
    gst_structure_free(properties);
    return source;
}

} // namespace

GstElement *makeAudioSource(const QByteArray &description)
{
    if (!description.isEmpty())
        return describedSource(description);
    // Not the automatic source: where nothing opens, that one records silence and says nothing.
    const auto source = opened(soundServerSource());
    return source ? source : opened(gst_element_factory_make("alsasrc", nullptr));
}

} // namespace navorin
