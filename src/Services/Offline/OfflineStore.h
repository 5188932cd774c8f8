#pragma once

#include "Models/Station.h"
#include "Platform/Http/HttpSession.h"
#include "Platform/Storage/FileStore.h"
#include "Platform/Tasks/MainQueue.h"
#include "Services/Offline/OfflineDownload.h"
#include "Services/Offline/OfflineTrackEntry.h"
#include "Services/SharedInstance.h"

#include <QHash>
#include <QMutex>
#include <QObject>
#include <QQueue>
#include <QThreadPool>
#include <QUrl>

#include <condition_variable>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace navorin {

class APIClient;
class NavorinRadioApp;
struct TestAccess;

/// The tracks kept on this machine for playing without a network: their files, flat in one folder, and an
/// index beside it. They belong to the machine, not to an account. There is no limit on their number and no
/// expiry.
///
/// What goes wrong with a download is told by `lastError`. Every other failure is silent: a lost or broken
/// index means an empty library, a file that vanished means that its entry is gone at the next start. A name
/// in the index that would lead out of the folder counts as a file that is not there.
///
/// The lookups may be called from any thread; all else belongs to the UI thread.
class OfflineStore final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QList<navorin::OfflineTrackEntry> entries READ entries NOTIFY entriesChanged)

public:
    /// What the store works with; all of it outlives the store.
    struct Surroundings
    {
        FileStore &files;
        MainQueue &mainQueue;
        HttpSession &session;
        const APIClient &client;
        SteadyClock now = &std::chrono::steady_clock::now;
    };

    [[nodiscard]] static OfflineStore &shared();
    /// Gives up the downloads, and waits for the saves and removals that are under way.
    ~OfflineStore() override;

    /// For the session that fetches audio: patient with a slow network, but not for ever.
    [[nodiscard]] static HttpSessionConfiguration sessionConfiguration();

    /// The library, newest first: a copy for the screens, which may lag behind the index for a moment.
    [[nodiscard]] const QList<OfflineTrackEntry> &entries() const { return m_entries; }

    /// How far each running download is, from 0 to 0.99, by offlineKey(). A key is there exactly while its
    /// download runs; each changes at most five times a second.
    [[nodiscard]] const QHash<QString, double> &activeProgress() const { return m_activeProgress; }
    /// The tracks of the running downloads, by the same keys.
    [[nodiscard]] const QHash<QString, PlaylistTrack> &pendingMeta() const { return m_pendingMeta; }
    /// What went wrong last, fit to be shown; absent again as soon as another download starts.
    [[nodiscard]] const std::optional<QString> &lastError() const { return m_lastError; }

    /// False for no track (null). Asks the index only, not the disk.
    [[nodiscard]] bool isDownloaded(const PlaylistTrack *track) const;
    /// The index's entry of a track, for removing it.
    [[nodiscard]] std::optional<OfflineTrackEntry> entry(const PlaylistTrack &track) const;
    /// The file to play instead of the stream; absent also when the file has vanished.
    [[nodiscard]] std::optional<QUrl> audioURL(const PlaylistTrack &track) const;
    /// The address of the saved artwork; absent also when the file has vanished. This is what records ask for
    /// through setOfflineArtworkLookup().
    [[nodiscard]] std::optional<QString> artworkPathString(const PlaylistTrack &track) const;
    /// The address of a file in the folder, there or not; empty for a name that is none.
    [[nodiscard]] QString artworkURLString(const QString &fileName) const;
    /// As the entries state it; no file is measured.
    [[nodiscard]] qint64 totalSizeBytes() const;

    /// The whole library as one thing to play, in the order of downloading, the reverse of `entries`; absent
    /// if there is nothing.
    [[nodiscard]] std::optional<Station> offlineStation() const;

    /// Keeps a track for playing without a network. Does nothing for one that is kept or on its way. There is
    /// no queue: all that were asked for run at once, each with its whole audio in memory.
    void download(const PlaylistTrack &track);
    /// Does nothing for a track that is not on its way. What is given up leaves nothing behind; a download
    /// that has all of its audio cannot be given up any more.
    void cancelDownload(const PlaylistTrack &track);

    void remove(const OfflineTrackEntry &entry);
    /// The files go on another thread: a large one takes milliseconds.
    void removeAll();

Q_SIGNALS:
    void entriesChanged();
    void activeProgressChanged();
    void pendingMetaChanged();
    void lastErrorChanged();

private:
    friend class NavorinRadioApp;
    friend struct TestAccess;

    /// Reads the index at once, so that the first screen knows what is downloaded.
    explicit OfflineStore(Surroundings surroundings);
    static SharedInstance<OfflineStore> &instance();

    void loadIndex();
    /// Saves a copy of the index as it is now, on another thread. An older copy never replaces a newer one.
    void persistIndex();
    void save(QList<OfflineTrackEntry> entries, quint64 number);
    void inBackground(std::function<void()> work);
    void doOldestWork();
    /// Runs `work` on the UI thread, later, if the store still lives then. Any thread.
    void postToSelf(std::function<void()> work);
    void publishEntries();
    void publishEntriesLater();
    void removeFiles(const OfflineTrackEntry &entry);
    /// The entry with its file under a name that tells its format; absent if nothing had to or could change.
    [[nodiscard]] std::optional<OfflineTrackEntry> repaired(const OfflineTrackEntry &entry) const;
    [[nodiscard]] QList<OfflineTrackEntry> indexedEntries() const;
    /// Absent for a name that is no plain file name.
    [[nodiscard]] std::optional<QString> pathOf(const QString &fileName) const;
    [[nodiscard]] bool fileExists(const QString &fileName) const;

    void startDownload(const std::shared_ptr<OfflineDownload> &download);
    /// Streams to `sink` and then runs `next` on a thread of the pool, with null if all went well.
    void fetch(const QUrl &address, std::shared_ptr<HttpByteSink> sink, std::stop_token stop,
               std::function<void(std::exception_ptr)> next);
    void keepAudio(OfflineDownload &download, const std::exception_ptr &error);
    void fetchArtwork(const std::stop_token &stop, OfflineTrackEntry entry);
    [[nodiscard]] std::optional<QString> keepArtwork(const QByteArray &bytes);
    void finish(OfflineTrackEntry entry);
    void finishFailed(const QString &key, const std::optional<QString> &error);
    void endDownload();
    void endDownloads();
    void setProgress(const QString &key, double progress);
    void unpublish(const QString &key);
    void setLastError(const std::optional<QString> &error);

    FileStore &m_files;
    MainQueue &m_mainQueue;
    HttpSession &m_session;
    const APIClient &m_client;
    const SteadyClock m_now;
    const QString m_folder;
    const QString m_indexPath;
    QList<OfflineTrackEntry> m_entries;
    QHash<QString, double> m_activeProgress;
    QHash<QString, PlaylistTrack> m_pendingMeta;
    std::optional<QString> m_lastError;

    mutable QMutex m_lock;                          ///< guards all up to the next lock
    QHash<QString, OfflineTrackEntry> m_indexByKey; ///< the truth; m_entries is its sorted copy
    QHash<QString, std::shared_ptr<OfflineDownload>> m_downloads;
    quint64 m_lastSave = 0;
    std::mutex m_runningLock; ///< guards m_runningDownloads
    std::condition_variable m_downloadEnded;
    int m_runningDownloads = 0;
    QMutex m_saveLock; ///< guards the index file and m_newestSaved
    quint64 m_newestSaved = 0;
    QMutex m_workLock; ///< guards m_work
    QQueue<std::function<void()>> m_work;
    QThreadPool m_pool;
};

} // namespace navorin
