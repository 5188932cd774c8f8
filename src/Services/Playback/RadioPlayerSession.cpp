#include "Platform/Audio/AudioSession.h"
#include "Platform/Audio/MediaPlayer.h"
#include "Platform/Desktop/DebugLine.h"
#include "Platform/Desktop/NowPlayingCenter.h"
#include "Platform/Desktop/RemoteCommandCenter.h"
#include "Platform/Tasks/Detached.h"
#include "Services/Artwork/ArtworkPreparation.h"
#include "Services/Backend/APIClient.h"
#include "Services/Playback/PlaybackDecisions.h"
#include "Services/Playback/RadioPlayer.h"

#include <QCoro/QCoroFuture>
#include <QThreadPool>

#include <utility>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr double skipInterval = 10; // seconds, where a command does not bring its own
constexpr qint64 largestArtwork = 32 << 20;

/// Decoding and averaging happen on a pool thread; what is published, and in which order, does not show it.
QFuture<std::optional<ReceivedArtwork>> fetchArtwork(const APIClient &client, const QUrl &address)
{
    return client.data(address, largestArtwork).then(QThreadPool::globalInstance(), receivedArtwork);
}

} // namespace

void RadioPlayer::updateNowPlayingInfo()
{
    const PlaybackMoment moment{m_isPlaying, m_isLive, m_duration, m_currentTime};
    const auto artwork = m_currentStation ? m_artworkCache.value(artworkKey(*m_currentStation)) : nullptr;
    m_nowPlaying.setNowPlayingInfo(nowPlayingInfo(m_currentStation, moment, artwork));
    loadArtworkIfNeeded();
}

void RadioPlayer::publishPlaybackState()
{
    using Status = PlaybackState::Status;
    const auto idle = m_currentStation ? Status::Paused : Status::Stopped;
    m_nowPlaying.setPlaybackState({m_isPlaying ? Status::Playing : idle, double(m_volume), canSeek()});
}

void RadioPlayer::followPlaybackState()
{
    for (const auto signal :
         {&RadioPlayer::currentStationChanged, &RadioPlayer::isPlayingChanged, &RadioPlayer::isLiveChanged,
          &RadioPlayer::durationChanged, &RadioPlayer::volumeChanged})
        connect(this, signal, this, &RadioPlayer::publishPlaybackState);
    m_nowPlaying.setPositionSource([weak = QPointer(this)] { return weak ? weak->m_currentTime : 0.0; });
    publishPlaybackState();
}

void RadioPlayer::loadArtworkIfNeeded()
{
    if (!m_currentStation)
        return;
    const auto key = artworkKey(*m_currentStation);
    if (m_artworkCache.contains(key) || m_artworkInFlight.contains(key))
        return;
    const auto address = m_client.absolute(m_currentStation->currentTrackArtworkURL());
    if (!address)
        return;
    m_artworkInFlight.insert(key);
    later(
        [this, key, address = *address] { detach(loadArtwork(this, key, address), "loading the artwork"); });
}

QCoro::Task<void> RadioPlayer::loadArtwork(QPointer<RadioPlayer> player, QString key, QUrl address)
{
    std::optional<ReceivedArtwork> artwork;
    try {
        artwork = co_await fetchArtwork(player->m_client, address);
    } catch (const std::exception &) {
        // No picture is no failure to anybody, and the next update is the retry.
    }
    if (!player)
        co_return;
    if (artwork) {
        // Whichever download ended last gives the colour, also when something else is selected by now.
        player->m_artworkCache.insert(key, artwork->picture);
        if (artwork->vibrantColor)
            player->setThemeColor(*artwork->vibrantColor);
        player->updateNowPlayingInfo();
    }
    player->m_artworkInFlight.remove(key);
}

void RadioPlayer::setupRemoteCommands()
{
    RemoteCommands commands;
    const auto handler = [this](void (RadioPlayer::*operation)()) {
        return [this, weak = QPointer(this), operation] {
            if (weak)
                later([this, operation] { (this->*operation)(); });
            return RemoteCommandResult::Success;
        };
    };
    commands.play = handler(&RadioPlayer::play);
    commands.pause = handler(&RadioPlayer::pause);
    commands.togglePlayPause = handler(&RadioPlayer::togglePlayPause);
    commands.nextTrack = handler(&RadioPlayer::nextTrack);
    commands.previousTrack = handler(&RadioPlayer::previousTrack);
    commands.changeVolume = [weak = QPointer(this)](double gain) {
        if (weak)
            weak->setVolume(float(gain));
    };
    addSeekingCommands(commands);
    m_remoteCommands.setCommands(std::move(commands));
}

void RadioPlayer::addSeekingCommands(RemoteCommands &commands)
{
    const auto seeking = [this](void (RadioPlayer::*operation)(double), double factor,
                                std::optional<double> fallback) {
        return [this, weak = QPointer(this), operation, factor, fallback](std::optional<double> seconds) {
            const auto argument = seconds ? seconds : fallback;
            if (!weak || !canSeek() || !argument)
                return RemoteCommandResult::CommandFailed;
            later([this, operation, target = factor * *argument] { (this->*operation)(target); });
            return RemoteCommandResult::Success;
        };
    };
    commands.skipForward = seeking(&RadioPlayer::skip, 1, skipInterval);
    commands.skipBackward = seeking(&RadioPlayer::skip, -1, skipInterval);
    commands.changePlaybackPosition = seeking(&RadioPlayer::seek, 1, {});
}

bool RadioPlayer::canSeek() const
{
    return !m_isLive && m_duration > 0;
}

void RadioPlayer::configureAudioSession()
{
    if (const auto error = m_audioSession.configureForPlayback())
        printDebugLine(u"[RadioPlayer] Audio session error: "_s + *error);
}

void RadioPlayer::observeAudioSession()
{
    connect(&m_audioSession, &AudioSession::interruptionBegan, this,
            [this] { later([this] { handleInterruptionBegan(); }); });
    connect(&m_audioSession, &AudioSession::interruptionEnded, this,
            [this](bool resume) { later([this, resume] { handleInterruptionEnded(resume); }); });
    connect(&m_audioSession, &AudioSession::outputDeviceGone, this,
            [this] { later([this] { handleOutputGone(); }); });
}

void RadioPlayer::handleInterruptionBegan()
{
    if (!m_isPlaying)
        return;
    m_player.pause();
    setPlaying(false);
    m_metadataTimer.reset();
    updateNowPlayingInfo();
}

void RadioPlayer::handleInterruptionEnded(bool shouldResume)
{
    if (!m_wantsPlayback || !shouldResume)
        return;
    m_player.play();
    setBuffering(true);
}

/// Pulled-out headphones do not pause: the sound goes on with what remains.
void RadioPlayer::handleOutputGone()
{
    if (m_wantsPlayback)
        m_player.play();
}

} // namespace navorin
