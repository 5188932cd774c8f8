#include "Views/Playback/FullPlayerView.h"

#include "Platform/Desktop/UrlOpener.h"
#include "Platform/Tasks/Detached.h"
#include "Services/Account/AuthStore.h"
#include "Services/Backend/APIClient.h"
#include "Services/Offline/OfflineStore.h"
#include "Services/Playback/RadioPlayer.h"
#include "Views/Shared/ShownText.h"
#include "Views/ViewSetup.h"

#include <QCoro/QCoroFuture>
#include <QPointer>

namespace navorin {

namespace {

template <typename Screen, typename Result>
QCoro::Task<void> openLink(QPointer<Screen> screen, QFuture<QUrl> link, UrlOpener &opener, Result result)
{
    std::optional<QString> failure;
    try {
        const auto address = co_await link;
        if (screen)
            opener.open(address);
    } catch (const std::exception &error) {
        failure = errorDescription(error);
    }
    if (screen)
        result(failure);
}

template <typename Screen, typename Done>
QCoro::Task<void> toggleFavorite(QPointer<Screen> screen, AuthStore &auth, Station station, Done done)
{
    co_await auth.toggleFavorite(station);
    if (screen)
        done();
}

} // namespace

FullPlayerView::FullPlayerView(QObject *parent)
    : FullPlayerView({RadioPlayer::shared(), AuthStore::shared(), OfflineStore::shared(), APIClient::shared(),
                      viewSurroundings().urlOpener},
                     parent)
{
}

FullPlayerView::FullPlayerView(const Sources &sources, QObject *parent)
    : QObject(parent)
    , m_sources(sources)
{
    observePlayer();
    auto &auth = m_sources.auth;
    connect(&auth, &AuthStore::userChanged, this, &FullPlayerView::accountChanged);
    connect(&auth, &AuthStore::favoriteIDsChanged, this, &FullPlayerView::favoriteChanged);
    auto &offline = m_sources.offline;
    connect(&offline, &OfflineStore::entriesChanged, this, &FullPlayerView::keepChanged);
    connect(&offline, &OfflineStore::activeProgressChanged, this, &FullPlayerView::keepChanged);
    connect(&offline, &OfflineStore::lastErrorChanged, this, &FullPlayerView::keepChanged);
}

void FullPlayerView::observePlayer()
{
    auto &player = m_sources.player;
    connect(&player, &RadioPlayer::currentStationChanged, this, &FullPlayerView::stationChanged);
    connect(&player, &RadioPlayer::currentStationChanged, this, &FullPlayerView::favoriteChanged);
    connect(&player, &RadioPlayer::currentStationChanged, this, &FullPlayerView::keepChanged);
    connect(&player, &RadioPlayer::isPlayingChanged, this, &FullPlayerView::playbackChanged);
    connect(&player, &RadioPlayer::isBufferingChanged, this, &FullPlayerView::playbackChanged);
    connect(&player, &RadioPlayer::isLiveChanged, this, &FullPlayerView::positionChanged);
    connect(&player, &RadioPlayer::currentTimeChanged, this, &FullPlayerView::positionChanged);
    connect(&player, &RadioPlayer::durationChanged, this, &FullPlayerView::positionChanged);
    connect(&player, &RadioPlayer::volumeChanged, this, &FullPlayerView::volumeChanged);
    connect(&player, &RadioPlayer::themeColorChanged, this, &FullPlayerView::themeColorChanged);
}

bool FullPlayerView::hasStation() const
{
    return m_sources.player.hasStation();
}

QString FullPlayerView::artworkAddress() const
{
    const auto &station = m_sources.player.currentStation();
    return station ? station->currentTrackArtworkURL().value_or(QString()) : QString();
}

QString FullPlayerView::title() const
{
    const auto &station = m_sources.player.currentStation();
    return station ? shownText(station->displayTrackTitle()) : QString();
}

QString FullPlayerView::subtitle() const
{
    const auto &station = m_sources.player.currentStation();
    if (!station)
        return {};
    const auto artist = station->displayArtist();
    return shownText(artist.isEmpty() ? station->displayName() : artist);
}

bool FullPlayerView::canSkipTracks() const
{
    return m_sources.player.canSkipTracks();
}

bool FullPlayerView::isPlaying() const
{
    return m_sources.player.isPlaying();
}

bool FullPlayerView::isWaiting() const
{
    return button().isWaiting;
}

QString FullPlayerView::buttonSymbol() const
{
    return button().symbol;
}

QString FullPlayerView::buttonName() const
{
    return button().name;
}

bool FullPlayerView::isLive() const
{
    return m_sources.player.isLive();
}

bool FullPlayerView::canSkipTime() const
{
    return !isLive() && duration() > 0;
}

double FullPlayerView::currentTime() const
{
    return m_sources.player.currentTime();
}

double FullPlayerView::duration() const
{
    return m_sources.player.duration();
}

QString FullPlayerView::currentTimeText() const
{
    return formatSeconds(currentTime());
}

QString FullPlayerView::durationText() const
{
    return formatSeconds(duration());
}

float FullPlayerView::volume() const
{
    return m_sources.player.volume();
}

void FullPlayerView::setVolume(float volume)
{
    m_sources.player.setVolume(volume);
}

QColor FullPlayerView::themeColor() const
{
    return m_sources.player.themeColor();
}

bool FullPlayerView::isAuthed() const
{
    return m_sources.auth.isAuthed();
}

bool FullPlayerView::isFavorite() const
{
    const auto &station = m_sources.player.currentStation();
    return station && m_sources.auth.favoriteIDs().contains(station->currentTrackID());
}

bool FullPlayerView::hasTrack() const
{
    return track() != nullptr;
}

FullPlayerView::Keep FullPlayerView::keep() const
{
    const auto *current = track();
    if (!current)
        return NotKept;
    const auto &offline = m_sources.offline;
    return Keep(
        keepState(offline.isDownloaded(current), offline.activeProgress().contains(offlineKey(*current))));
}

double FullPlayerView::keepProgress() const
{
    const auto *current = track();
    return current ? m_sources.offline.activeProgress().value(offlineKey(*current)) : 0;
}

QString FullPlayerView::keepError() const
{
    return m_sources.offline.lastError().value_or(QString());
}

PlayerMetrics FullPlayerView::metrics(double width, double height)
{
    return playerMetrics(width, height);
}

double FullPlayerView::offsetOfDrag(QPointF moved, double now)
{
    return dragOffset(moved, now);
}

bool FullPlayerView::isDismissal(QPointF moved)
{
    return dragDismisses(moved);
}

void FullPlayerView::dismiss()
{
    m_sources.player.setFullPlayerPresented(false);
}

void FullPlayerView::togglePlayPause()
{
    m_sources.player.togglePlayPause();
}

void FullPlayerView::seek(double seconds)
{
    m_sources.player.seek(seconds);
}

void FullPlayerView::skip(double seconds)
{
    m_sources.player.skip(seconds);
}

void FullPlayerView::previousTrack()
{
    m_sources.player.previousTrack();
}

void FullPlayerView::nextTrack()
{
    m_sources.player.nextTrack();
}

void FullPlayerView::handleFavoriteTap()
{
    const auto &station = m_sources.player.currentStation();
    if (!station)
        return;
    if (!isAuthed()) {
        Q_EMIT loginRequested();
        return;
    }
    setFavAnimating(true);
    detach(toggleFavorite(QPointer(this), m_sources.auth, *station, [this] { setFavAnimating(false); }),
           "making the song a favourite");
}

void FullPlayerView::toggleKeep()
{
    const auto *current = track();
    if (!current)
        return;
    auto &offline = m_sources.offline;
    switch (keep()) {
    case Kept:
        if (const auto entry = offline.entry(*current))
            offline.remove(*entry);
        break;
    case Loading:
        offline.cancelDownload(*current);
        break;
    case NotKept:
        offline.download(*current);
        break;
    }
}

void FullPlayerView::openInTelegram()
{
    const auto &station = m_sources.player.currentStation();
    if (m_tgLoading || !station)
        return;
    setTelegram(true, std::nullopt);
    auto link = m_sources.client.telegramDownloadToken(*station);
    detach(openLink(QPointer(this), std::move(link), m_sources.urlOpener,
                    [this](const std::optional<QString> &failure) { setTelegram(false, failure); }),
           "making a link for Telegram");
}

PlayButton FullPlayerView::button() const
{
    return playButton(m_sources.player.isPlaying(), m_sources.player.isBuffering());
}

const PlaylistTrack *FullPlayerView::track() const
{
    const auto &station = m_sources.player.currentStation();
    return station && station->hasTracks() ? station->currentTrack() : nullptr;
}

void FullPlayerView::setFavAnimating(bool animating)
{
    if (m_favAnimating == animating)
        return;
    m_favAnimating = animating;
    Q_EMIT favAnimatingChanged();
}

void FullPlayerView::setTelegram(bool loading, const std::optional<QString> &error)
{
    m_tgLoading = loading;
    m_tgError = error;
    Q_EMIT telegramChanged();
}

} // namespace navorin
