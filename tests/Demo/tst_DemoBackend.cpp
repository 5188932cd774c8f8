#include "DecodedSound.h"
#include "DemoProcess.h"
#include "Support/Columns.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

class TestDemoBackend : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        start();
        QVERIFY(m_backend->port() > 0);
    }

    void catalogueHasEveryKindOfStation();
    void deferredListsComeOnDemand();
    void programmesAndRotationsMove();
    void liveStreamsNeverEnd();
    void tracksAreWholeFiles_data();
    void tracksAreWholeFiles();
    void rangesGiveTheirPart();
    void coversDiffer();
    void searchesAndResolves();
    void faultsBendTheAnswer();
    void faultsThatHoldAnAnswerBack();
    void strangeRequestsAreSurvived_data();
    void strangeRequestsAreSurvived();
    void endsCleanlyUnderALiveStream();
    void endsWithItsParent();

private:
    void start(int timeScale = 60)
    {
        m_backend.reset();
        m_backend = std::make_unique<DemoProcess>(
            QStringList{u"--cache"_s, m_cache.path(), u"--time-scale"_s, QString::number(timeScale)});
    }
    QJsonObject station(const QString &genre)
    {
        for (const QJsonValue &value : m_backend->data(u"/api/stations"_s)) {
            if (value["genre"_L1] == genre)
                return value.toObject();
        }
        return {};
    }

    QTemporaryDir m_cache;
    std::unique_ptr<DemoProcess> m_backend;
};

void TestDemoBackend::catalogueHasEveryKindOfStation()
{
    const QJsonArray stations = m_backend->data(u"/api/stations"_s);
    QVERIFY(stations.size() >= 24);
    QCOMPARE(stations[0]["genre"_L1], u"persian"_s);
    QSet<QString> genres;
    QMap<QString, int> kinds;
    for (const QJsonValue &s : stations) {
        genres.insert(s["genre"_L1].toString());
        ++kinds[s["category"_L1].toString()];
        const QJsonArray tracks = s["tracks"_L1].toArray();
        const bool deferred = s["source"_L1] == "songsara"_L1;
        ++kinds[deferred ? u"deferred"_s : tracks.isEmpty() ? u"live"_s : u"list"_s];
        QVERIFY(!deferred || (tracks.isEmpty() && s["genre"_L1].toString().startsWith("songsara-"_L1)));
        if (!tracks.isEmpty()) {
            ++kinds[s["track_index"_L1].isDouble() ? u"rotating"_s : u"still"_s];
            ++kinds[tracks[0]["duration"_L1].isString() ? u"text"_s : u"number"_s];
            ++kinds[tracks[0]["stream_url"_L1].isString() ? u"address"_s : u"no address"_s];
        } else if (!deferred) {
            QVERIFY(s["title"_L1].toString().startsWith(s["artist"_L1].toString() + u" - "_s));
        }
    }
    QCOMPARE(genres.size(), stations.size());
    for (const QString &kind :
         {u"iranian"_s, u"international"_s, u"instrumental"_s, u"deferred"_s, u"live"_s, u"list"_s,
          u"rotating"_s, u"still"_s, u"text"_s, u"number"_s, u"address"_s, u"no address"_s})
        QVERIFY2(kinds[kind] > 0, qPrintable(kind));
}

void TestDemoBackend::deferredListsComeOnDemand()
{
    const QJsonArray data = m_backend->data(u"/api/songsara/playlist/1204"_s);
    QCOMPARE(data.size(), 1);
    QVERIFY(data[0]["tracks"_L1].toArray().size() > 1);
    for (const QString &id : {u"9"_s, u"persian"_s, u""_s})
        QCOMPARE(m_backend->fetch(u"/api/songsara/playlist/"_s + id)->error(),
                 QNetworkReply::ContentNotFoundError);
}

