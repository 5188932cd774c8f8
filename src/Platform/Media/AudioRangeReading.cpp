#include "Platform/Media/AudioRangeReading.h"

#include "Platform/Media/GstWatch.h"

#include <algorithm>
#include <cmath>

namespace navorin {
namespace {

using namespace std::chrono_literals;

constexpr auto pullTimeout = GstClockTime(100 * GST_MSECOND);
constexpr int networkTimeout = 15; // seconds

struct GstSampleUnref
{
    void operator()(GstSample *sample) const { gst_sample_unref(sample); }
};

qsizetype bytesOf(double seconds)
{
    return qsizetype(std::llround(seconds * audioRangeRate)) * audioRangeFrameBytes;
}

/// Where in the source a buffer begins, in seconds; absent if it does not say.
std::optional<double> positionOf(GstSample *sample)
{
    const auto time = GST_BUFFER_PTS(gst_sample_get_buffer(sample));
    if (!GST_CLOCK_TIME_IS_VALID(time))
        return {};
    guint64 position = 0;
    const int sign =
        gst_segment_to_stream_time_full(gst_sample_get_segment(sample), GST_FORMAT_TIME, time, &position);
    if (sign == 0)
        return {};
    return double(position) * sign / double(GST_SECOND);
}

/// One attempt at it.
class RangeReader
{
public:
    RangeReader(AudioRange range, const std::stop_token &stop);

    [[nodiscard]] std::optional<QByteArray> read(bool maySeek, const MediaExporter::Progress &progress);
    [[nodiscard]] bool foundTrack() const { return m_isLinked; }
    [[nodiscard]] bool gotNothing() const { return m_sound.isEmpty(); }

private:
    static void onPadAdded(GstElement *decoder, GstPad *pad, gpointer data);
    static void onNoMorePads(GstElement *decoder, gpointer data);
    static void onSourceSetup(GstElement *decoder, GstElement *source, gpointer data);
    [[nodiscard]] bool open();
    void seekToStart();
    void take(GstSample *sample);
    [[nodiscard]] bool isFull() const { return m_sound.size() >= m_wanted; }

