#include "OfflineRig.h"
#include "Platform/Storage/QtFileStore.h"

#include <QBuffer>
#include <QImage>
#include <QSignalSpy>
#include <QTest>

#include <atomic>
#include <mutex>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto prefix = u"خطا در دانلود: "_s;
const auto cannotKeep = u"این آهنگ قابل ذخیره آفلاین نیست"_s;
const auto noAddress = u"این آهنگ لینک دانلود معتبری ندارد"_s;
const auto riff = "RIFF....WAVEf"_ba;

/// The real files, but for writes of a kind that fail; it notes when one happens on the UI thread.
class WatchedFiles final : public FileStore
{
public:
    [[nodiscard]] QString applicationSupportFolder() const override
    {
        return m_real.applicationSupportFolder();
    }
    bool createFolder(const QString &path) override { return m_real.createFolder(path); }
    bool excludeFromBackup(const QString &path) override { return m_real.excludeFromBackup(path); }
    [[nodiscard]] bool exists(const QString &path) const override { return m_real.exists(path); }
    [[nodiscard]] std::optional<QByteArray> read(const QString &path) const override
    {
        return m_real.read(path);
    }
    FileResult writeAtomically(const QString &path, const QByteArray &data) override
    {
        if (QThread::currentThread() == qApp->thread())
            wroteOnUiThread = true;
        if (const auto failure = failureOf(path))
            return {failure};
        return m_real.writeAtomically(path, data);
    }
    bool move(const QString &from, const QString &to) override { return m_real.move(from, to); }
    bool remove(const QString &path) override { return m_real.remove(path); }

    /// From now on for files of this kind; the index of the download before may still be on its way.
    void fail(const QString &suffix, std::optional<FileResult::Failure> failure)
    {
        const std::scoped_lock locker(m_lock);
        m_failingSuffix = suffix;
        m_failure = failure;
    }

    std::atomic_bool wroteOnUiThread = false;

private:
    std::optional<FileResult::Failure> failureOf(const QString &path)
    {
        const std::scoped_lock locker(m_lock);
        return path.endsWith(m_failingSuffix) ? m_failure : std::nullopt;
    }

    QtFileStore m_real;
    std::mutex m_lock; ///< guards what follows
    std::optional<FileResult::Failure> m_failure;
    QString m_failingSuffix;
};

PlaylistTrack trackOf(const QString &id)
{
    return {.trackType = u"radio"_s, .trackID = id, .streamURL = u"/stream/x"_s};
}

QByteArray picture()
{
    QImage image(2, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return buffer.data();
}

} // namespace

class tst_OfflineDownloads : public QObject, private OfflineRig
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void keepsWhatComes();
    void tellsWhatWentWrong();
    void publishesProgress();
    void artwork();
    void oneDownloadForEachTrack();
    void cancelling();
    void removeAllLeavesDownloadsAlone();
    void savesInOrder();

private:
    using Stream = FakeHttpSession::Stream;

    /// Starts a download and gives its stream.
    Stream started(const PlaylistTrack &track)
    {
        m_store->download(track);
        m_queue.drain();
        return m_http.takeStream();
    }
    [[nodiscard]] bool isIdle()
    {
        m_queue.drain();
        return m_store->pendingMeta().isEmpty() && m_store->activeProgress().isEmpty();
    }
    void makeStore()
    {
        m_store.reset();
        m_store = TestAccess::makeIn<OfflineStore>(*m_files, m_queue, m_http, *m_client,
                                                   [this] { return m_now.load(); });
    }
    [[nodiscard]] QStringList files() const { return QDir(path()).entryList(QDir::Files); }
    [[nodiscard]] QByteArray contentOf(const QString &name) const
    {
        return m_files->read(path(name)).value_or("absent"_ba);
    }

    std::optional<WatchedFiles> m_files;
    std::atomic<std::chrono::steady_clock::time_point> m_now{std::chrono::steady_clock::time_point(1h)};
    std::unique_ptr<OfflineStore> m_store;
};