void TestDemoBackend::programmesAndRotationsMove()
{
    // 3 s for a song: a look at a sanitized backend takes a second, and may keep step with a faster turn.
    start(20);
    constexpr int patience = 60'000;
    const QString title = station(u"persian"_s)["title"_L1].toString();
    const int index = station(u"kavir"_s)["track_index"_L1].toInt();
    QTRY_VERIFY_WITH_TIMEOUT(station(u"persian"_s)["title"_L1].toString() != title, patience);
    QTRY_VERIFY_WITH_TIMEOUT(station(u"kavir"_s)["track_index"_L1].toInt() != index, patience);
    // the first track goes without an index, the others have one
    QTRY_VERIFY_WITH_TIMEOUT(!station(u"golchin"_s).contains("track_index"_L1), patience);
    QTRY_VERIFY_WITH_TIMEOUT(station(u"golchin"_s).contains("track_index"_L1), patience);
}

// longer than any piece, so over at least one seam; the second time from the files of the first
void TestDemoBackend::liveStreamsNeverEnd()
{
    for (const auto &genre :
         {u"persian"_s, u"persian"_s, u"pop"_s, u"pop"_s, u"tehran-night"_s, u"tehran-night"_s}) {
        start();
        const DemoProcess::Reply stream = m_backend->send(u"/stream/"_s + genre);
        QTRY_VERIFY_WITH_TIMEOUT(stream->bytesAvailable() > 1'000'000, 30'000);
        QVERIFY(!stream->hasRawHeader("Content-Length"));
        const DecodedSound sound = decodeSound(stream->readAll());
        QCOMPARE(sound.error, QString());
        QVERIFY2(sound.seconds > 55, qPrintable(QString::number(sound.seconds)));
        QVERIFY2(std::abs(sound.position - sound.seconds) < 0.2, qPrintable(QString::number(sound.position)));
        QVERIFY(sound.level > 0.02);
        QVERIFY(!m_backend->fetch(u"/stream/"_s + genre, "HEAD")->hasRawHeader("Content-Length"));
    }
}

void TestDemoBackend::tracksAreWholeFiles_data()
{
    addColumns<QString, double>("path", "seconds");
    QTest::newRow("MP3") << u"/stream/yalda?track=3"_s << 0.0;
    QTest::newRow("MP4") << u"/stream/lofi?track=3"_s << 0.0;
    QTest::newRow("Ogg") << u"/stream/santur?track=3"_s << 0.0;
    QTest::newRow("tone") << u"/stream/test-tone?hz=440"_s << 60.0;
}

void TestDemoBackend::tracksAreWholeFiles()
{
    auto [path, seconds] = fetched<QString, double>("path", "seconds");
    const bool tone = seconds > 0;
    if (!tone) {
        const QJsonValue track = station(path.section(u'/', 2).section(u'?', 0, 0))["tracks"_L1][3];
        seconds = track["duration"_L1].toVariant().toDouble();
    }
    const DecodedSound sound = decodeSound(m_backend->fetch(path)->readAll());
    QCOMPARE(sound.error, QString());
    QVERIFY2(std::abs(sound.seconds - seconds) < 0.2, qPrintable(QString::number(sound.seconds)));
    if (tone) {
        QVERIFY(std::abs(sound.hertz - 440) < 1);
        QVERIFY(std::abs(20 * std::log10(sound.level * std::sqrt(2)) + 20) < 0.2);
    }
}

void TestDemoBackend::rangesGiveTheirPart()
{
    const std::tuple<QByteArray, int, int, int> cases[]{
        // range, status, and the part: its first byte and its length, negative for all to the end
        {"bytes=0-99"_ba, 206, 0, 100},
        {"bytes=5000-"_ba, 206, 5000, -1},
        {"bytes=100-99999999"_ba, 206, 100, -1},
        {"bytes=99999999-"_ba, 416, 0, 0},
        {"bytes=9-5"_ba, 416, 0, 0},
        {"bytes=0-1,5-9"_ba, 200, 0, -1},
        {"lines=1-2"_ba, 416, 0, 0},
    };
    const QString path = u"/stream/yalda?track=0"_s;
    const QByteArray whole = m_backend->fetch(path)->readAll();
    for (const auto &[range, status, first, length] : cases) {
        const DemoProcess::Reply reply = m_backend->fetch(path, "GET", {{"Range", range}});
        QCOMPARE(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), status);
        if (status < 400)
            QCOMPARE(reply->readAll(), whole.mid(first, length));
    }
}

