#include "Platform/Audio/GstItemPipeline.h"

#include "Platform/Audio/GstRuntime.h"

#include <QDebug>

#include <algorithm>
#include <limits>
#include <thread>
#include <utility>

namespace navorin {
namespace {

using namespace std::chrono_literals;

constexpr double unknown = std::numeric_limits<double>::quiet_NaN();

} // namespace

GstItemPipeline::GstItemPipeline(ThreadGroup &threads, Config config, Listener listener)
    : m_config(std::move(config))
    , m_listener(std::move(listener))
    , m_thread(threads)
    , m_volume(m_config.volume)
{
}

GstItemPipeline::~GstItemPipeline() = default;

void GstItemPipeline::open()
{
    m_thread.post([this] { build(); });
}

void GstItemPipeline::setPlaying(bool playing)
{
    m_thread.post([this, playing] {
        m_wanted = playing;
        apply();
    });
}

void GstItemPipeline::setVolume(float volume)
{
    m_thread.post([this, volume] {
        m_volume = volume;
        if (m_gain)
            g_object_set(m_gain, "volume", double(volume), nullptr);
    });
}

void GstItemPipeline::seek(double seconds, quint64 serial)
{
    m_thread.post([this, seek = Seek{seconds, serial}] {
        m_pendingSeek = seek;
        carryOutSeek();
    });
}

double GstItemPipeline::position() const
{
    // Under the mutex, so that the sink is not started between the check and the query.
    const std::scoped_lock lock(m_pipelineMutex);
    if (!m_pipeline)
        return unknown;
    const auto age = m_start.age();
    return age < settling ? m_start.position + std::chrono::duration<double>(age).count() : queryPosition();
}

double GstItemPipeline::queryPosition() const
{
    gint64 position = -1;
    if (!gst_element_query_position(m_pipeline.get(), GST_FORMAT_TIME, &position) || position < 0)
        return unknown;
    return double(position) / double(GST_SECOND);
}

void GstItemPipeline::close()
{
    {
        const std::scoped_lock lock(m_listenerMutex);
        m_listener = nullptr;
    }
    m_thread.finish([self = shared_from_this()] { self->destroy(); });
}

void GstItemPipeline::emitEvent(Event event)
{
    const std::scoped_lock lock(m_listenerMutex);
    if (m_listener)
        m_listener(std::move(event));
}

void GstItemPipeline::destroy()
{
    GstPtr<GstElement> pipeline;
    {
        const std::scoped_lock lock(m_pipelineMutex);
        pipeline = std::move(m_pipeline);
    }
    m_thread.clearAlarm();
    if (!pipeline)
        return;
    gst_element_set_state(pipeline.get(), GST_STATE_NULL);
    const GstPtr<GstBus> bus(gst_element_get_bus(pipeline.get()));
    gst_bus_set_sync_handler(bus.get(), nullptr, nullptr, nullptr);
    m_source = m_entry = m_store = m_gain = nullptr;
}

void GstItemPipeline::fail(const QString &error)
{
    if (std::exchange(m_failed, true))
        return;
    emitEvent(Failed{m_sourceError.value_or(error)});
    destroy();
}

/// Brings the pipeline into the state that the present wishes and stores ask for.
void GstItemPipeline::apply()
{
    if (!m_pipeline)
        return;
    const bool sounding = m_wanted && m_prerolled && m_filled && !m_over && !m_runningSeek;
    if (sounding && m_state != GST_STATE_PLAYING)
        startSounding();
    else if (!sounding && m_state == GST_STATE_PLAYING)
        stopSounding();

    if (sounding)
        watchStore();
    else if (m_wanted && !m_over)
        watchSource();
    else
        m_thread.clearAlarm();
}

void GstItemPipeline::startSounding()
{
    {
        const std::scoped_lock lock(m_pipelineMutex);
        m_start = {Clock::now(), Time(gst_element_get_start_time(m_pipeline.get())), queryPosition()};
    }
    setState(GST_STATE_PLAYING);
    emitEvent(Sounding{true});
}

void GstItemPipeline::stopSounding()
{
    std::this_thread::sleep_for(settling - m_start.age()); // pausing reads the clock
    setState(GST_STATE_PAUSED);
    emitEvent(Sounding{false});
}

void GstItemPipeline::setState(GstState state)
{
    m_state = state;
    switch (gst_element_set_state(m_pipeline.get(), state)) {
    case GST_STATE_CHANGE_FAILURE:
        // The element that refused has posted its reason before: that is handled first.
        m_thread.post([this] { fail(QStringLiteral("the sound pipeline does not start")); });
        break;
    case GST_STATE_CHANGE_ASYNC:
        m_prerolled = false;
        break;
    default:
        m_prerolled = true;
    }
}

void GstItemPipeline::startFilling(Time target)
{
    m_filled = false;
    m_fillingSince = Clock::now();
    m_target = target;
    m_fillingTurn = ++m_turn;
    if (m_endStored || stored() >= target)
        filled(m_turn);
}

void GstItemPipeline::filled(int turn)
{
    if (m_filled || turn != m_turn)
        return;
    m_fillingTurn = 0;
    m_filled = true;
    apply();
}

GstItemPipeline::Time GstItemPipeline::stored() const
{
    guint64 level = 0;
    if (m_store)
        g_object_get(m_store, "current-level-time", &level, nullptr);
    return Time(level);
}

GstItemPipeline::Time GstItemPipeline::playedUntil() const
{
    if (const auto age = m_start.age(); age < settling)
        return m_start.runningTime + age;
    const GstPtr<GstClock> clock(gst_element_get_clock(m_pipeline.get()));
    if (!clock)
        return Time(0);
    const auto now = gst_clock_get_time(clock.get());
    return Time(GST_CLOCK_DIFF(gst_element_get_base_time(m_pipeline.get()), now));
}

/// Looks again when what is stored now will have been played.
void GstItemPipeline::watchStore()
{
    const auto end = m_storedUntil.load();
    const auto remaining = std::chrono::ceil<std::chrono::milliseconds>(end - reserve - playedUntil());
    m_thread.setAlarm(std::max(remaining, 10ms), [this, end] { checkStore(end); });
}

void GstItemPipeline::checkStore(Time seenEnd)
{
    if (m_state != GST_STATE_PLAYING)
        return;
    const auto end = m_storedUntil.load();
    // Some clocks stand still without sound: then only the store itself tells that nothing has come.
    if (!m_endStored && (end == seenEnd || end - reserve <= playedUntil()))
        ranDry();
    else
        watchStore();
}

void GstItemPipeline::ranDry()
{
    if (m_sourceError)
        return fail(*m_sourceError);
    startFilling(refillLevel);
    apply();
}

/// Looks again when the source will have been silent for too long.
void GstItemPipeline::watchSource()
{
    const auto since = std::max(m_lastArrival.load(), m_fillingSince);
    const auto limit = m_config.networkTimeout + grace;
    const auto remaining = std::chrono::ceil<std::chrono::milliseconds>(since + limit - Clock::now());
    m_thread.setAlarm(std::max(remaining, 10ms), [this] { checkSource(); });
}

void GstItemPipeline::checkSource()
{
    const auto now = Clock::now();
    const auto limit = m_config.networkTimeout + grace;
    if (now >= std::max(m_lastArrival.load(), m_fillingSince) + limit)
        fail(QStringLiteral("no data came for too long"));
    else if (now >= m_fillingSince + 2 * limit && stored() == Time(0))
        fail(QStringLiteral("what comes is no sound"));
    else
        watchSource();
}

void GstItemPipeline::carryOutSeek()
{
    if (!m_pendingSeek || !m_pipeline || !m_opened || m_runningSeek)
        return;
    const auto seek = *std::exchange(m_pendingSeek, std::nullopt);
    if (!canSeek()) {
        emitEvent(SeekDone{seek.serial});
        return;
    }
    m_runningSeek = seek;
    m_over = false;
    apply();
    m_fillingSince = Clock::now();
    const auto target = gint64(std::max(seek.seconds, 0.0) * double(GST_SECOND));
    m_flushed = false;
    if (!gst_element_seek_simple(m_pipeline.get(), GST_FORMAT_TIME, GST_SEEK_FLAG_FLUSH, target))
        handleSeekDone();
}

/// The first sound from the new place has arrived.
void GstItemPipeline::handleSeekDone()
{
    if (!m_runningSeek)
        return;
    emitEvent(SeekDone{std::exchange(m_runningSeek, std::nullopt)->serial});
    startFilling(startLevel);
    carryOutSeek();
    apply();
}

bool GstItemPipeline::canSeek() const
{
    if (m_seekRefused)
        return false;
    const GstPtr<GstQuery> query(gst_query_new_seeking(GST_FORMAT_TIME));
    gboolean seekable = FALSE;
    if (gst_element_query(m_pipeline.get(), query.get()))
        gst_query_parse_seeking(query.get(), nullptr, &seekable, nullptr, nullptr);
    return seekable != FALSE;
}

void GstItemPipeline::readDuration()
{
    gint64 duration = -1;
    if (!gst_element_query_duration(m_pipeline.get(), GST_FORMAT_TIME, &duration) || duration < 0)
        emitEvent(DurationKnown{unknown});
    else
        emitEvent(DurationKnown{double(duration) / double(GST_SECOND)});
}

void GstItemPipeline::handle(GstMessage *message)
{
    if (!m_pipeline)
        return;
    switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_ERROR:
        return handleError(message);
    case GST_MESSAGE_WARNING: {
        GError *error = nullptr;
        gst_message_parse_warning(message, &error, nullptr);
        qWarning() << "[Audio]" << GST_OBJECT_NAME(GST_MESSAGE_SRC(message)) << error->message;
        g_error_free(error);
        return;
    }
    case GST_MESSAGE_EOS:
        return handleEnd();
    case GST_MESSAGE_ASYNC_DONE:
        return handlePrerolled();
    case GST_MESSAGE_DURATION_CHANGED:
        return readDuration();
    case GST_MESSAGE_CLOCK_LOST:
        if (m_state == GST_STATE_PLAYING) {
            setState(GST_STATE_PAUSED);
            apply();
        }
        return;
    case GST_MESSAGE_REQUEST_STATE: {
        GstState state = GST_STATE_VOID_PENDING;
        gst_message_parse_request_state(message, &state);
        emitEvent(Corked{state == GST_STATE_PAUSED});
        return;
    }
    default:
        return;
    }
}

