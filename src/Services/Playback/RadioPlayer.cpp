#include "Services/Playback/RadioPlayer.h"

#include "Platform/Audio/MediaPlayer.h"
#include "Platform/Desktop/DebugLine.h"
#include "Platform/Desktop/NowPlayingCenter.h"
#include "Platform/Tasks/Detached.h"
#include "Services/Backend/APIClient.h"
#include "Services/Equaliser/EqTap.h"
#include "Services/Offline/OfflineStore.h"
#include "Services/Playback/PlaybackDecisions.h"

#include <QCoro/QCoroFuture>

#include <utility>

namespace navorin {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto tickInterval = 500ms;

void printOfflineTrack(const PlaylistTrack &track)
{
    printDebugLine(u"[RadioPlayer] playing offline: "_s + track.title.value_or(u"?"_s));
}

} // namespace

RadioPlayer &RadioPlayer::shared()
{
    return instance().get();
}

SharedInstance<RadioPlayer> &RadioPlayer::instance()
{
    static SharedInstance<RadioPlayer> holder;
    return holder;
}

RadioPlayer::RadioPlayer(const Surroundings &surroundings)
    : m_player(surroundings.player)
    , m_audioSession(surroundings.audioSession)
    , m_nowPlaying(surroundings.nowPlaying)
    , m_remoteCommands(surroundings.remoteCommands)
    , m_queue(surroundings.queue)
    , m_client(surroundings.client)
    , m_offline(surroundings.offline)
    , m_themeColor(accentColor())
{
    configureAudioSession();
    m_player.setPeriodicTimeObserver(tickInterval, [this, weak = QPointer(this)](double seconds) {
        if (weak)
            later([this, seconds] { handleTimeUpdate(seconds); });
    });
    connect(&m_player, &MediaPlayer::itemDidPlayToEnd, this,
            [this](const MediaItem *finished) { later([this, finished] { handleItemEnd(finished); }); });
    observeAudioSession();
    setupRemoteCommands();
    m_player.setVolume(m_volume);
    followPlaybackState();
}

RadioPlayer::~RadioPlayer() = default;

void RadioPlayer::later(std::function<void()> work)
{
    m_queue.post([weak = QPointer(this), work = std::move(work)] {
        if (weak)
            work();
    });
}

template <typename T>
void RadioPlayer::publish(T &field, const T &value, void (RadioPlayer::*changed)())
{
    if (field == value)
        return;
    field = value;
    Q_EMIT(this->*changed)();
}

void RadioPlayer::setCurrentStation(const Station &station)
{
    // Equal stations may still differ in their tracks, so this is told every time.
    m_currentStation = station;
    Q_EMIT currentStationChanged();
}

void RadioPlayer::setPlaying(bool playing)
{
    publish(m_isPlaying, playing, &RadioPlayer::isPlayingChanged);
}

void RadioPlayer::setBuffering(bool buffering)
{
    publish(m_isBuffering, buffering, &RadioPlayer::isBufferingChanged);
}

void RadioPlayer::setStatusText(const QString &text)
{
    publish(m_statusText, text, &RadioPlayer::statusTextChanged);
}

void RadioPlayer::setThemeColor(const QColor &color)
{
    publish(m_themeColor, color, &RadioPlayer::themeColorChanged);
}

void RadioPlayer::setFullPlayerPresented(bool presented)
{
    publish(m_isFullPlayerPresented, presented, &RadioPlayer::isFullPlayerPresentedChanged);
}

QCoro::Task<void> RadioPlayer::selectStation(Station station)
{
    setCurrentStation(station);
    m_localTrackOverride = choosesItsTrack(station);
    m_wantsPlayback = true;
    setStatusText(u"در حال اتصال…"_s);
    if (!station.needsHydration() || m_pendingHydrationGenre == station.genre) {
        play(station);
        co_return;
    }

    m_pendingHydrationGenre = station.genre;
    setStatusText(u"در حال دریافت لیست آهنگها…"_s);
    // What is selected by the time the answer comes is not looked at: the last answer takes over.
    try {
        station = co_await m_client.hydrateSongsara(station.genre);
        setCurrentStation(station);
    } catch (const std::exception &) {
        // Without its tracks the station plays as a live one, if it has an address.
    }
    m_pendingHydrationGenre.reset();
    play(station);
}