void TestDemoBackend::coversDiffer()
{
    QSet<QByteArray> covers;
    const QStringList paths{u"persian.jpg"_s, u"persian.png"_s, u"persian.jpg?p=1"_s,
                            u"kavir.jpg"_s,   u"kavir-1.jpg"_s, u"unknown.jpg"_s};
    for (const QString &path : paths) {
        const QByteArray bytes = m_backend->fetch(u"/artwork/"_s + path)->readAll();
        QCOMPARE(QImage::fromData(bytes).size(), QSize(600, 600));
        QCOMPARE(m_backend->fetch(u"/artwork/"_s + path)->readAll(), bytes);
        covers.insert(bytes);
    }
    QCOMPARE(covers.size(), paths.size());
}

void TestDemoBackend::searchesAndResolves()
{
    const auto fetch = [this](const char *call, const QString &text) {
        return m_backend->fetch(QLatin1StringView(call) + QString::fromLatin1(QUrl::toPercentEncoding(text)));
    };
    const auto plays = [this](const QJsonValue &record) {
        return m_backend->fetch(record["stream_url"_L1].toString(), "HEAD")->error() ==
               QNetworkReply::NoError;
    };
    const std::pair<QString, bool> queries[]{
        {u"دریا"_s, true},    {u"درياچه"_s, true}, // arabic letters
        {u"نیمهشب"_s, true},                       // without a half-space
        {u"HARBOUR"_s, true}, {u"دلتنگ لیلا"_s, true}, {u"zzz"_s, false}, {u"  "_s, false},
    };
    for (const auto &[query, finds] : queries) {
        const auto reply = fetch("/api/soundcloud/search?q=", query);
        QCOMPARE(reply->error(), QNetworkReply::NoError);
        const auto hits = QJsonDocument::fromJson(reply->readAll())["data"_L1];
        QVERIFY2(hits.toArray().isEmpty() != finds, qPrintable(query));
        QVERIFY(!finds || plays(hits[0]));
    }
    const std::tuple<QString, int, bool> links[]{
        {u"https://open.spotify.com/playlist/37i9dQ?si=1"_s, 200, true},
        {u"open.spotify.com/track/abc"_s, 200, true},
        {u"spotify:album:abc"_s, 200, true},
        {u"https://open.spotify.com/playlist/empty"_s, 200, false},
        {u"https://open.spotify.com/playlist/private"_s, 403, false},
        {u"https://open.spotify.com/album/gone"_s, 404, false},
        {u"https://spotify.example/playlist/1"_s, 400, false},
        {u""_s, 400, false},
    };
    for (const auto &[link, status, hasTracks] : links) {
        const auto reply = fetch("/api/spotify/resolve?url=", link);
        QCOMPARE(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), status);
        const auto bytes = reply->readAll();
        const auto answer = QJsonDocument::fromJson(bytes);
        const auto tracks = answer["data"_L1]["tracks"_L1];
        QVERIFY2(answer.isObject() && tracks.toArray().isEmpty() != hasTracks, qPrintable(link));
        QVERIFY(!hasTracks || plays(tracks[0]));
        QCOMPARE(fetch("/api/spotify/resolve?url=", link)->readAll(), bytes); // always the same
    }
}

