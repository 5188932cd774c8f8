#include "Views/Playback/MiniPlayerBar.h"

#include "Services/Playback/RadioPlayer.h"
#include "Views/Shared/ShownText.h"

#include <algorithm>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

PlayButton playButton(bool isPlaying, bool isBuffering)
{
    if (isPlaying)
        return {false, u"pause.fill"_s, u"توقف"_s};
    return {isBuffering, u"play.fill"_s, u"پخش"_s};
}

double playedShare(bool isLive, double currentTime, double duration)
{
    return isLive || !(duration > 0) ? -1 : std::clamp(currentTime / duration, 0.0, 1.0);
}

MiniPlayerBar::MiniPlayerBar(QObject *parent)
    : MiniPlayerBar(RadioPlayer::shared(), parent)
{
}

MiniPlayerBar::MiniPlayerBar(RadioPlayer &player, QObject *parent)
    : QObject(parent)
    , m_player(player)
{
    connect(&m_player, &RadioPlayer::currentStationChanged, this, &MiniPlayerBar::stationChanged);
    connect(&m_player, &RadioPlayer::isPlayingChanged, this, &MiniPlayerBar::playbackChanged);
    connect(&m_player, &RadioPlayer::isBufferingChanged, this, &MiniPlayerBar::playbackChanged);
    connect(&m_player, &RadioPlayer::isLiveChanged, this, &MiniPlayerBar::progressChanged);
    connect(&m_player, &RadioPlayer::currentTimeChanged, this, &MiniPlayerBar::progressChanged);
    connect(&m_player, &RadioPlayer::durationChanged, this, &MiniPlayerBar::progressChanged);
    connect(&m_player, &RadioPlayer::themeColorChanged, this, &MiniPlayerBar::themeColorChanged);
}

QString MiniPlayerBar::artworkAddress() const
{
    const auto &station = m_player.currentStation();
    return station ? station->currentTrackArtworkURL().value_or(QString()) : QString();
}

QString MiniPlayerBar::title() const
{
    const auto &station = m_player.currentStation();
    return station ? shownText(station->displayTrackTitle()) : QString();
}

QString MiniPlayerBar::stationName() const
{
    const auto &station = m_player.currentStation();
    return station ? shownText(station->displayName()) : QString();
}

QString MiniPlayerBar::buttonSymbol() const
{
    return button().symbol;
}

QString MiniPlayerBar::buttonName() const
{
    return button().name;
}

bool MiniPlayerBar::isWaiting() const
{
    return button().isWaiting;
}

bool MiniPlayerBar::isPlaying() const
{
    return m_player.isPlaying();
}

bool MiniPlayerBar::isLive() const
{
    return m_player.isLive();
}

double MiniPlayerBar::progress() const
{
    return playedShare(m_player.isLive(), m_player.currentTime(), m_player.duration());
}

QColor MiniPlayerBar::themeColor() const
{
    return m_player.themeColor();
}

void MiniPlayerBar::togglePlayPause()
{
    m_player.togglePlayPause();
}

void MiniPlayerBar::openFullPlayer()
{
    m_player.setFullPlayerPresented(true);
}

PlayButton MiniPlayerBar::button() const
{
    return playButton(m_player.isPlaying(), m_player.isBuffering());
}

} // namespace navorin