std::optional<QUrl> RadioPlayer::sourceOf(const Station &station) const
{
    if (const auto *track = station.currentTrack()) {
        auto url = m_offline.audioURL(*track);
        if (!url)
            url = m_client.absolute(station.currentStreamURL());
        if (url && m_offline.isDownloaded(track))
            printOfflineTrack(*track);
        return url;
    }
    return m_client.absolute(station.currentStreamURL());
}

void RadioPlayer::play(const Station &station)
{
    const auto url = sourceOf(station);
    if (!url) {
        setStatusText(u"آدرس پخش نامعتبر"_s);
        return;
    }
    publish(m_isLive, !station.hasTracks(), &RadioPlayer::isLiveChanged);
    updateNowPlayingInfo();
    auto item = m_player.makeItem(*url);
    m_player.setVolume(m_volume);
    m_player.replaceCurrentItem(item);
    m_queue.post([item = std::move(item)] { detach(bindEqualizer(item), "binding the equaliser"); });
    if (m_wantsPlayback) {
        setBuffering(true);
        m_player.play();
    }
}

QCoro::Task<void> RadioPlayer::bindEqualizer(std::shared_ptr<MediaItem> item)
{
    QList<AudioTrack> tracks;
    try {
        tracks = co_await item->loadAudioTracks();
    } catch (const std::exception &) {
        co_return; // the item plays without an equaliser, or not at all
    }
    if (tracks.isEmpty())
        co_return;
    auto tap = EqTap::makeTap();
    if (!tap)
        co_return;
    item->setAudioTap(tracks.first(), std::move(tap));
    printDebugLine(u"[RadioPlayer] EQ tap bound to track "_s + QString::number(tracks.first().trackId));
}

void RadioPlayer::play()
{
    m_wantsPlayback = true;
    if (!m_player.currentItem() && m_currentStation) {
        later([this] { detach(selectStation(*m_currentStation), "selecting the station again"); });
        return;
    }
    configureAudioSession();
    setBuffering(true);
    m_player.play();
}

void RadioPlayer::pause()
{
    m_wantsPlayback = false;
    m_player.pause();
    setPlaying(false);
    setBuffering(false);
    updateNowPlayingInfo();
}

void RadioPlayer::togglePlayPause()
{
    if (m_isPlaying)
        pause();
    else
        play();
}

void RadioPlayer::seek(double seconds)
{
    const auto target = seekTarget(seconds, m_duration);
    m_player.seek(target);
    publish(m_currentTime, target, &RadioPlayer::currentTimeChanged);
    m_nowPlaying.announceJump(target);
    updateNowPlayingInfo();
}

void RadioPlayer::skip(double seconds)
{
    if (!m_isLive && m_duration > 0)
        seek(m_currentTime + seconds);
}

void RadioPlayer::setVolume(float volume)
{
    publish(m_volume, volume, &RadioPlayer::volumeChanged);
    m_player.setVolume(m_volume);
}

void RadioPlayer::handleTimeUpdate(double seconds)
{
    const auto item = m_player.currentItem();
    if (!item)
        return;
    if (const auto error = item->error(); error && item->status() == MediaItem::Status::Failed)
        printDebugLine(u"[RadioPlayer] item failed: "_s + *error);
    if (const auto position = publishedPosition(seconds)) {
        if (isJump(m_currentTime, *position))
            m_nowPlaying.announceJump(*position);
        publish(m_currentTime, *position, &RadioPlayer::currentTimeChanged);
    }
    publish(m_duration, publishedDuration(item->duration()), &RadioPlayer::durationChanged);

    switch (tickOutcome(m_player.timeControlStatus(), m_isPlaying, m_isBuffering, m_wantsPlayback)) {
    case TickOutcome::Nothing:
        break;
    case TickOutcome::UserPaused:
        setPlaying(false);
        m_metadataTimer.reset();
        break;
    case TickOutcome::Buffering:
        setBuffering(true);
        break;
    case TickOutcome::ArrivedAtPlaying:
        arriveAtPlaying();
        break;
    }
}

void RadioPlayer::arriveAtPlaying()
{
    setPlaying(true);
    setBuffering(false);
    setStatusText({});
    startMetadataPolling();
    updateNowPlayingInfo();
    later([this] { detach(refreshLiveMetadata(), "refreshing the live metadata"); });
}

} // namespace navorin
