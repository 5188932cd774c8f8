#pragma once

#include "Platform/Desktop/NowPlayingCenter.h"
#include "Platform/Tasks/MainQueue.h"

#include <QStringList>
#include <QThreadPool>

#include <atomic>

namespace navorin {

class FileStore;

/// Puts pictures into files, because media controls take an address of one. Holds the last two that were
/// written: whoever was told of the one before may still be reading it. What earlier runs left is removed at
/// the start. UI thread only; all work on files is done on a thread of its own.
class NowPlayingArtworkFolder
{
public:
    /// On the UI thread, with the file's path.
    using Written = std::function<void(const QString &path)>;

    /// `path` is absolute and the folder this program's alone; it is made when first needed. An empty one
    /// means that there is none, and nothing is written. `queue` and `files` outlive this.
    NowPlayingArtworkFolder(MainQueue &queue, FileStore &files, const QString &path);
    /// Waits for the write under way. Nothing is reported afterwards.
    ~NowPlayingArtworkFolder();
    Q_DISABLE_COPY_MOVE(NowPlayingArtworkFolder)

    /// `written` is not called if the picture could not be written, nor, perhaps, if another was given since.
    void write(const std::shared_ptr<const EncodedPicture> &picture, const Written &written);

private:
    void removeLeftovers() const;
    [[nodiscard]] bool store(const EncodedPicture &picture, const QString &file);
    void keep(const QString &file);
    void warnOnce();

    MainQueue &m_queue;
    FileStore &m_files;
    const QString m_path;
    std::atomic<quint64> m_latest = 0;
    // Of the worker thread alone.
    QStringList m_kept; ///< the newest first
    bool m_warned = false;
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true); ///< of the UI thread alone
    QThreadPool m_worker;
};

} // namespace navorin
