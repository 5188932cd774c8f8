#include "Platform/Audio/GstAudioTapElement.h"

#include "Platform/Audio/StreamingOrder.h"

#include <gst/audio/audio.h>
#include <gst/base/gstbasetransform.h>

#include <utility>

struct NavorinAudioTapElement
{
    GstBaseTransform parent;
    std::shared_ptr<navorin::AudioTapHost> *host;
    gsize frameSize;
};

struct NavorinAudioTapElementClass
{
    GstBaseTransformClass parent;
};

G_DEFINE_TYPE(NavorinAudioTapElement, navorin_audio_tap_element, GST_TYPE_BASE_TRANSFORM)

namespace {

NavorinAudioTapElement *self(gpointer object)
{
    return static_cast<NavorinAudioTapElement *>(object);
}

/// Lends the host of an element to the thread that calls.
class BorrowedHost
{
public:
    explicit BorrowedHost(gpointer object)
    {
        navorin::StreamingOrder::take();
        m_host = self(object)->host->get();
    }
    BorrowedHost(const BorrowedHost &) = delete;
    BorrowedHost &operator=(const BorrowedHost &) = delete;
    ~BorrowedHost() { navorin::StreamingOrder::publish(); }
    navorin::AudioTapHost *operator->() const { return m_host; }

private:
    navorin::AudioTapHost *m_host;
};

gboolean setCaps(GstBaseTransform *transform, GstCaps *in, GstCaps *)
{
    GstAudioInfo info;
    if (!gst_audio_info_from_caps(&info, in))
        return FALSE;
    const BorrowedHost host(transform);
    self(transform)->frameSize = gsize(info.bpf);
    host->setFormat(info.rate, quint32(info.channels));
    return TRUE;
}

void beforeTransform(GstBaseTransform *transform, GstBuffer *)
{
    // Passing through needs no writable buffer, hence never a copy.
    gst_base_transform_set_passthrough(transform, BorrowedHost(transform)->update() ? FALSE : TRUE);
}

GstFlowReturn transformInPlace(GstBaseTransform *transform, GstBuffer *buffer)
{
    const BorrowedHost host(transform);
    if (GST_BUFFER_IS_DISCONT(buffer))
        host->markStartOfStream();
    GstMapInfo map;
    if (!gst_buffer_map(buffer, &map, GST_MAP_READWRITE))
        return GST_FLOW_ERROR;
    host->process(reinterpret_cast<float *>(map.data), qint64(map.size / self(transform)->frameSize));
    gst_buffer_unmap(buffer, &map);
    return GST_FLOW_OK;
}

gboolean sinkEvent(GstBaseTransform *transform, GstEvent *event)
{
    if (GST_EVENT_TYPE(event) == GST_EVENT_FLUSH_STOP)
        BorrowedHost(transform)->markStartOfStream();
    return GST_BASE_TRANSFORM_CLASS(navorin_audio_tap_element_parent_class)->sink_event(transform, event);
}

gboolean stop(GstBaseTransform *transform)
{
    BorrowedHost(transform)->stop();
    return TRUE;
}

void finalize(GObject *object)
{
    delete self(object)->host;
    G_OBJECT_CLASS(navorin_audio_tap_element_parent_class)->finalize(object);
}

} // namespace

static void navorin_audio_tap_element_init(NavorinAudioTapElement *element)
{
    element->host = nullptr;
    element->frameSize = sizeof(float);
    gst_base_transform_set_in_place(&element->parent, TRUE);
    gst_base_transform_set_passthrough(&element->parent, TRUE);
}

static void navorin_audio_tap_element_class_init(NavorinAudioTapElementClass *klass)
{
    constexpr auto format = "audio/x-raw, format=(string)" GST_AUDIO_NE(
        F32) ", layout=(string)interleaved, rate=(int)[1, MAX], channels=(int)[1, MAX]";
    const auto caps = gst_caps_from_string(format);
    auto elementClass = GST_ELEMENT_CLASS(klass);
    gst_element_class_add_pad_template(elementClass,
                                       gst_pad_template_new("sink", GST_PAD_SINK, GST_PAD_ALWAYS, caps));
    gst_element_class_add_pad_template(elementClass,
                                       gst_pad_template_new("src", GST_PAD_SRC, GST_PAD_ALWAYS, caps));
    gst_caps_unref(caps);
    gst_element_class_set_static_metadata(elementClass, "Audio tap", "Filter/Audio",
                                          "Lets the application filter decoded sound in place", "Navorin");

    auto transformClass = GST_BASE_TRANSFORM_CLASS(klass);
    transformClass->set_caps = setCaps;
    transformClass->before_transform = beforeTransform;
    transformClass->transform_ip = transformInPlace;
    transformClass->transform_ip_on_passthrough = FALSE;
    transformClass->sink_event = sinkEvent;
    transformClass->stop = stop;
    G_OBJECT_CLASS(klass)->finalize = finalize;
}

namespace navorin {

GstElement *makeAudioTapElement(std::shared_ptr<AudioTapHost> host)
{
    const auto element = self(g_object_new(navorin_audio_tap_element_get_type(), nullptr));
    element->host = new std::shared_ptr<AudioTapHost>(std::move(host));
    return GST_ELEMENT_CAST(element);
}

} // namespace navorin
