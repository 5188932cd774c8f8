#include "Platform/Media/GstWatch.h"

#include "Platform/Audio/GstRuntime.h"

#include <QDebug>

#include <sys/resource.h>

namespace navorin {
namespace {

constexpr int niceness = 10;

GstElement *parsed(const char *description)
{
    initialiseGStreamer();
    GError *error = nullptr;
    auto *pipeline = gst_parse_launch_full(description, nullptr, GST_PARSE_FLAG_FATAL_ERRORS, &error);
    const GstPtr<GError> reason(error);
    if (!pipeline) {
        qWarning() << "[Media] no pipeline:" << (reason ? reason->message : "no reason given");
        return nullptr;
    }
    return GST_ELEMENT(gst_object_ref_sink(pipeline));
}

/// The threads that this one starts will be as humble.
void stepBack()
{
    setpriority(PRIO_PROCESS, 0, niceness); // of a thread, on Linux
}

} // namespace

GstWatch::GstWatch(const char *description, std::stop_token stop)
    : m_pipeline(parsed(description))
    , m_stop(std::move(stop))
    , m_onStop(m_stop, [this] { change([] {}); })
{
    if (!m_pipeline)
        return;
    const GstPtr<GstBus> bus(gst_element_get_bus(m_pipeline.get()));
    gst_bus_set_sync_handler(bus.get(), onMessage, this, nullptr);
}

GstWatch::~GstWatch()
{
    if (!m_pipeline)
        return;
    gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
    const GstPtr<GstBus> bus(gst_element_get_bus(m_pipeline.get()));
    gst_bus_set_sync_handler(bus.get(), nullptr, nullptr, nullptr);
}

GstPtr<GstElement> GstWatch::element(const char *name) const
{
    return GstPtr<GstElement>(gst_bin_get_by_name(GST_BIN(m_pipeline.get()), name));
}

bool GstWatch::setState(GstState state)
{
    return gst_element_set_state(m_pipeline.get(), state) != GST_STATE_CHANGE_FAILURE;
}

bool GstWatch::hasEnded() const
{
    const std::scoped_lock lock(m_mutex);
    return m_hasEnded;
}

bool GstWatch::hasFailed() const
{
    const std::scoped_lock lock(m_mutex);
    return m_hasFailed;
}

bool GstWatch::isOver() const
{
    return hasFailed() || m_stop.stop_requested();
}

bool GstWatch::ranOutOfSpace() const
{
    const std::scoped_lock lock(m_mutex);
    return m_ranOutOfSpace;
}

bool GstWatch::takeSettled()
{
    const std::scoped_lock lock(m_mutex);
    return std::exchange(m_hasSettled, false);
}

void GstWatch::change(const std::function<void()> &work)
{
    {
        const std::scoped_lock lock(m_mutex);
        work();
    }
    m_changed.notify_all();
}

bool GstWatch::wait(const std::function<bool()> &isDone)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return isDone() || m_hasFailed || m_hasEnded || m_stop.stop_requested(); });
    return isDone();
}

bool GstWatch::waitForEnd(std::chrono::milliseconds interval)
{
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, interval,
                              [&] { return m_hasFailed || m_hasEnded || m_stop.stop_requested(); });
}

GstBusSyncReply GstWatch::onMessage(GstBus *, GstMessage *message, gpointer data)
{
    static_cast<GstWatch *>(data)->handle(message);
    gst_message_unref(message);
    return GST_BUS_DROP;
}

void GstWatch::handle(GstMessage *message)
{
    switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_STREAM_STATUS: {
        GstStreamStatusType type{};
        gst_message_parse_stream_status(message, &type, nullptr);
        if (type == GST_STREAM_STATUS_TYPE_ENTER)
            stepBack();
        break;
    }
    case GST_MESSAGE_ASYNC_DONE:
        change([this] { m_hasSettled = true; });
        break;
    case GST_MESSAGE_EOS:
        change([this] { m_hasEnded = true; });
        break;
    case GST_MESSAGE_ERROR:
        handleError(message);
        break;
    default:
        break;
    }
}

void GstWatch::handleError(GstMessage *message)
{
    GError *error = nullptr;
    gst_message_parse_error(message, &error, nullptr);
    const GstPtr<GError> owned(error);
    const bool isSpace = g_error_matches(error, GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_NO_SPACE_LEFT);
    change([this, isSpace] {
        m_hasFailed = true;
        m_ranOutOfSpace = m_ranOutOfSpace || isSpace;
    });
}

} // namespace navorin
