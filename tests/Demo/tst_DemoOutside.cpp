#include "DemoProcess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

/// What the demo backend has of other services.
class TestDemoOutside : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_backend = std::make_unique<DemoProcess>(
            QStringList{u"--database"_s, u":memory:"_s, u"--demo-user"_s, u"sara:1234"_s});
        QVERIFY(m_backend->port() > 0);
    }

    void searches_data();
    void searches();
    void resolves_data();
    void resolves();
    void imports();

private:
    QJsonObject call(const QString &path, int expected, const QByteArray &verb = "GET",
                     const QJsonObject &body = {}, const QString &token = {})
    {
        DemoProcess::Headers headers;
        if (!token.isEmpty())
            headers.append({"Authorization", "Bearer " + token.toUtf8()});
        const auto reply = m_backend->fetch(u"/api/"_s + path, verb, headers,
                                            verb == "GET" ? QByteArray() : QJsonDocument(body).toJson());
        const auto status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (status != expected)
            qWarning() << path << "gives" << status;
        return status == expected ? QJsonDocument::fromJson(reply->readAll()).object() : QJsonObject();
    }
    static QString encoded(const QString &text) { return QString::fromLatin1(QUrl::toPercentEncoding(text)); }

    std::unique_ptr<DemoProcess> m_backend;
};

void TestDemoOutside::searches_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<bool>("finds");
    QTest::newRow("persian") << u"دریا"_s << true;
    QTest::newRow("arabic letters") << u"درياچه"_s << true;
    QTest::newRow("without a half-space") << u"نیمهشب"_s << true;
    QTest::newRow("latin, any case") << u"HARBOUR"_s << true;
    QTest::newRow("title and artist") << u"دلتنگ لیلا"_s << true;
    QTest::newRow("nothing") << u"zzz"_s << false;
    QTest::newRow("blanks") << u"  "_s << false;
}

void TestDemoOutside::searches()
{
    QFETCH(QString, query);
    QFETCH(bool, finds);
    const auto hits = call(u"soundcloud/search?q="_s + encoded(query), 200)["data"_L1].toArray();
    QCOMPARE(!hits.isEmpty(), finds);
    if (finds) {
        const auto head = m_backend->fetch(hits[0]["stream_url"_L1].toString(), "HEAD");
        QCOMPARE(head->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), 200);
    }
}

void TestDemoOutside::resolves_data()
{
    QTest::addColumn<QString>("link");
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("hasTracks");
    QTest::newRow("a playlist") << u"https://open.spotify.com/playlist/37i9dQ?si=1"_s << 200 << true;
    QTest::newRow("without its scheme") << u"open.spotify.com/track/abc"_s << 200 << true;
    QTest::newRow("as an address of its own") << u"spotify:album:abc"_s << 200 << true;
    QTest::newRow("empty") << u"https://open.spotify.com/playlist/empty"_s << 200 << false;
    QTest::newRow("private") << u"https://open.spotify.com/playlist/private"_s << 403 << false;
    QTest::newRow("gone") << u"https://open.spotify.com/album/gone"_s << 404 << false;
    QTest::newRow("elsewhere") << u"https://spotify.example/playlist/1"_s << 400 << false;
    QTest::newRow("nothing") << u""_s << 400 << false;
}

void TestDemoOutside::resolves()
{
    QFETCH(QString, link);
    QFETCH(int, status);
    QFETCH(bool, hasTracks);
    const QString path = u"spotify/resolve?url="_s + encoded(link);
    const auto answer = call(path, status);
    QVERIFY(!answer.isEmpty());
    QCOMPARE(!answer["data"_L1]["tracks"_L1].toArray().isEmpty(), hasTracks);
    QCOMPARE(call(path, status), answer); // always the same
}

void TestDemoOutside::imports()
{
    const QJsonObject body{
        {u"url"_s, u"spotify:playlist:mine"_s}, {u"title"_s, u"مال من"_s}, {u"description"_s, u"d"_s}};
    call(u"spotify/import"_s, 401, "POST", body);
    const auto session =
        call(u"auth/login"_s, 200, "POST", {{u"username"_s, u"sara"_s}, {u"password"_s, u"1234"_s}});
    const auto token = session["data"_L1]["token"_L1].toString();
    call(u"spotify/import"_s, 400, "POST", {{u"url"_s, u"x"_s}, {u"title"_s, u"t"_s}}, token);
    QVERIFY(!call(u"spotify/import"_s, 200, "POST", body, token).isEmpty());
    const auto made = call(u"playlists"_s, 200, "GET", {}, token)["data"_L1]["playlists"_L1][0];
    QCOMPARE(made["title"_L1].toString(), u"مال من"_s);
    const auto tracks = call(u"spotify/resolve?url=spotify:playlist:mine"_s, 200)["data"_L1]["tracks"_L1];
    QCOMPARE(made["track_count"_L1].toInt(), tracks.toArray().size());
    // a track plays from where the record says
    const auto head = m_backend->fetch(tracks[0]["stream_url"_L1].toString(), "HEAD");
    QCOMPARE(head->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), 200);
}

QTEST_GUILESS_MAIN(TestDemoOutside)
#include "tst_DemoOutside.moc"
