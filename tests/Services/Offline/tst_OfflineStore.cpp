#include "OfflineRig.h"
#include "Platform/Storage/QtFileStore.h"

#include <QSignalSpy>
#include <QTest>

#include <thread>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

const auto riff = "RIFF....WAVEfmt "_ba;
const auto ftyp = "\0\0\0\x20"
                  "ftypM4A \0\0\0\0"_ba;

QByteArray entryJson(const QString &key, const QString &audio, double at = 1, const QByteArray &more = {})
{
    return R"({"key":")"_ba + key.toUtf8() + R"(","title":"t","artist":"a","audioFileName":")"_ba +
           audio.toUtf8() + R"(","sizeBytes":5,"downloadedAt":)"_ba + QByteArray::number(at) + more + "}"_ba;
}

PlaylistTrack trackOf(const QString &id)
{
    return {.trackID = id};
}

} // namespace

class tst_OfflineStore : public QObject, private OfflineRig
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void identifiesTracks();
    void writesTheIndex();
    void brokenIndexIsAnEmptyLibrary();
    void loadsAndRepairs();
    void neverLeavesItsFolder();
    void looksUpFilesOfTheMoment();
    void removes();
    void playsTheLibrary();
    void lookupsFromOtherThreads();

private:
    void put(const QString &name, const QByteArray &data = "audio"_ba)
    {
        QVERIFY(m_files->createFolder(path()) && m_files->writeAtomically(path(name), data));
    }
    void putIndex(const QByteArray &json) { put(u"../offline_index.json"_s, json); }
    [[nodiscard]] QByteArray index() const
    {
        return m_files->read(path(u"../offline_index.json"_s)).value_or("-");
    }
    [[nodiscard]] std::unique_ptr<OfflineStore> store()
    {
        return TestAccess::makeIn<OfflineStore>(*m_files, m_queue, m_http, *m_client);
    }

    std::optional<QtFileStore> m_files;
};

void tst_OfflineStore::init()
{
    makeHome();
    m_files.emplace();
}

void tst_OfflineStore::identifiesTracks()
{
    QCOMPARE(offlineKey({.id = 1, .trackType = u"spotify"_s, .trackID = u"abc"_s}), u"spotify|abc"_s);
    QCOMPARE(offlineKey({.id = 42, .title = u"t"_s}), u"track|42"_s);
    QCOMPARE(offlineKey({.title = u"آهنگ|۱"_s}), u"track|آهنگ|۱"_s);
    QCOMPARE(offlineKey({.id = 1, .trackType = u""_s, .trackID = u""_s}), u"|"_s);
    QVERIFY(offlineKey({}) != offlineKey({}));
}

void tst_OfflineStore::writesTheIndex()
{
    const OfflineTrackEntry full{u"k"_s, u"radio"_s,    u"7"_s,         u"«آهنگ» \"\\\n\x1f"_s,
                                 u""_s,  u"/a.png"_s,   u"b.art"_s,     u"c.mp3"_s,
                                 215,    9'000'000'000, 750'000'000.125};
    const OfflineTrackEntry least{
        .key = u"k"_s, .title = u"t"_s, .audioFileName = u"c"_s, .downloadedAt = 1e21};
    QCOMPARE(
        encodedIndex({full, least}),
        R"([{"key":"k","trackType":"radio","trackID":"7","title":"«آهنگ» \"\\\u000a\u001f","artist":"",)"
        R"("artworkRemoteURL":"/a.png","artworkFileName":"b.art","audioFileName":"c.mp3","duration":215,)"
        R"("sizeBytes":9000000000,"downloadedAt":750000000.125},{"key":"k","title":"t","artist":"",)"
        R"("audioFileName":"c","sizeBytes":0,"downloadedAt":1000000000000000000000}])"_ba);
    QCOMPARE(json::decode<QList<OfflineTrackEntry>>(encodedIndex({full, least})), (QList{full, least}));
    for (const auto at : {0.1, -0.0, 5e-324, 1.7976931348623157e308, 782345678.9012345}) {
        auto entry = least;
        entry.downloadedAt = at;
        QCOMPARE(json::decode<QList<OfflineTrackEntry>>(encodedIndex({entry})), QList{entry});
    }
}