void tst_OfflineDownloads::init()
{
    makeHome();
    m_files.emplace();
    makeStore();
    m_files->wroteOnUiThread = false;
}

void tst_OfflineDownloads::cleanup()
{
    m_store.reset();
    QVERIFY(!m_files->wroteOnUiThread);
    m_queue.drain();
}

void tst_OfflineDownloads::keepsWhatComes()
{
    const std::tuple<qint64, QByteArrayList, QString> rows[]{
        {1, {"x"_ba}, u"mp3"_s},
        {12, {riff.first(12)}, u"mp3"_s},
        {13, {riff.first(5), riff.sliced(5)}, u"wav"_s},
        {20,
         {"\0\0\0\x20"
          "ftypany brand"_ba},
         u"m4a"_s},
        {15, {"ID3\4ftypxxxxxxx"_ba}, u"mp3"_s},
        {17, {QByteArray(5, '\0') + "ftypxxxxxxxx"_ba}, u"mp3"_s},
        {100, {"ends early"_ba}, u"mp3"_s},
        {2, {"runs on"_ba, "and on"_ba}, u"mp3"_s},
        {13, {"<html>error</html>"_ba}, u"mp3"_s},
    };
    for (int i = 0; const auto &[length, pieces, extension] : rows) {
        PlaylistTrack track{.id = 7, .trackType = u"نوع|"_s, .trackID = u"آهنگ|%1"_s.arg(++i)};
        track.streamURL = u"/stream/x"_s;
        track.duration = 215;
        if (i % 2)
            track.title = u"ترانه"_s;
        const auto stream = started(track);
        QCOMPARE(stream.request.url, QUrl(u"https://backend.test/stream/x"_s));
        QVERIFY(stream.request.headers.isEmpty() && stream.request.method == "GET"_ba);
        QCOMPARE(m_store->pendingMeta().value(offlineKey(track)), track);
        stream.begin(length);
        for (const auto &piece : pieces)
            stream.receive(piece);
        stream.finish();
        QTRY_VERIFY(isIdle());
        const auto entry = m_store->entries().constFirst();
        QCOMPARE(entry, m_store->entry(track));
        QVERIFY(entry.audioFileName.endsWith(QString(u'.' + extension)));
        QCOMPARE(QUuid::fromString(entry.audioFileName.first(36)).toString(QUuid::WithoutBraces).toUpper(),
                 entry.audioFileName.first(36));
        QCOMPARE(contentOf(entry.audioFileName), pieces.join());
        QCOMPARE(entry.sizeBytes, pieces.join().size());
        QCOMPARE(entry.title, i % 2 ? u"ترانه"_s : u"بدون عنوان"_s);
        QCOMPARE(entry.duration, 215);
    }
    QVERIFY(!m_store->lastError());
    const auto entries = m_store->entries();
    makeStore();
    QCOMPARE(m_store->entries(), entries);
}