void TestDemoBackend::faultsBendTheAnswer()
{
    const QString path = u"/stream/yalda?track=0"_s;
    const QByteArray whole = m_backend->fetch(path)->readAll();
    const std::tuple<QString, int, qsizetype, bool> cases[]{
        // fault, status, bytes received, and whether the length stated is still that of the whole
        {u"status:503"_s, 503, 40, false},
        {u"cut:10000"_s, 200, 10'000, true},
        {u"truncate"_s, 200, whole.size() / 2, true},
        {u"garbage"_s, 200, 32'768, false},
        {u"html"_s, 200, 113, false},
    };
    for (const auto &[fault, status, received, stated] : cases) {
        m_backend->setFault(path + u"="_s + fault, 1);
        const DemoProcess::Reply bent = m_backend->fetch(path);
        const QByteArray bytes = bent->readAll();
        QCOMPARE(bent->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), status);
        QCOMPARE(bytes.size(), received);
        QCOMPARE(whole.startsWith(bytes), stated);
        QCOMPARE(bent->header(QNetworkRequest::ContentLengthHeader), stated ? whole.size() : bytes.size());
        QCOMPARE(m_backend->fetch(path)->readAll(), whole);
    }
}

// an answer that is held back is overtaken by one that was asked for later
void TestDemoBackend::faultsThatHoldAnAnswerBack()
{
    for (const auto &[fault, atLeast] : // bytes that come all the same
         {std::pair(u"stall:7000"_s, 7000), {u"slow:2000"_s, 100}, {u"delay:1000"_s, 0}}) {
        m_backend->setFault(u"/stream/yalda?track=0="_s + fault);
        const DemoProcess::Reply held = m_backend->send(u"/stream/yalda?track=0"_s);
        QTRY_VERIFY(held->bytesAvailable() >= atLeast);
        QVERIFY(m_backend->fetch(u"/stream/yalda?track=1"_s)->bytesAvailable() > 300'000);
        QVERIFY(!held->isFinished() && held->bytesAvailable() <= 100'000);
        m_backend->setFault({});
    }
}

void TestDemoBackend::strangeRequestsAreSurvived_data()
{
    QTest::addColumn<QByteArray>("request");
    const QByteArray end = " HTTP/1.1\r\nHost: x\r\n\r\n";
    QTest::newRow("long path") << "GET /" + QByteArray(100'000, 'a') + end;
    QTest::newRow("longest path") << "GET /stream/" + QByteArray(8000, '/') + end;
    QTest::newRow("percent") << "GET /stream/%00%ff%zz%?track=%25%" + end;
    QTest::newRow("not UTF-8") << "GET /artwork/\xff\xfe.jpg?p=\xff" + end;
    QTest::newRow("index") << "GET /stream/yalda?track=99999999999999999999" + end;
    QTest::newRow("negative") << "GET /stream/yalda?track=-1" + end;
    QTest::newRow("long range") << "GET /stream/yalda?track=0 HTTP/1.1\r\nRange: bytes=" +
                                       QByteArray(8000, '1') + "-\r\n\r\n";
    QTest::newRow("many ranges") << "GET /stream/yalda?track=0 HTTP/1.1\r\nRange: bytes=0-1" +
                                        QByteArray(",5-6").repeated(1900) + "\r\n\r\n";
    QTest::newRow("no JSON") << "POST /demo/fault HTTP/1.1\r\nContent-Length: 3\r\n\r\n{\"\xff"_ba;
    QTest::newRow("noise") << QByteArray("\0\1\2\r\n\r\n\xff GET", 12);
}

void TestDemoBackend::strangeRequestsAreSurvived()
{
    QFETCH(QByteArray, request);
    QTcpSocket socket;
    socket.connectToHost(u"127.0.0.1"_s, m_backend->port());
    socket.write(request);
    QTRY_VERIFY(socket.bytesAvailable() > 0 || socket.state() == QAbstractSocket::UnconnectedState);
    QVERIFY(!socket.readAll().startsWith("HTTP/1.1 500"));
    QCOMPARE(m_backend->fetch(u"/demo/fault"_s)->error(), QNetworkReply::NoError);
}

void TestDemoBackend::endsCleanlyUnderALiveStream()
{
    const DemoProcess::Reply stream = m_backend->send(u"/stream/persian"_s);
    QTRY_VERIFY(stream->bytesAvailable() > 0);
    QCOMPARE(m_backend->stop(), 0);
}

void TestDemoBackend::endsWithItsParent()
{
    QProcess parent;
    parent.start(u"/bin/sh"_s,
                 {u"-c"_s, u"\"$0\" --parent-watch & read line"_s, QStringLiteral(NAVORIN_DEMO_BACKEND)});
    QTRY_VERIFY(parent.canReadLine());
    const quint16 port = parent.readLine().mid(5).trimmed().toUShort();
    parent.closeWriteChannel();
    QVERIFY(parent.waitForFinished());
    QTRY_VERIFY([port] {
        QTcpSocket socket;
        socket.connectToHost(u"127.0.0.1"_s, port);
        return !socket.waitForConnected();
    }());
}

QTEST_GUILESS_MAIN(TestDemoBackend)
#include "tst_DemoBackend.moc"