void tst_OfflineStore::brokenIndexIsAnEmptyLibrary()
{
    const auto good = entryJson(u"k"_s, u"good.mp3"_s);
    const auto listed = [](const QByteArray &entry) { return QByteArray("["_ba + entry + "]"_ba); };
    const QList<QByteArray> broken{
        {},
        QByteArray(4096, '\0'),
        good,
        "["_ba + good,
        listed(good + R"(,{"key":"k"})"_ba),
        listed(QByteArray(good).replace(R"("t")", "null")),
        listed(QByteArray(good).replace(":5", R"(:"5")")),
        listed(QByteArray(good).replace(":5", ":5.5")),
        listed(entryJson(u"k"_s, u"good.mp3"_s, 1, R"(,"trackType":7)")),
    };
    put(u"good.mp3"_s);
    for (const auto &json : broken) {
        putIndex(json);
        const auto library = store();
        QVERIFY2(library->entries().isEmpty() && !library->offlineStation(), json.constData());
        QCOMPARE(library->totalSizeBytes(), 0);
        QCOMPARE(index(), json);
    }
    QVERIFY(m_files->exists(path(u"good.mp3"_s)));
}

void tst_OfflineStore::loadsAndRepairs()
{
    struct Row
    {
        QString name;
        QByteArray data;
        QString loaded;
    };
    const Row rows[] = {
        {u"a.mp3"_s, riff, u"a.mp3"_s},
        {u"a.audio"_s, riff, u"a.wav"_s},
        {u"a.audio"_s, "x"_ba, u"a.mp3"_s},
        {u"a.audio.audio"_s, ftyp, u"a.m4a.m4a"_s},
        {u"a.AUDIO"_s, riff, u"a.AUDIO"_s},
        {u"a.audio.mp3"_s, riff, u"a.audio.mp3"_s},
        {u"taken.audio"_s, riff, u"taken.audio"_s},
        {u"آهنگ.audio"_s, ftyp, u"آهنگ.m4a"_s},
    };
    for (const auto &[name, data, loaded] : rows) {
        init();
        put(u"taken.wav"_s);
        put(u"second.mp3"_s);
        put(name, data);
        const QByteArray json = "["_ba + entryJson(u"track|1"_s, u"second.mp3"_s, 1) + ","_ba +
                                entryJson(u"gone"_s, u"gone.mp3"_s, 9) + ","_ba +
                                entryJson(u"track|2"_s, u"second.mp3"_s, 3) + ","_ba +
                                entryJson(u"track|1"_s, name, 2) + "]"_ba;
        putIndex(json);
        auto library = store();
        const auto entries = library->entries();
        QCOMPARE(entries.size(), 2);
        QCOMPARE(entries.at(0).key, u"track|2"_s);
        QCOMPARE(entries.at(1).audioFileName, loaded);
        QCOMPARE(library->audioURL(trackOf(u"1"_s)), QUrl::fromLocalFile(path(loaded)));
        QCOMPARE(m_files->read(path(loaded)), data);
        library.reset();
        QCOMPARE(index(), loaded == name ? json : encodedIndex(entries));
    }
}

void tst_OfflineStore::neverLeavesItsFolder()
{
    const auto victim = path(u"../victim.audio"_s);
    for (const auto &name : {u"../victim.audio"_s, u"../OfflineTracks/../victim.audio"_s, u"."_s, u".."_s,
                             u""_s, u"x.mp3\\u0000.audio"_s, u"sub/x.audio"_s, victim}) {
        put(u"x.mp3"_s);
        put(u"../victim.audio"_s, riff);
        putIndex(
            "["_ba + entryJson(u"bad"_s, name) + ","_ba +
            entryJson(u"track|1"_s, u"x.mp3"_s, 1,
                      R"(,"artworkRemoteURL":"/far.png","artworkFileName":")"_ba + name.toUtf8() + "\""_ba) +
            "]"_ba);
        auto library = store();
        QCOMPARE(library->entries().size(), 1);
        QVERIFY(!library->artworkPathString(trackOf(u"1"_s)));
        const auto unescaped = QString(name).replace(u"\\u0000"_s, QChar(u'\0'));
        QCOMPARE(library->artworkURLString(unescaped), QString());
        QCOMPARE(library->offlineStation()->tracks->at(0).artworkURL, u"/far.png"_s);
        library->remove({.key = u"bad"_s, .artworkFileName = unescaped, .audioFileName = unescaped});
        library->removeAll();
        library.reset();
        QCOMPARE(m_files->read(victim), riff);
        QVERIFY(!m_files->exists(path(u"x.mp3"_s)));
    }
}

