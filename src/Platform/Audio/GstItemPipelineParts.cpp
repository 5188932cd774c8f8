// How the pipeline of an item is put together, and what its streaming threads report.
#include "Platform/Audio/GstAudioSink.h"
#include "Platform/Audio/GstAudioTapElement.h"
#include "Platform/Audio/GstItemPipeline.h"
#include "Platform/Audio/GstRuntime.h"
#include "Platform/Audio/StreamingOrder.h"

#include <initializer_list>

namespace navorin {
namespace {

using namespace std::chrono_literals;

constexpr auto storeSize = 2s;          // of decoded sound
constexpr guint networkStore = 1 << 20; // bytes of undecoded sound

/// Puts the elements, in order, into the bin and links them. On failure the bin is good for nothing.
bool addChain(GstElement *bin, std::initializer_list<GstElement *> elements)
{
    bool complete = true;
    for (const auto element : elements) {
        if (element)
            gst_bin_add(GST_BIN(bin), element);
        else
            complete = false;
    }
    for (auto next = elements.begin(); complete && next + 1 != elements.end(); ++next)
        complete = gst_element_link(*next, *(next + 1)) != FALSE;
    return complete;
}

GstElement *make(const char *factory)
{
    return gst_element_factory_make(factory, nullptr);
}

/// What a callback of a streaming thread was registered for.
GstItemPipeline *owner(gpointer data)
{
    StreamingOrder::take();
    return static_cast<GstItemPipeline *>(data);
}

} // namespace

void GstItemPipeline::build()
{
    initialiseGStreamer();
    ++m_generation;
    GstPtr<GstElement> pipeline(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))));
    const GstPtr<GstBus> bus(gst_element_get_bus(pipeline.get()));
    gst_bus_set_sync_handler(bus.get(), onMessage, this, nullptr);
    {
        const std::scoped_lock lock(m_pipelineMutex);
        m_pipeline = std::move(pipeline);
    }
    m_source = makeSource();
    if (!m_source)
        return fail(QStringLiteral("no way to open this kind of address"));
    const bool decodes = addDecodingChain();
    if (!addSoundChain() || !decodes)
        return fail(QStringLiteral("a part of the sound pipeline is missing"));
    startFilling(startLevel);
    StreamingOrder::publish();
    setState(GST_STATE_PAUSED);
}

GstElement *GstItemPipeline::makeSource()
{
    const auto source = gst_element_make_from_uri(GST_URI_SRC, m_config.uri.constData(), nullptr, nullptr);
    if (!source)
        return nullptr;
    const auto has = [source](const char *property) {
        return g_object_class_find_property(G_OBJECT_GET_CLASS(source), property) != nullptr;
    };
    if (has("timeout") && has("retries") && has("user-agent"))
        g_object_set(source, "timeout", guint(m_config.networkTimeout.count()), "retries", 0, "user-agent",
                     "Navorin", nullptr);
    return source;
}

bool GstItemPipeline::addDecodingChain()
{
    const auto decoder = make("decodebin");
    if (!decoder)
        return addChain(m_pipeline.get(), {m_source, nullptr});
    g_signal_connect(decoder, "autoplug-select", G_CALLBACK(onAutoplugSelect), this);
    g_signal_connect(decoder, "pad-added", G_CALLBACK(onPadAdded), this);
    g_signal_connect(decoder, "no-more-pads", G_CALLBACK(onNoMorePads), this);
    if (!isNetwork())
        return addChain(m_pipeline.get(), {m_source, decoder});
    if (const GstPtr<GstPad> output(gst_element_get_static_pad(m_source, "src")); output)
        gst_pad_add_probe(output.get(), GST_PAD_PROBE_TYPE_BUFFER, onSourceOutput, this, nullptr);
    const auto ahead = make("queue2");
    if (ahead)
        g_object_set(ahead, "max-size-buffers", 0, "max-size-bytes", networkStore, "max-size-time",
                     guint64(0), nullptr);
    return addChain(m_pipeline.get(), {m_source, ahead, decoder});
}

bool GstItemPipeline::addSoundChain()
{
    const auto sink = makeAudioSink(m_config.sink);
    m_entry = make("audioconvert");
    m_store = make("queue");
    m_gain = make("volume");
    const auto tap = makeAudioTapElement(m_config.tap);
    if (!addChain(m_pipeline.get(),
                  {m_entry, m_store, m_gain, tap, make("audioconvert"), make("audioresample"), sink}))
        return false;
    g_object_set(m_store, "max-size-buffers", 0, "max-size-bytes", 0, "max-size-time",
                 guint64(Time(storeSize).count()), nullptr);
    g_object_set(m_gain, "volume", double(m_volume), nullptr);
    const GstPtr<GstPad> input(gst_element_get_static_pad(m_store, "sink"));
    gst_pad_add_probe(input.get(),
                      GstPadProbeType(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM |
                                      GST_PAD_PROBE_TYPE_EVENT_FLUSH | GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM),
                      onStoreInput, this, nullptr);
    return true;
}

