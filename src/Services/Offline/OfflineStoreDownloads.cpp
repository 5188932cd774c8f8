#include "Services/Backend/APIClient.h"
#include "Services/Backend/APIError.h"
#include "Services/Offline/AudioExtension.h"
#include "Services/Offline/OfflineDownload.h"
#include "Services/Offline/OfflineStore.h"

#include <QImage>
#include <QPointer>
#include <QUuid>

#include <chrono>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

QString freshFileName(const QString &extension)
{
    return QString(QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + u'.' + extension);
}

double secondsSince2001()
{
    constexpr double unixSecondsAt2001 = 978'307'200;
    const std::chrono::duration<double> sinceUnix = std::chrono::system_clock::now().time_since_epoch();
    return sinceUnix.count() - unixSecondsAt2001;
}

/// Null if all went well.
std::exception_ptr failureOf(QFuture<void> stream)
{
    try {
        stream.waitForFinished();
        return nullptr;
    } catch (...) {
        return std::current_exception();
    }
}

std::exception_ptr lostSession()
{
    return std::make_exception_ptr(
        TransportError(TransportError::Kind::Cancelled, u"the session dropped the request"_s));
}

bool isCancellation(const std::exception_ptr &error)
{
    try {
        std::rethrow_exception(error);
    } catch (const TransportError &known) {
        return known.kind() == TransportError::Kind::Cancelled;
    } catch (...) {
        return false;
    }
}

/// Lacks what only the end of the download knows: the artwork's file, and when it was.
OfflineTrackEntry entryOf(const OfflineDownload &download, const QString &audioFileName)
{
    const auto &track = download.track;
    return {.key = download.key,
            .trackType = track.trackType,
            .trackID = track.trackID,
            .title = track.title.value_or(u"بدون عنوان"_s),
            .artist = track.artist.value_or(QString()),
            .artworkRemoteURL = track.artworkURL,
            .audioFileName = audioFileName,
            .duration = track.duration,
            .sizeBytes = download.audio().size()};
}

} // namespace

HttpSessionConfiguration OfflineStore::sessionConfiguration()
{
    return {.timeoutForRequest = std::chrono::seconds(60), .timeoutForResource = std::chrono::seconds(600)};
}

void OfflineStore::download(const PlaylistTrack &track)
{
    const auto key = offlineKey(track);
    {
        const QMutexLocker locker(&m_lock);
        if (m_indexByKey.contains(key) || m_downloads.contains(key))
            return;
    }
    const auto address = m_client.absolute(track.streamURL);
    if (!address)
        return postToSelf([this] { setLastError(u"این آهنگ لینک دانلود معتبری ندارد"_s); });
    const auto download = std::make_shared<OfflineDownload>(key, track, *address, m_now);
    {
        const QMutexLocker locker(&m_lock);
        m_downloads.insert(key, download);
    }
    postToSelf([this, download] { startDownload(download); });
}

void OfflineStore::cancelDownload(const PlaylistTrack &track)
{
    std::shared_ptr<OfflineDownload> download;
    {
        const QMutexLocker locker(&m_lock);
        download = m_downloads.value(offlineKey(track));
    }
    if (download)
        download->cancel();
}

void OfflineStore::startDownload(const std::shared_ptr<OfflineDownload> &download)
{
    m_activeProgress.insert(download->key, 0);
    m_pendingMeta.insert(download->key, download->track);
    Q_EMIT activeProgressChanged();
    Q_EMIT pendingMetaChanged();
    setLastError({});
    download->setReport([this, key = download->key](double progress) {
        postToSelf([this, key, progress] { setProgress(key, progress); });
    });
    {
        const std::scoped_lock lock(m_runningLock);
        ++m_runningDownloads;
    }
    fetch(download->address, download, download->stopToken(),
          [this, download](const std::exception_ptr &error) { keepAudio(*download, error); });
}