void tst_OfflineStore::looksUpFilesOfTheMoment()
{
    put(u"a.mp3"_s);
    putIndex("["_ba + entryJson(u"track|42"_s, u"a.mp3"_s, 1, R"(,"artworkFileName":"تصویر 1.art")"_ba) +
             "]"_ba);
    const auto library = store();
    const PlaylistTrack track{.id = 42};
    QVERIFY(library->isDownloaded(&track) && !library->isDownloaded(nullptr));
    QVERIFY(!library->artworkPathString(track));
    put(u"تصویر 1.art"_s);
    QCOMPARE(QUrl(*library->artworkPathString(track), QUrl::StrictMode).toLocalFile(),
             path(u"تصویر 1.art"_s));
    QVERIFY(m_files->remove(path(u"a.mp3"_s)) && library->isDownloaded(&track) && !library->audioURL(track));
    QVERIFY(m_files->read(path(u"CACHEDIR.TAG"_s)));
}

void tst_OfflineStore::removes()
{
    for (const auto &name : {u"a.mp3"_s, u"a.art"_s, u"b.mp3"_s})
        put(name);
    const auto kept = entryJson(u"track|2"_s, u"b.mp3"_s, 2);
    putIndex("["_ba + entryJson(u"track|1"_s, u"a.mp3"_s, 1, R"(,"artworkFileName":"a.art")"_ba) + ","_ba +
             kept + "]"_ba);
    auto library = store();
    QSignalSpy published(library.get(), &OfflineStore::entriesChanged);
    const auto track = trackOf(u"1"_s);
    library->remove(*library->entry(track));
    QVERIFY(!library->isDownloaded(&track) && published.isEmpty());
    m_queue.drain();
    QCOMPARE(published.size(), 1);
    QCOMPARE(library->entries().size(), 1);
    QCOMPARE(library->totalSizeBytes(), 5);
    QVERIFY(!m_files->exists(path(u"a.mp3"_s)) && !m_files->exists(path(u"a.art"_s)));
    library.reset();
    library = store();
    QCOMPARE(library->entries().size(), 1);
    library->removeAll();
    library.reset();
    m_queue.drain();
    QCOMPARE(index(), "[]"_ba);
    QVERIFY(!m_files->exists(path(u"b.mp3"_s)));
}

void tst_OfflineStore::playsTheLibrary()
{
    put(u"old.mp3"_s);
    put(u"new.mp3"_s);
    putIndex("["_ba +
             entryJson(u"track|2"_s, u"new.mp3"_s, 2, R"(,"artworkRemoteURL":"/r.png","duration":3)"_ba) +
             ","_ba +
             entryJson(u"track|1"_s, u"old.mp3"_s, 1,
                       R"(,"trackType":"radio","trackID":"1","artworkFileName":"o.art")"_ba) +
             "]"_ba);
    const auto station = *store()->offlineStation();
    const auto address = [this](const QString &name) { return QUrl::fromLocalFile(path(name)).toString(); };
    QCOMPARE(station.displayName(), u"دانلود شدهها"_s);
    QCOMPARE(station.trackCount, 2);
    const PlaylistTrack oldest{
        {}, u"radio"_s, u"1"_s, u"t"_s, u"a"_s, address(u"o.art"_s), address(u"old.mp3"_s), {}};
    const PlaylistTrack newest{{}, {}, {}, u"t"_s, u"a"_s, u"/r.png"_s, address(u"new.mp3"_s), 3};
    QCOMPARE(station.tracks, (QList{oldest, newest}));
}

void tst_OfflineStore::lookupsFromOtherThreads()
{
    QList<QByteArray> entries;
    for (int i = 0; i < 50; ++i) {
        put(QString::number(i));
        entries << entryJson(u"track|"_s + QString::number(i), QString::number(i), i);
    }
    putIndex("["_ba + entries.join(',') + "]"_ba);
    auto library = store();
    std::thread reader([&] {
        for (int i = 0; i < 50; ++i)
            static_cast<void>(library->audioURL(trackOf(QString::number(i))));
    });
    const auto all = library->entries();
    for (const auto &entry : all)
        library->remove(entry);
    reader.join();
    m_queue.drain();
    QVERIFY(library->entries().isEmpty());
}

QTEST_GUILESS_MAIN(tst_OfflineStore)
#include "tst_OfflineStore.moc"
