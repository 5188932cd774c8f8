#include "Views/Offline/OfflineLibraryView.h"

#include "Platform/Tasks/Detached.h"
#include "Services/Offline/OfflineStore.h"
#include "Services/Playback/RadioPlayer.h"
#include "Views/Shared/ShownText.h"

#include <algorithm>

namespace navorin {

namespace {

ListRow rowOf(const OfflineTrackEntry &entry, const OfflineStore &store)
{
    return {entry.key, shownText(entry.title), shownText(entry.artist),
            entry.artworkFileName ? store.artworkURLString(*entry.artworkFileName)
                                  : entry.artworkRemoteURL.value_or(QString()),
            durationText(entry.duration)};
}

} // namespace

OfflineLibraryView::OfflineLibraryView(QObject *parent)
    : OfflineLibraryView(OfflineStore::shared(), RadioPlayer::shared(), parent)
{
}

OfflineLibraryView::OfflineLibraryView(OfflineStore &store, RadioPlayer &player, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_player(player)
{
    connect(&m_store, &OfflineStore::entriesChanged, this, &OfflineLibraryView::showEntries);
    connect(&m_store, &OfflineStore::pendingMetaChanged, this, &OfflineLibraryView::showDownloads);
    connect(&m_store, &OfflineStore::activeProgressChanged, this, &OfflineLibraryView::showDownloads);
    connect(&m_player, &RadioPlayer::currentStationChanged, this, &OfflineLibraryView::hasStationChanged);
    showEntries();
    showDownloads();
}

bool OfflineLibraryView::isEmpty() const
{
    return m_store.entries().isEmpty() && m_store.pendingMeta().isEmpty();
}

bool OfflineLibraryView::hasEntries() const
{
    return !m_store.entries().isEmpty();
}

QString OfflineLibraryView::summary() const
{
    return librarySummary(m_store.entries().size(), m_store.totalSizeBytes(),
                          dataSizeFormat(qEnvironmentVariable("XDG_CURRENT_DESKTOP")));
}

bool OfflineLibraryView::hasStation() const
{
    return m_player.hasStation();
}

void OfflineLibraryView::play(int row)
{
    auto station = m_store.offlineStation();
    if (!station)
        return;
    station->trackIndex = row;
    QMetaObject::invokeMethod(
        &m_player,
        [&player = m_player, station = *std::move(station)] {
            detach(player.selectStation(station), "playing the offline library");
        },
        Qt::QueuedConnection);
}

QString OfflineLibraryView::keyAt(int row) const
{
    return m_entries.rows().at(row).key;
}

void OfflineLibraryView::remove(const QString &key)
{
    const auto entries = m_store.entries();
    const auto found = std::ranges::find(entries, key, &OfflineTrackEntry::key);
    if (found != entries.end())
        m_store.remove(*found);
}

void OfflineLibraryView::removeAll()
{
    m_store.removeAll();
}

void OfflineLibraryView::cancel(const QString &key)
{
    const auto &running = m_store.pendingMeta();
    const auto found = running.constFind(key);
    if (found != running.cend())
        m_store.cancelDownload(*found);
}

void OfflineLibraryView::showEntries()
{
    const auto &entries = m_store.entries();
    QList<ListRow> rows;
    rows.reserve(entries.size());
    for (const auto &entry : entries)
        rows.append(rowOf(entry, m_store));
    m_entries.setRows(rows);
    Q_EMIT libraryChanged();
}

void OfflineLibraryView::showDownloads()
{
    m_downloads.setRows(downloadRows(m_downloads.rows(), m_store.pendingMeta(), m_store.activeProgress()));
    Q_EMIT libraryChanged();
}

} // namespace navorin