void GstItemPipeline::handlePrerolled()
{
    m_prerolled = true;
    if (!std::exchange(m_opened, true))
        emitEvent(Prerolled{});
    readDuration();
    carryOutSeek();
    apply();
}

void GstItemPipeline::handleError(GstMessage *message)
{
    GError *error = nullptr;
    gst_message_parse_error(message, &error, nullptr);
    const bool ofSource = GST_MESSAGE_SRC(message) == GST_OBJECT_CAST(m_source);
    const auto text = describe(*error, ofSource);
    const bool refusesSeek =
        ofSource && m_runningSeek && g_error_matches(error, GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_SEEK);
    g_error_free(error);
    if (refusesSeek)
        return reopen();
    // What was received before the connection broke is still worth hearing; the source sends its end after
    // it. Where nothing is heard yet, nothing would be: a pipeline does not finish its start after an error.
    if (!ofSource || !m_prerolled)
        fail(text);
    else if (!m_sourceError)
        m_sourceError = text;
}

/// A server that promised a length but sends no ranges has dropped the stream at the attempt: all that is
/// left is to begin anew.
void GstItemPipeline::reopen()
{
    destroy();
    m_seekRefused = true;
    emitEvent(SeekDone{std::exchange(m_runningSeek, std::nullopt)->serial});
    m_state = GST_STATE_NULL;
    m_opened = m_prerolled = m_over = false;
    m_sourceError.reset();
    build();
}

/// The HTTP source has no words for a connection that fails: it speaks of an internal error, or of the range
/// that it asked for when it tried once more.
QString GstItemPipeline::describe(const GError &error, bool ofSource) const
{
    const bool wordless = g_error_matches(&error, GST_STREAM_ERROR, GST_STREAM_ERROR_FAILED) ||
                          g_error_matches(&error, GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_SEEK);
    if (!ofSource || !isNetwork() || !wordless)
        return QString::fromUtf8(error.message);
    return m_lastArrival.load() == Clock::time_point() ? QStringLiteral("the server does not answer")
                                                       : QStringLiteral("the connection to the server broke");
}

void GstItemPipeline::handleEnd()
{
    if (m_sourceError)
        return fail(*m_sourceError);
    m_over = true;
    emitEvent(Ended{});
    apply();
}

void GstItemPipeline::handleTracks(int count)
{
    emitEvent(TracksKnown{count});
    if (count == 0)
        fail(QStringLiteral("the medium has no sound"));
}

} // namespace navorin
