#include "Views/Catalogue/StationDetailView.h"

#include "Platform/Tasks/Detached.h"
#include "Services/Backend/APIClient.h"
#include "Services/Offline/OfflineStore.h"
#include "Services/Playback/RadioPlayer.h"
#include "Views/Playback/StationSelection.h"
#include "Views/Shared/ShownText.h"

#include <QCoro/QCoroFuture>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

StationDetailView::StationDetailView(QObject *parent)
    : StationDetailView({RadioPlayer::shared(), OfflineStore::shared(), APIClient::shared()}, parent)
{
}

StationDetailView::StationDetailView(const Sources &sources, QObject *parent)
    : QObject(parent)
    , m_sources(sources)
{
    auto &player = m_sources.player;
    connect(&player, &RadioPlayer::currentStationChanged, this, [this] {
        markCurrentRow();
        Q_EMIT playbackChanged();
    });
    connect(&player, &RadioPlayer::isPlayingChanged, this, &StationDetailView::playbackChanged);
    connect(&player, &RadioPlayer::themeColorChanged, this, &StationDetailView::themeColorChanged);
}

void StationDetailView::setStation(const QVariant &station)
{
    m_station = station.value<Station>();
    show();
}

StationDetailView::Content StationDetailView::content() const
{
    if (m_isLoading)
        return Loading;
    if (displayed().hasTracks())
        return Tracks;
    return displayed().needsHydration() ? Failed : Live;
}

QString StationDetailView::title() const
{
    return shownText(displayed().displayName());
}

QString StationDetailView::artworkAddress() const
{
    return displayed().artworkURL.value_or(QString());
}

QString StationDetailView::trackCount() const
{
    return QString::number(m_tracks.rowCount()) + u" آهنگ"_s;
}

bool StationDetailView::hasStation() const
{
    return m_sources.player.hasStation();
}

bool StationDetailView::isPlaying() const
{
    return m_sources.player.isPlaying();
}

QColor StationDetailView::themeColor() const
{
    return m_sources.player.themeColor();
}

void StationDetailView::hydrateIfNeeded()
{
    if (m_hydrated || m_isLoading || !m_station.needsHydration())
        return;
    setLoading(true);
    detach(hydrate(QPointer(this)), "fetching a station's tracks");
}

QCoro::Task<void> StationDetailView::hydrate(QPointer<StationDetailView> screen)
{
    auto answer = screen->m_sources.client.hydrateSongsara(screen->m_station.genre);
    try {
        auto station = co_await answer;
        if (screen)
            screen->m_hydrated = std::move(station);
    } catch (const std::exception &) { // shown by the tracks that are not there
    }
    if (!screen)
        co_return;
    screen->setLoading(false);
    screen->show();
}

void StationDetailView::play(int index)
{
    selectSoon(m_sources.player, stationAtTrack(displayed(), index));
    m_sources.player.setFullPlayerPresented(true);
}

bool StationDetailView::isDownloaded(int row) const
{
    const auto *track = trackAt(row);
    return track && m_sources.offline.isDownloaded(track) && m_sources.offline.entry(*track);
}

void StationDetailView::download(int row)
{
    if (const auto *track = trackAt(row))
        m_sources.offline.download(*track);
}

void StationDetailView::removeDownload(int row)
{
    const auto *track = trackAt(row);
    if (!track)
        return;
    if (const auto entry = m_sources.offline.entry(*track))
        m_sources.offline.remove(*entry);
}

const PlaylistTrack *StationDetailView::trackAt(int row) const
{
    const auto &tracks = m_tracks.tracks();
    return row >= 0 && row < tracks.size() ? &tracks.at(row) : nullptr;
}

void StationDetailView::setLoading(bool loading)
{
    m_isLoading = loading;
    Q_EMIT contentChanged();
}

void StationDetailView::show()
{
    m_tracks.setTracks(displayed().tracks.value_or(QList<PlaylistTrack>()));
    markCurrentRow();
    Q_EMIT contentChanged();
}

void StationDetailView::markCurrentRow()
{
    const auto &current = m_sources.player.currentStation();
    const bool isHere = current && current->genre == displayed().genre;
    m_tracks.setCurrentRow(isHere ? std::optional(current->normalizedTrackIndex()) : std::nullopt);
}

} // namespace navorin