void tst_OfflineDownloads::tellsWhatWentWrong()
{
    for (const auto &address :
         {std::optional<QString>(), std::optional(u""_s), std::optional(u"http://["_s)}) {
        auto track = trackOf(u"1"_s);
        track.streamURL = address;
        m_store->download(track);
        QVERIFY(m_store->lastError() != noAddress); // later, not at once
        m_queue.drain();
        QCOMPARE(m_store->lastError(), noAddress);
        QVERIFY(m_store->pendingMeta().isEmpty() && m_http.streamCount() == 0);
        started(trackOf(u"other"_s)).fail();
        QTRY_VERIFY(isIdle());
    }
    using Failure = FileResult::Failure;
    const auto transport = TransportError(TransportError::Kind::ConnectionLost, {}).description();
    const std::tuple<std::function<void(const Stream &)>, std::optional<Failure>, QString> rows[]{
        {[](const Stream &stream) { stream.begin(-1); }, {}, cannotKeep},
        {[](const Stream &stream) { stream.begin(0); }, {}, cannotKeep},
        {[](const Stream &stream) { stream.begin(qint64(1) << 62); }, {}, u"حافظه کافی نیست."_s},
        {[](const Stream &stream) { stream.begin(5), stream.finish(); }, {}, u"خطا در پردازش پاسخ سرور"_s},
        {[](const Stream &stream) { stream.fail(); }, {}, transport},
        {[](const Stream &stream) { stream.begin(9), stream.receive("x"_ba), stream.fail(); }, {}, transport},
        {[](const Stream &stream) { stream.answer("x"_ba); }, Failure::NoSpace, u"فضای دیسک کافی نیست."_s},
        {[](const Stream &stream) { stream.answer("x"_ba); }, Failure::NotPermitted,
         u"اجازه نوشتن در پوشه دانلودها وجود ندارد."_s},
        {[](const Stream &stream) { stream.answer("x"_ba); }, Failure::NoFolder,
         u"پوشه دانلودها پیدا نشد."_s},
    };
    for (const auto &[happen, failure, text] : rows) {
        m_files->fail(u".mp3"_s, failure);
        const auto stream = started(trackOf(u"1"_s));
        QVERIFY(!m_store->lastError());
        happen(stream);
        QTRY_VERIFY(isIdle());
        QCOMPARE(m_store->lastError(), QString(prefix + text));
        QVERIFY(m_store->entries().isEmpty());
        QCOMPARE(files(), QStringList{u"CACHEDIR.TAG"_s});
    }
}

void tst_OfflineDownloads::publishesProgress()
{
    QSignalSpy changes(m_store.get(), &OfflineStore::activeProgressChanged);
    const auto track = trackOf(u"1"_s);
    const auto stream = started(track);
    stream.begin(1000);
    const std::pair<std::chrono::milliseconds, double> rows[]{
        {0ms, 0.1}, {200ms, 0.1}, {1ms, 0.3}, {199ms, 0.3}, {500ms, 0.5},
    };
    for (const auto &[later, shown] : rows) {
        m_now = m_now.load() + later;
        stream.receive(QByteArray(100, 'x'));
        m_queue.drain();
        QCOMPARE(m_store->activeProgress().value(offlineKey(track)), shown);
    }
    QCOMPARE(changes.size(), 4);
    m_store->download(track);
    m_now = m_now.load() + 1h;
    stream.receive(QByteArray(900, 'x'));
    m_queue.drain();
    QCOMPARE(m_store->activeProgress(), (QHash<QString, double>{{offlineKey(track), 0.99}}));
}

void tst_OfflineDownloads::artwork()
{
    struct Row
    {
        std::optional<QString> address;
        std::optional<QByteArray> answer; ///< fails if absent
        bool isKept;
        bool isWritten;
    };
    const Row rows[]{
        {{}, {}, false, false},
        {u""_s, {}, false, false},
        {u"/a.png"_s, picture(), true, true},
        {u"/a.png"_s, "no picture"_ba, false, false},
        {u"/a.png"_s, ""_ba, false, false},
        {u"/a.png"_s, QByteArray(33 << 20, 'x'), false, false},
        {u"/a.png"_s, {}, false, false},
        {u"https://elsewhere.test/a.png"_s, picture(), true, false},
    };
    for (int i = 0; const auto &row : rows) {
        const bool isFull = row.isKept && !row.isWritten;
        m_files->fail(u".art"_s, isFull ? std::optional(FileResult::Failure::NoSpace) : std::nullopt);
        auto track = trackOf(QString::number(++i));
        track.artworkURL = row.address;
        started(track).answer("audio"_ba);
        if (!row.address.value_or(QString()).isEmpty()) {
            QTRY_COMPARE(m_http.streamCount(), 1);
            const auto stream = m_http.takeStream();
            QCOMPARE(stream.request.url, *m_client->absolute(row.address));
            row.answer ? stream.answer(*row.answer) : stream.fail();
        }
        QTRY_VERIFY(isIdle());
        const auto entry = m_store->entry(track);
        QCOMPARE(entry->artworkRemoteURL, row.address);
        QCOMPARE(entry->artworkFileName.has_value(), row.isKept);
        QCOMPARE(m_store->artworkPathString(track).has_value(), row.isWritten);
        QVERIFY(!row.isWritten || contentOf(*entry->artworkFileName) == picture());
        QVERIFY(!m_store->lastError());
    }
}

