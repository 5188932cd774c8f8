#include "Platform/Audio/DesktopAudioSession.h"

#include "Platform/Audio/GstPointers.h"
#include "Platform/Audio/GstRuntime.h"
#include "Platform/Audio/SerialThread.h"
#include "Platform/Audio/ThreadGroup.h"

#include <QDebug>
#include <QPointer>

#include <atomic>
#include <utility>

namespace navorin {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

/// Lives on a thread of its own, since connecting to the sound server may take as long as that likes.
class DesktopAudioSession::DeviceWatch
{
public:
    explicit DeviceWatch(std::function<void()> outputRemoved)
        : m_outputRemoved(std::move(outputRemoved))
    {
    }

    void start()
    {
        initialiseGStreamer();
        stop();
        m_monitor = GstPtr<GstDeviceMonitor>(gst_device_monitor_new());
        gst_device_monitor_add_filter(m_monitor.get(), "Audio/Sink", nullptr);
        const GstPtr<GstBus> bus(gst_device_monitor_get_bus(m_monitor.get()));
        gst_bus_set_sync_handler(bus.get(), &DeviceWatch::handleMessage, this, nullptr);
        m_hasFailed = !gst_device_monitor_start(m_monitor.get());
    }

    void stop()
    {
        if (!m_monitor)
            return;
        const GstPtr<GstBus> bus(gst_device_monitor_get_bus(m_monitor.get()));
        if (!m_hasFailed)
            gst_device_monitor_stop(m_monitor.get());
        gst_bus_set_sync_handler(bus.get(), nullptr, nullptr, nullptr);
        m_monitor.reset();
    }

    [[nodiscard]] bool hasFailed() const { return m_hasFailed; }

private:
    static GstBusSyncReply handleMessage(GstBus *, GstMessage *message, gpointer watch)
    {
        if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_DEVICE_REMOVED)
            static_cast<DeviceWatch *>(watch)->m_outputRemoved();
        gst_message_unref(message);
        return GST_BUS_DROP;
    }

    std::function<void()> m_outputRemoved;
    GstPtr<GstDeviceMonitor> m_monitor; ///< its thread's own
    std::atomic_bool m_hasFailed = false;
};

DesktopAudioSession::DesktopAudioSession(MainQueue &queue)
    : m_queue(queue)
    , m_threads(std::make_shared<ThreadGroup>())
{
}

DesktopAudioSession::~DesktopAudioSession()
{
    if (m_watcher)
        m_watcher->finish([watch = m_watch] { watch->stop(); });
    if (!m_threads->wait(3s))
        qWarning() << "[Audio] the sound server does not answer; left behind";
}

std::optional<QString> DesktopAudioSession::configureForPlayback()
{
    if (!m_watch) {
        auto removed = [&queue = m_queue, weak = QPointer(this)] {
            queue.post([weak] {
                if (weak)
                    Q_EMIT weak->outputDeviceGone();
            });
        };
        m_watch = std::make_shared<DeviceWatch>(std::move(removed));
        m_watcher = std::make_unique<SerialThread>(*m_threads);
    } else if (!m_watch->hasFailed()) {
        return {};
    }
    const auto hadFailed = m_watch->hasFailed();
    m_watcher->post([watch = m_watch] { watch->start(); });
    return hadFailed ? std::optional(u"no sound device can be watched"_s) : std::nullopt;
}

void DesktopAudioSession::setCorked(bool corked)
{
    if (corked)
        Q_EMIT interruptionBegan();
    else
        Q_EMIT interruptionEnded(true);
}

void DesktopAudioSession::computerGoesToSleep()
{
    Q_EMIT interruptionBegan();
}

void DesktopAudioSession::computerWokeUp()
{
    Q_EMIT interruptionEnded(true);
}

} // namespace navorin
