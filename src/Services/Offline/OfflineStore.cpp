#include "Services/Offline/OfflineStore.h"

#include "Services/Offline/AudioExtension.h"

#include <QPointer>

#include <algorithm>
#include <functional>
#include <limits>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

void sortNewestFirst(QList<OfflineTrackEntry> &entries)
{
    std::ranges::sort(entries, std::ranges::greater(), &OfflineTrackEntry::downloadedAt);
}

/// Whether a name stays within the folder that it is put into.
bool isPlainFileName(const QString &name)
{
    return !name.isEmpty() && name != u"."_s && name != u".."_s && !name.contains(u'/') &&
           !name.contains(QChar(u'\0'));
}

} // namespace

SharedInstance<OfflineStore> &OfflineStore::instance()
{
    static SharedInstance<OfflineStore> instance;
    return instance;
}

OfflineStore &OfflineStore::shared()
{
    return instance().get();
}

OfflineStore::OfflineStore(Surroundings surroundings)
    : m_files(surroundings.files)
    , m_mainQueue(surroundings.mainQueue)
    , m_session(surroundings.session)
    , m_client(surroundings.client)
    , m_now(std::move(surroundings.now))
    , m_folder(m_files.applicationSupportFolder() + u"/OfflineTracks"_s)
    , m_indexPath(m_files.applicationSupportFolder() + u"/offline_index.json"_s)
{
    m_pool.setThreadPriority(QThread::LowPriority);
    m_files.createFolder(m_folder);
    m_files.excludeFromBackup(m_folder);
    loadIndex();
}

OfflineStore::~OfflineStore()
{
    endDownloads();
    m_pool.waitForDone();
}

bool OfflineStore::isDownloaded(const PlaylistTrack *track) const
{
    return track && entry(*track);
}

std::optional<OfflineTrackEntry> OfflineStore::entry(const PlaylistTrack &track) const
{
    const auto key = offlineKey(track);
    const QMutexLocker locker(&m_lock);
    const auto found = m_indexByKey.constFind(key);
    return found == m_indexByKey.cend() ? std::nullopt : std::optional(*found);
}

std::optional<QUrl> OfflineStore::audioURL(const PlaylistTrack &track) const
{
    const auto key = offlineKey(track);
    const QMutexLocker locker(&m_lock);
    const auto found = m_indexByKey.constFind(key);
    if (found == m_indexByKey.cend() || !fileExists(found->audioFileName))
        return {};
    return QUrl::fromLocalFile(*pathOf(found->audioFileName));
}

std::optional<QString> OfflineStore::artworkPathString(const PlaylistTrack &track) const
{
    const auto key = offlineKey(track);
    const QMutexLocker locker(&m_lock);
    const auto found = m_indexByKey.constFind(key);
    if (found == m_indexByKey.cend() || !found->artworkFileName || !fileExists(*found->artworkFileName))
        return {};
    return artworkURLString(*found->artworkFileName);
}

QString OfflineStore::artworkURLString(const QString &fileName) const
{
    const auto path = pathOf(fileName);
    return path ? QUrl::fromLocalFile(*path).toString(QUrl::FullyEncoded) : QString();
}

qint64 OfflineStore::totalSizeBytes() const
{
    const QMutexLocker locker(&m_lock);
    qint64 total = 0;
    for (const auto &entry : m_indexByKey) {
        if (qAddOverflow(total, entry.sizeBytes, &total))
            return std::numeric_limits<qint64>::max();
    }
    return total;
}

std::optional<Station> OfflineStore::offlineStation() const
{
    auto entries = indexedEntries();
    if (entries.isEmpty())
        return {};
    std::ranges::sort(entries, std::ranges::less(), &OfflineTrackEntry::downloadedAt);
    Station station;
    station.genre = u"offline-library"_s;
    station.title = u"دانلود شدهها"_s;
    station.serverName = station.title;
    station.source = u"custom"_s;
    station.category = u"playlists"_s;
    station.trackIndex = 0;
    station.trackCount = entries.size();
    auto &tracks = station.tracks.emplace();
    for (const auto &entry : entries) {
        tracks.append({.trackType = entry.trackType,
                       .trackID = entry.trackID,
                       .title = entry.title,
                       .artist = entry.artist,
                       .artworkURL = entry.artworkFileName
                                         ? std::optional(artworkURLString(*entry.artworkFileName))
                                         : entry.artworkRemoteURL,
                       .streamURL = artworkURLString(entry.audioFileName),
                       .duration = entry.duration});
    }
    return station;
}