    const AudioRange m_range;
    const qsizetype m_wanted; ///< bytes
    GstWatch m_watch;
    QByteArray m_sound;
    bool m_isLinked = false; ///< both changed through m_watch
    bool m_hasNoTrack = false;
};

RangeReader::RangeReader(AudioRange range, const std::stop_token &stop)
    : m_range(std::move(range))
    , m_wanted(bytesOf(m_range.length))
    , m_watch("uridecodebin name=source caps=audio/x-raw expose-all-streams=false "
              "audioconvert name=entry ! audioresample "
              "! audio/x-raw,format=S16LE,rate=44100,channels=2,layout=interleaved "
              "! appsink name=sound sync=false max-buffers=16",
              stop)
{
}

std::optional<QByteArray> RangeReader::read(bool maySeek, const MediaExporter::Progress &progress)
{
    if (!m_watch.pipeline() || !open())
        return {};
    if (maySeek && m_range.start > 0)
        seekToStart();
    if (!m_watch.setState(GST_STATE_PLAYING))
        return {};
    const auto output = m_watch.element("sound");
    gboolean isOver = FALSE;
    while (!isFull() && !isOver && !m_watch.isOver()) {
        GstSample *sample = nullptr;
        g_signal_emit_by_name(output.get(), "try-pull-sample", pullTimeout, &sample);
        const std::unique_ptr<GstSample, GstSampleUnref> owned(sample);
        if (sample)
            take(sample);
        else
            g_object_get(output.get(), "eos", &isOver, nullptr);
        progress(double(m_sound.size()) / double(std::max<qsizetype>(m_wanted, 1)));
    }
    if (!isFull() && m_watch.isOver())
        return {};
    return std::move(m_sound);
}

/// Until the first sound has come.
bool RangeReader::open()
{
    const auto source = m_watch.element("source");
    g_object_set(source.get(), "uri", m_range.source.toEncoded().constData(), nullptr);
    g_signal_connect(source.get(), "source-setup", G_CALLBACK(onSourceSetup), this);
    g_signal_connect(source.get(), "pad-added", G_CALLBACK(onPadAdded), this);
    g_signal_connect(source.get(), "no-more-pads", G_CALLBACK(onNoMorePads), this);
    if (!m_watch.setState(GST_STATE_PAUSED))
        return false;
    while (!m_watch.takeSettled()) {
        if (m_watch.waitForEnd(10ms))
            return m_isLinked && !m_watch.isOver();
        bool isSilent = false;
        m_watch.change([&] { isSilent = m_hasNoTrack && !m_isLinked; });
        if (isSilent)
            return false;
    }
    return true;
}

/// A refusal does no harm: only what lies in the range is taken.
void RangeReader::seekToStart()
{
    gst_element_seek(m_watch.pipeline(), 1.0, GST_FORMAT_TIME,
                     GstSeekFlags(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_ACCURATE), GST_SEEK_TYPE_SET,
                     gint64(m_range.start * double(GST_SECOND)), GST_SEEK_TYPE_NONE, 0);
}

void RangeReader::take(GstSample *sample)
{
    auto *buffer = gst_sample_get_buffer(sample);
    GstMapInfo mapping;
    if (!gst_buffer_map(buffer, &mapping, GST_MAP_READ))
        return;
    QByteArrayView bytes(mapping.data, qsizetype(mapping.size));
    if (m_sound.isEmpty()) {
        const auto offset = bytesOf(positionOf(sample).value_or(m_range.start) - m_range.start);
        bytes = bytes.sliced(std::clamp<qsizetype>(-offset, 0, bytes.size()));
        if (!bytes.isEmpty() && offset > 0)
            m_sound.fill('\0', std::min(offset, m_wanted));
    }
    m_sound.append(bytes.first(std::min(bytes.size(), m_wanted - m_sound.size())));
    gst_buffer_unmap(buffer, &mapping);
}

void RangeReader::onSourceSetup(GstElement *, GstElement *source, gpointer)
{
    const auto *properties = G_OBJECT_GET_CLASS(source);
    const auto has = [properties](const char *name) {
        return g_object_class_find_property(const_cast<GObjectClass *>(properties), name) != nullptr;
    };
    if (has("timeout") && has("retries") && has("user-agent"))
        g_object_set(source, "timeout", networkTimeout, "retries", 0, "user-agent", "Navorin", nullptr);
}

void RangeReader::onPadAdded(GstElement *, GstPad *pad, gpointer data)
{
    auto *self = static_cast<RangeReader *>(data);
    const auto entry = self->m_watch.element("entry");
    const GstPtr<GstPad> input(gst_element_get_static_pad(entry.get(), "sink"));
    if (gst_pad_is_linked(input.get()))
        return; // the first track it is
    if (gst_pad_link(pad, input.get()) == GST_PAD_LINK_OK)
        self->m_watch.change([self] { self->m_isLinked = true; });
}

void RangeReader::onNoMorePads(GstElement *, gpointer data)
{
    auto *self = static_cast<RangeReader *>(data);
    self->m_watch.change([self] { self->m_hasNoTrack = !self->m_isLinked; });
}

} // namespace

AudioReading readAudioRange(const AudioRange &range, const MediaExporter::Progress &progress,
                            const std::stop_token &stop)
{
    AudioReading reading;
    // A server that sends no ranges breaks a seek; then it is read from the beginning.
    for (const bool maySeek : {true, false}) {
        RangeReader reader(range, stop);
        reading.sound = reader.read(maySeek, progress);
        reading.foundTrack = reader.foundTrack();
        if (reading.sound || !reading.foundTrack || !reader.gotNothing() || range.start <= 0)
            break;
    }
    return reading;
}

} // namespace navorin