GstBusSyncReply GstItemPipeline::onMessage(GstBus *, GstMessage *message, gpointer data)
{
    constexpr int handled = GST_MESSAGE_ERROR | GST_MESSAGE_WARNING | GST_MESSAGE_EOS |
                            GST_MESSAGE_ASYNC_DONE | GST_MESSAGE_DURATION_CHANGED | GST_MESSAGE_CLOCK_LOST |
                            GST_MESSAGE_REQUEST_STATE;
    const auto self = owner(data);
    if (GST_MESSAGE_TYPE(message) & handled)
        self->m_thread.post([self, generation = self->m_generation.load(),
                             kept = std::shared_ptr<GstMessage>(message, gst_message_unref)] {
            if (generation == self->m_generation)
                self->handle(kept.get());
        });
    else
        gst_message_unref(message);
    return GST_BUS_DROP;
}

/// Pictures, films and words are left undecoded.
int GstItemPipeline::onAutoplugSelect(GstElement *, GstPad *, GstCaps *, GstElementFactory *factory, gpointer)
{
    enum { Try, Expose };
    constexpr auto unheard = GST_ELEMENT_FACTORY_TYPE_MEDIA_VIDEO | GST_ELEMENT_FACTORY_TYPE_MEDIA_IMAGE |
                             GST_ELEMENT_FACTORY_TYPE_MEDIA_SUBTITLE;
    return gst_element_factory_list_is_type(factory, GST_ELEMENT_FACTORY_TYPE_DECODER) &&
                   gst_element_factory_list_is_type(factory, unheard)
               ? Expose
               : Try;
}

void GstItemPipeline::onPadAdded(GstElement *, GstPad *pad, gpointer data)
{
    const auto self = owner(data);
    const GstPtr<GstCaps> caps(gst_pad_query_caps(pad, nullptr));
    if (!gst_structure_has_name(gst_caps_get_structure(caps.get(), 0), "audio/x-raw"))
        return;
    ++self->m_audioPads;
    const GstPtr<GstPad> entry(gst_element_get_static_pad(self->m_entry, "sink"));
    if (!gst_pad_is_linked(entry.get()))
        gst_pad_link(pad, entry.get());
}

void GstItemPipeline::onNoMorePads(GstElement *, gpointer data)
{
    const auto self = owner(data);
    const auto count = self->m_audioPads.exchange(0);
    self->m_thread.post([self, count] { self->handleTracks(count); });
}

GstPadProbeReturn GstItemPipeline::onSourceOutput(GstPad *, GstPadProbeInfo *, gpointer data)
{
    owner(data)->m_lastArrival = Clock::now();
    return GST_PAD_PROBE_OK;
}

GstPadProbeReturn GstItemPipeline::onStoreInput(GstPad *, GstPadProbeInfo *info, gpointer data)
{
    const auto self = owner(data);
    if (GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM) {
        // This question would wait until the store is empty, just where one song of a stream follows another.
        const bool waits = GST_QUERY_TYPE(GST_PAD_PROBE_INFO_QUERY(info)) == GST_QUERY_ALLOCATION;
        return waits ? GST_PAD_PROBE_DROP : GST_PAD_PROBE_OK;
    }
    if (GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER)
        self->bufferStored(GST_PAD_PROBE_INFO_BUFFER(info));
    else
        self->eventStored(GST_PAD_PROBE_INFO_EVENT(info));
    return GST_PAD_PROBE_OK;
}

/// After a flush this is where a seek has landed.
void GstItemPipeline::soundOrEndStored()
{
    if (m_flushed.exchange(false))
        m_thread.post([this] { handleSeekDone(); });
}

void GstItemPipeline::bufferStored(GstBuffer *buffer)
{
    soundOrEndStored();
    if (!GST_BUFFER_PTS_IS_VALID(buffer))
        return;
    const auto length = GST_BUFFER_DURATION_IS_VALID(buffer) ? GST_BUFFER_DURATION(buffer) : 0;
    const auto end =
        gst_segment_to_running_time(&m_segment, GST_FORMAT_TIME, GST_BUFFER_PTS(buffer) + length);
    if (GST_CLOCK_TIME_IS_VALID(end))
        m_storedUntil = Time(end);
    if (m_fillingTurn == 0 || stored() + Time(length) < m_target.load())
        return;
    if (const auto turn = m_fillingTurn.exchange(0))
        m_thread.post([this, turn] { filled(turn); });
}

void GstItemPipeline::eventStored(GstEvent *event)
{
    switch (GST_EVENT_TYPE(event)) {
    case GST_EVENT_SEGMENT:
        gst_event_copy_segment(event, &m_segment);
        m_endStored = false;
        break;
    case GST_EVENT_FLUSH_STOP:
        m_storedUntil = Time(0);
        m_endStored = false;
        m_flushed = true;
        break;
    case GST_EVENT_EOS:
        m_endStored = true;
        soundOrEndStored();
        if (const auto turn = m_fillingTurn.exchange(0))
            m_thread.post([this, turn] { filled(turn); });
        break;
    default:
        break;
    }
}

} // namespace navorin