void OfflineStore::remove(const OfflineTrackEntry &entry)
{
    removeFiles(entry);
    {
        const QMutexLocker locker(&m_lock);
        m_indexByKey.remove(entry.key);
    }
    publishEntriesLater();
    persistIndex();
}

void OfflineStore::removeAll()
{
    QHash<QString, OfflineTrackEntry> removed;
    {
        const QMutexLocker locker(&m_lock);
        removed.swap(m_indexByKey);
    }
    // The index is saved behind the files: stopped in between, the next start repairs what it says.
    inBackground([this, removed] {
        for (const auto &entry : removed)
            removeFiles(entry);
        persistIndex();
    });
    publishEntriesLater();
}

void OfflineStore::removeFiles(const OfflineTrackEntry &entry)
{
    for (const auto &name : {entry.audioFileName, entry.artworkFileName.value_or(QString())}) {
        if (const auto path = pathOf(name))
            m_files.remove(*path);
    }
}

void OfflineStore::loadIndex()
{
    const auto file = m_files.read(m_indexPath);
    if (!file)
        return;
    QList<OfflineTrackEntry> entries;
    try {
        entries = json::decode<QList<OfflineTrackEntry>>(*file);
    } catch (const DecodingError &) {
        return;
    }
    bool changed = false;
    for (auto &entry : entries) {
        if (!fileExists(entry.audioFileName))
            continue;
        if (entry.artworkFileName && !isPlainFileName(*entry.artworkFileName))
            entry.artworkFileName.reset();
        if (auto better = repaired(entry)) {
            entry = *std::move(better);
            changed = true;
        }
        m_indexByKey.insert(entry.key, entry);
    }
    publishEntries();
    if (changed)
        persistIndex();
}

std::optional<OfflineTrackEntry> OfflineStore::repaired(const OfflineTrackEntry &entry) const
{
    const auto stopgap = u".audio"_s;
    if (!entry.audioFileName.endsWith(stopgap))
        return {};
    const auto path = pathOf(entry.audioFileName);
    const auto audio = m_files.read(*path);
    if (!audio)
        return {};
    auto better = entry;
    better.audioFileName.replace(stopgap, u"."_s + sniffAudioExtension(*audio));
    if (!m_files.move(*path, *pathOf(better.audioFileName)))
        return {};
    return better;
}

void OfflineStore::persistIndex()
{
    QMutexLocker locker(&m_lock);
    const auto entries = m_indexByKey.values();
    const auto number = ++m_lastSave;
    locker.unlock();
    inBackground([this, entries, number] { save(entries, number); });
}

void OfflineStore::save(QList<OfflineTrackEntry> entries, quint64 number)
{
    sortNewestFirst(entries);
    const auto json = encodedIndex(entries);
    const QMutexLocker locker(&m_saveLock);
    if (number < m_newestSaved)
        return;
    m_newestSaved = number;
    m_files.writeAtomically(m_indexPath, json);
}

void OfflineStore::inBackground(std::function<void()> work)
{
    {
        const QMutexLocker locker(&m_workLock);
        m_work.append(std::move(work));
    }
    m_pool.start([this] { doOldestWork(); });
}

void OfflineStore::doOldestWork()
{
    QMutexLocker locker(&m_workLock);
    const auto work = m_work.dequeue();
    locker.unlock();
    work();
}

void OfflineStore::postToSelf(std::function<void()> work)
{
    m_mainQueue.post([store = QPointer(this), work = std::move(work)] {
        if (store)
            work();
    });
}

void OfflineStore::publishEntriesLater()
{
    postToSelf([this] { publishEntries(); });
}

void OfflineStore::publishEntries()
{
    auto entries = indexedEntries();
    sortNewestFirst(entries);
    if (entries == m_entries)
        return;
    m_entries = std::move(entries);
    Q_EMIT entriesChanged();
}

QList<OfflineTrackEntry> OfflineStore::indexedEntries() const
{
    const QMutexLocker locker(&m_lock);
    return m_indexByKey.values();
}

std::optional<QString> OfflineStore::pathOf(const QString &fileName) const
{
    if (!isPlainFileName(fileName))
        return {};
    return QString(m_folder + u'/' + fileName);
}

bool OfflineStore::fileExists(const QString &fileName) const
{
    const auto path = pathOf(fileName);
    return path && m_files.exists(*path);
}

} // namespace navorin
