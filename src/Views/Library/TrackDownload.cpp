#include "Views/Library/TrackDownload.h"

#include "Services/Offline/OfflineStore.h"

namespace navorin {

TrackDownload::TrackDownload(QObject *parent)
    : TrackDownload(OfflineStore::shared(), parent)
{
}

TrackDownload::TrackDownload(OfflineStore &offline, QObject *parent)
    : QObject(parent)
    , m_offline(offline)
{
    connect(&m_offline, &OfflineStore::entriesChanged, this, &TrackDownload::changed);
    connect(&m_offline, &OfflineStore::activeProgressChanged, this, &TrackDownload::changed);
}

void TrackDownload::setPlaylist(PlaylistDetailView *playlist)
{
    if (m_playlist)
        m_playlist->disconnect(this);
    m_playlist = playlist;
    if (m_playlist)
        connect(m_playlist, &PlaylistDetailView::shownChanged, this, &TrackDownload::changed);
    Q_EMIT changed();
}

void TrackDownload::setRow(int row)
{
    m_row = row;
    Q_EMIT changed();
}

bool TrackDownload::isKept() const
{
    return m_offline.isDownloaded(track());
}

bool TrackDownload::isLoading() const
{
    const auto *current = track();
    return current && !isKept() && m_offline.activeProgress().contains(offlineKey(*current));
}

double TrackDownload::progress() const
{
    const auto *current = track();
    return current ? m_offline.activeProgress().value(offlineKey(*current)) : 0;
}

void TrackDownload::toggle()
{
    const auto *current = track();
    if (!current)
        return;
    if (const auto entry = m_offline.entry(*current))
        m_offline.remove(*entry);
    else if (isLoading())
        m_offline.cancelDownload(*current);
    else
        m_offline.download(*current);
}

const PlaylistTrack *TrackDownload::track() const
{
    return m_playlist ? m_playlist->trackAt(m_row) : nullptr;
}

} // namespace navorin