void OfflineStore::fetch(const QUrl &address, std::shared_ptr<HttpByteSink> sink, std::stop_token stop,
                         std::function<void(std::exception_ptr)> next)
{
    HttpRequest request;
    request.url = address;
    const auto proceed = [this, next = std::move(next)](const std::exception_ptr &error) {
        inBackground([next, error] { next(error); });
    };
    m_session.stream(std::move(request), std::move(sink), std::move(stop))
        .then([proceed](const QFuture<void> &stream) { proceed(failureOf(stream)); })
        .onCanceled([proceed] { proceed(lostSession()); });
}

void OfflineStore::keepAudio(OfflineDownload &download, const std::exception_ptr &error)
{
    if (error) {
        const auto isSilent = isCancellation(error) && download.hasBegun();
        return finishFailed(download.key, isSilent ? std::nullopt : std::optional(errorDescription(error)));
    }
    const auto audio = download.audio();
    if (audio.isEmpty())
        return finishFailed(download.key, APIError::decoding().description());
    const auto fileName = freshFileName(sniffAudioExtension(audio));
    if (const auto written = m_files.writeAtomically(*pathOf(fileName), audio); !written)
        return finishFailed(download.key, written.description());
    auto entry = entryOf(download, fileName);
    download.discardAudio();
    fetchArtwork(download.stopToken(), std::move(entry));
}

void OfflineStore::fetchArtwork(const std::stop_token &stop, OfflineTrackEntry entry)
{
    const auto address = m_client.absolute(entry.artworkRemoteURL);
    if (!address)
        return finish(std::move(entry));
    const auto artwork = std::make_shared<OfflineArtwork>();
    fetch(*address, artwork, stop, [this, artwork, entry](const std::exception_ptr &error) mutable {
        if (!error)
            entry.artworkFileName = keepArtwork(artwork->bytes());
        finish(std::move(entry));
    });
}

std::optional<QString> OfflineStore::keepArtwork(const QByteArray &bytes)
{
    if (QImage::fromData(bytes).isNull())
        return {};
    const auto fileName = freshFileName(u"art"_s);
    // Who asks for it looks whether it is there.
    m_files.writeAtomically(*pathOf(fileName), bytes);
    return fileName;
}

void OfflineStore::finish(OfflineTrackEntry entry)
{
    entry.downloadedAt = secondsSince2001();
    {
        const QMutexLocker locker(&m_lock);
        m_indexByKey.insert(entry.key, entry);
        m_downloads.remove(entry.key);
        // Posted under the lock, or a new download of this track could publish itself before.
        postToSelf([this, key = entry.key] {
            unpublish(key);
            publishEntries();
        });
    }
    persistIndex();
    endDownload();
}

void OfflineStore::finishFailed(const QString &key, const std::optional<QString> &error)
{
    {
        const QMutexLocker locker(&m_lock);
        m_downloads.remove(key);
        postToSelf([this, key, error] {
            unpublish(key);
            if (error)
                setLastError(QString(u"خطا در دانلود: "_s + *error));
        });
    }
    endDownload();
}

void OfflineStore::endDownload()
{
    const std::scoped_lock lock(m_runningLock);
    --m_runningDownloads;
    m_downloadEnded.notify_all();
}

void OfflineStore::endDownloads()
{
    QMutexLocker locker(&m_lock);
    const auto downloads = m_downloads;
    locker.unlock();
    for (const auto &download : downloads)
        download->cancel();
    std::unique_lock lock(m_runningLock);
    m_downloadEnded.wait(lock, [this] { return m_runningDownloads == 0; });
}

void OfflineStore::setProgress(const QString &key, double progress)
{
    const auto found = m_activeProgress.find(key);
    if (found == m_activeProgress.end() || *found == progress)
        return;
    *found = progress;
    Q_EMIT activeProgressChanged();
}

void OfflineStore::unpublish(const QString &key)
{
    if (m_activeProgress.remove(key))
        Q_EMIT activeProgressChanged();
    if (m_pendingMeta.remove(key))
        Q_EMIT pendingMetaChanged();
}

void OfflineStore::setLastError(const std::optional<QString> &error)
{
    if (m_lastError == error)
        return;
    m_lastError = error;
    Q_EMIT lastErrorChanged();
}

} // namespace navorin