void tst_OfflineDownloads::oneDownloadForEachTrack()
{
    const auto track = trackOf(u"آهنگ|۱"_s);
    m_store->download(track);
    const auto stream = started(track);
    QCOMPARE(m_http.streamCount(), 0);
    stream.answer("x"_ba);
    QTRY_VERIFY(isIdle());
    QVERIFY(m_files->remove(m_store->audioURL(track)->toLocalFile()));
    m_store->download(track);
    m_queue.drain();
    QCOMPARE(m_http.streamCount(), 0);

    const PlaylistTrack nameless{.streamURL = u"/stream/x"_s};
    for (int i = 0; i < 2; ++i)
        started(nameless).answer("y"_ba);
    QTRY_VERIFY(isIdle());
    QCOMPARE(m_store->entries().size(), 3);
    QVERIFY(!m_store->isDownloaded(&nameless));
}

void tst_OfflineDownloads::cancelling()
{
    const auto cancelled =
        QString(prefix + TransportError(TransportError::Kind::Cancelled, {}).description());
    const auto track = trackOf(u"1"_s);
    m_store->cancelDownload(track);
    m_store->download(track);
    m_store->cancelDownload(track); // before it shows
    QTRY_VERIFY(isIdle());
    QCOMPARE(m_store->lastError(), cancelled);
    static_cast<void>(m_http.takeStream());

    const auto opening = started(track);
    m_store->cancelDownload(track);
    QTRY_VERIFY(isIdle());
    QCOMPARE(m_store->lastError(), cancelled);

    const auto running = started(track);
    running.begin(10);
    running.receive("x"_ba);
    m_store->cancelDownload(track);
    QTRY_VERIFY(isIdle());
    QVERIFY(!m_store->lastError() && m_store->entries().isEmpty());
    QCOMPARE(files(), QStringList{u"CACHEDIR.TAG"_s});

    auto pictured = track;
    pictured.artworkURL = u"/a.png"_s;
    started(pictured).answer("audio"_ba);
    QTRY_COMPARE(m_http.streamCount(), 1);
    const auto picture = m_http.takeStream();
    m_store->cancelDownload(pictured);
    QTRY_VERIFY(isIdle());
    QVERIFY(picture.promise->future().isFinished());
    QVERIFY(m_store->isDownloaded(&pictured) && !m_store->entry(pictured)->artworkFileName);

    const auto abandoned = started(trackOf(u"2"_s)); // the store goes first
    abandoned.begin(10);
    m_store->download(trackOf(u"3"_s));
    makeStore();
    abandoned.receive("late"_ba);
    QTRY_VERIFY(isIdle());
    QCOMPARE(m_store->entries().size(), 1);
}

void tst_OfflineDownloads::removeAllLeavesDownloadsAlone()
{
    started(trackOf(u"old"_s)).answer("x"_ba);
    const auto running = started(trackOf(u"new"_s));
    QTRY_COMPARE((m_queue.drain(), m_store->entries().size()), 1);
    m_store->removeAll();
    running.answer("y"_ba);
    QTRY_VERIFY(isIdle());
    QCOMPARE(m_store->entries().size(), 1);
    makeStore();
    QCOMPARE(m_store->entries().constFirst().key, u"radio|new"_s);
    QCOMPARE(files().size(), 2);
}

void tst_OfflineDownloads::savesInOrder()
{
    QList<Stream> streams;
    for (int i = 0; i < 50; ++i)
        streams.append(started(trackOf(QString::number(i))));
    for (const auto &stream : streams)
        stream.answer("x"_ba);
    QTRY_VERIFY(isIdle());
    makeStore();
    QCOMPARE(m_store->entries().size(), 50);
}

QTEST_GUILESS_MAIN(tst_OfflineDownloads)
#include "tst_OfflineDownloads.moc"
