#include "Platform/Audio/GstMediaPlayer.h"

#include "Platform/Audio/GstMediaItem.h"
#include "Platform/Audio/GstRuntime.h"
#include "Platform/Audio/ThreadGroup.h"

#include <QDebug>

#include <utility>

namespace navorin {
namespace {

using namespace std::chrono_literals;

} // namespace

GstMediaPlayer::Options GstMediaPlayer::Options::fromEnvironment()
{
    return {qgetenv("NAVORIN_AUDIO_SINK")};
}

GstMediaPlayer::GstMediaPlayer(MainQueue &queue, Options options)
    : m_queue(queue)
    , m_options(std::move(options))
    , m_threads(std::make_shared<ThreadGroup>())
{
    m_threads->start(warmUpGStreamer);
}

GstMediaPlayer::~GstMediaPlayer()
{
    if (m_item)
        m_item->close();
    m_item.reset();
    if (!m_threads->wait(3s))
        qWarning() << "[Audio] a stream or the sound output does not close; left behind";
}

std::shared_ptr<MediaItem> GstMediaPlayer::makeItem(const QUrl &url)
{
    return std::make_shared<GstMediaItem>(
        GstMediaItem::Surroundings{m_queue, m_threads, m_options.sink, m_options.networkTimeout}, url);
}

std::shared_ptr<MediaItem> GstMediaPlayer::currentItem() const
{
    return m_item;
}

void GstMediaPlayer::replaceCurrentItem(std::shared_ptr<MediaItem> item)
{
    if (m_item) {
        m_item->disconnect(this);
        m_item->close();
    }
    m_item = std::static_pointer_cast<GstMediaItem>(std::move(item));
    m_stoppedAtEnd = false;
    if (m_item) {
        connect(m_item.get(), &GstMediaItem::soundingChanged, this, &GstMediaPlayer::update);
        connect(m_item.get(), &GstMediaItem::playedToEnd, this, &GstMediaPlayer::itemEnded);
        connect(m_item.get(), &GstMediaItem::corked, this, &GstMediaPlayer::outputCorked);
        m_item->open(m_volume);
        m_item->setPlaying(m_playRequested);
    }
    update();
}

void GstMediaPlayer::play()
{
    m_playRequested = true;
    if (m_item && !m_item->isAtEnd()) {
        m_stoppedAtEnd = false;
        m_item->setPlaying(true);
    }
    update();
}

void GstMediaPlayer::pause()
{
    m_playRequested = false;
    if (m_item)
        m_item->setPlaying(false);
    update();
}

void GstMediaPlayer::setVolume(float volume)
{
    m_volume = volume;
    if (m_item)
        m_item->setVolume(volume);
}

void GstMediaPlayer::seek(double seconds)
{
    if (m_item)
        m_item->seek(seconds);
}

void GstMediaPlayer::setPeriodicTimeObserver(std::chrono::milliseconds interval,
                                             std::function<void(double)> observer)
{
    m_interval = interval;
    m_observer = std::move(observer);
    m_ticker.reset();
    update();
}

void GstMediaPlayer::itemEnded()
{
    const auto item = m_item;
    m_stoppedAtEnd = true;
    item->setPlaying(false);
    Q_EMIT itemDidPlayToEnd(item.get());
    update();
}

/// Brings the status and the ticking up to date.
void GstMediaPlayer::update()
{
    const auto before = std::exchange(m_status, [this] {
        if (!m_playRequested || m_stoppedAtEnd)
            return TimeControlStatus::Paused;
        return m_item && m_item->isSounding() ? TimeControlStatus::Playing : TimeControlStatus::WaitingToPlay;
    }());
    if (!m_item || m_status == TimeControlStatus::Paused)
        m_ticker.reset();
    else if (!m_ticker && m_observer)
        m_ticker = m_queue.every(m_interval, [this] { tick(); });
    if (m_status != before)
        m_queue.post([this, alive = std::weak_ptr<int>(m_alive)] {
            if (alive.lock())
                tick();
        });
}

void GstMediaPlayer::tick()
{
    if (!m_item || !m_observer)
        return;
    const auto observer = m_observer; // it may replace itself
    observer(m_item->position());
}

} // namespace navorin
