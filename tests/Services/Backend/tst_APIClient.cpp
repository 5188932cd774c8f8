#include "Platform/Http/QtHttpSession.h"
#include "Services/Backend/APIClient.h"
#include "Support/FakeHttpSession.h"
#include "Support/ScriptedHttpServer.h"

#include <QJsonDocument>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace navorin {
struct TestAccess
{
    static std::unique_ptr<APIClient> client(const QUrl &base, HttpSession &session)
    {
        return std::unique_ptr<APIClient>(new APIClient(base, session));
    }
};
} // namespace navorin

namespace {

/// What came of a call: "ok", or the kind of failure with its text.
QString outcomeOf(const std::function<void()> &call)
{
    try {
        call();
        return u"ok"_s;
    } catch (const ServerError &error) {
        return QString(u"server "_s + QString::number(error.code()) + u' ' + errorDescription(error));
    } catch (const APIError &error) {
        return QString(u"api "_s + errorDescription(error));
    } catch (const TransportError &) {
        return u"transport"_s;
    } catch (const DecodingError &) {
        return u"decoding"_s;
    }
}

} // namespace

class tst_APIClient : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void judging_data();
    void judging();
    void requestsOnTheWire();
    void queryValuesSurvive();
    void paths_data();
    void paths();
    void bases_data();
    void bases();
    void absoluteAddresses_data();
    void absoluteAddresses();
    void catalogue_data();
    void catalogue();
    void descriptions();
};

void tst_APIClient::judging_data()
{
    QTest::addColumn<int>("status"); // -1: not HTTP
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QStringList>("outcomes"); // of GET, POST, PUT, DELETE
    const auto row = [](const char *name, int status, const QByteArray &body, const QStringList &outcomes) {
        QTest::newRow(name) << status << body << outcomes;
    };
    const auto all = [](const QString &outcome) { return QStringList(4, outcome); };
    const auto http = [](int status) {
        return QString(u"api خطای سرور ("_s + QString::number(status) + u')');
    };
    const auto said = [](int status) { return QString(u"server "_s + QString::number(status) + u" نه"_s); };
    const auto words = R"({"message":"نه","code":7})"_ba;
    row("first good", 200, words, all(u"ok"_s));
    row("last good", 299, "{}"_ba, all(u"ok"_s));
    row("code is not looked at", 200, R"({"code":500})"_ba, all(u"ok"_s));
    row("good but no JSON", 200, "<html>"_ba, all(u"decoding"_s));
    row("good but empty", 204, ""_ba, all(u"decoding"_s));
    row("good of another shape", 200, R"({"message":7})"_ba, all(u"decoding"_s));
    row("words", 400, words, {http(400), said(400), said(400), said(400)});
    row("words behind a redirect", 300, words, {http(300), said(300), said(300), said(300)});
    row("below good", 199, words, {http(199), said(199), said(199), said(199)});
    row("empty words", 401, R"({"message":""})"_ba,
        {http(401), u"server 401 "_s, u"server 401 "_s, u"server 401 "_s});
    row("no words", 401, R"({"code":1})"_ba, all(http(401)));
    row("null words", 422, R"({"message":null})"_ba, all(http(422)));
    row("words of another type", 500, R"({"message":["نه"]})"_ba, all(http(500)));
    row("page of a proxy", 502, "<html>"_ba, all(http(502)));
    row("not HTTP", -1, words, {http(-1), http(-1), said(-1), said(-1)});
    row("not HTTP, no words", -1, ""_ba, all(http(-1)));
}

void tst_APIClient::judging()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    FakeHttpSession session;
    const auto client = TestAccess::client(QUrl(u"https://a.example"_s), session);
    const auto answered = [&](QFuture<SimpleMessage> call) {
        auto promise = session.take().promise;
        promise->addResult(HttpResponse{status < 0 ? std::nullopt : std::optional(status), {}, body});
        promise->finish();
        return outcomeOf([&] { static_cast<void>(call.result()); });
    };
    const QStringList outcomes{
        answered(client->get<SimpleMessage>(u"x"_s)),
        answered(client->post<SimpleMessage>(u"x"_s, {})),
        answered(client->put<SimpleMessage>(u"x"_s, {})),
        answered(client->remove<SimpleMessage>(u"x"_s)),
    };
    QTEST(outcomes, "outcomes");
}

void tst_APIClient::requestsOnTheWire()
{
    ScriptedHttpServer server;
    for (const auto *target : {"/api/x?a=b", "/api/x"})
        server.script(target, {200, "{}"_ba});
    QtHttpSession session;
    const auto client = TestAccess::client(server.url(), session);
    const auto path = u"api/x"_s;
    const QJsonObject body{{u"text"_s, u"گل \"&"_s}, {u"number"_s, qint64(9007199254740993)}};
    client->get<SimpleMessage>(path, {{u"a"_s, u"b"_s}}, u"t"_s).result();
    client->get<SimpleMessage>(path).result();
    client->post<SimpleMessage>(path, body, u""_s).result();
    client->put<SimpleMessage>(path, {}, u"t"_s).result();
    client->remove<SimpleMessage>(path, u"t"_s).result();

    QStringList seen;
    for (const auto &request : server.requests()) {
        QString line = QString::fromLatin1(request.method + ' ' + request.target);
        for (const auto *name : {"authorization", "content-type"}) {
            if (request.headers.contains(name))
                line += u'|' + QString::fromLatin1(request.headers.value(name));
        }
        seen.append(line + u'|' + QString::fromUtf8(request.body));
        QVERIFY(request.headers.value("host"_ba).startsWith("127.0.0.1:"));
    }
    QCOMPARE(seen,
             (QStringList{
                 u"GET /api/x?a=b|Bearer t|"_s, u"GET /api/x|"_s,
                 u"POST /api/x|Bearer|application/json|{\"number\":9007199254740993,\"text\":\"گل \\\"&\"}"_s,
                 u"PUT /api/x|Bearer t|application/json|{}"_s, u"DELETE /api/x|Bearer t|"_s}));
}

void tst_APIClient::queryValuesSurvive()
{
    const auto request = getRequest(QUrl(u"https://a.example"_s), u"p"_s,
                                    {{u"q"_s, u"a&b#c+d=e %41 گل/?\n"_s}, {u"empty"_s, {}}}, {});
    QCOMPARE(request.url.query(QUrl::FullyEncoded),
             u"q=a%26b%23c%2Bd%3De%20%2541%20%DA%AF%D9%84%2F%3F%0A&empty="_s);
    QCOMPARE(request.timeout, std::chrono::seconds(60));
}

void tst_APIClient::paths_data()
{
    QTest::addColumn<QString>("base");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("address");
    const auto row = [](const QString &base, const QString &path, const QString &address) {
        QTest::addRow("%s + %s", qPrintable(base), qPrintable(path)) << base << path << address;
    };
    row(u"https://a.example"_s, u"api/stations"_s, u"https://a.example/api/stations"_s);
    row(u"https://a.example/"_s, u"api/stations"_s, u"https://a.example/api/stations"_s);
    row(u"https://a.example/v1"_s, u"api/x"_s, u"https://a.example/v1/api/x"_s);
    row(u"https://a.example"_s, u"/api/x"_s, u"https://a.example/api/x"_s);
    row(u"https://a.example"_s, u"api/x?y#z 50%"_s, u"https://a.example/api/x%3Fy%23z%2050%25"_s);
    row(u"https://a.example"_s, u"api/گل/"_s, u"https://a.example/api/%DA%AF%D9%84/"_s);
}

void tst_APIClient::paths()
{
    QFETCH(QString, base);
    QFETCH(QString, path);
    QTEST(QString(withPath(QUrl(base), path).toString(QUrl::FullyEncoded)), "address");
}

void tst_APIClient::bases_data()
{
    QTest::addColumn<bool>("usable");
    for (const auto *good : {"https://a.example", "https://a.example:8443/", "http://127.0.0.1:8080",
                             "http://localhost:1", "http://[::1]:2"})
        QTest::newRow(good) << true;
    for (const auto *bad : {"", "a.example", "/x", "https://", "https:///x", "http://a.example",
                            "ftp://a.example", "http://localhost.a.example", "http://10.0.0.1", "file:///x"})
        QTest::newRow(bad) << false;
}

void tst_APIClient::bases()
{
    QFETCH(bool, usable);
    QCOMPARE(isUsableBase(QUrl(QString::fromLatin1(QTest::currentDataTag()))), usable);
}

void tst_APIClient::absoluteAddresses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("address"); // empty: absent
    const auto row = [](const QString &text, const QString &address) {
        QTest::addRow("%s", qPrintable(text)) << text << address;
    };
    row(u""_s, u""_s);
    row(u"http://b.example/a?x=1#f"_s, u"http://b.example/a?x=1#f"_s);
    row(u"https://b.example/گل"_s, u"https://b.example/%DA%AF%D9%84"_s);
    row(u"https://b.example/a b"_s, u""_s);
    row(u"https://b.example:port/"_s, u""_s);
    row(u"httpfoo"_s, u"httpfoo"_s);
    row(u"/stream/persian"_s, u"https://a.example/stream/persian"_s);
    row(u"stream/persian"_s, u"https://a.example/stream/persian"_s);
    row(u"/stream/g?track=2"_s, u"https://a.example/stream/g?track=2"_s);
    row(u"//host/x"_s, u"https://host/x"_s);
    row(u"?q"_s, u"https://a.example?q"_s);
    row(u"/a%20b"_s, u"https://a.example/a%20b"_s);
    row(u"/a b"_s, u""_s);
    row(u"/50%"_s, u""_s);
    row(u"file:///home/a/track.m4a"_s, u"file:///home/a/track.m4a"_s);
    row(u"file://"_s, u"file://"_s);
}

void tst_APIClient::absoluteAddresses()
{
    QFETCH(QString, text);
    FakeHttpSession session;
    const auto client = TestAccess::client(QUrl(u"https://a.example"_s), session);
    const auto address = client->absolute(text);
    QTEST(address ? QString(address->toString(QUrl::FullyEncoded)) : QString(), "address");
    QVERIFY(!client->absolute(std::nullopt));
}

void tst_APIClient::catalogue_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("fetched");
    QTest::addColumn<QString>("hydrated");
    const auto decoding = u"api خطا در پردازش پاسخ سرور"_s;
    QTest::newRow("two") << 200 << R"({"code":500,"data":[{"genre":"b","title":"t"},{"genre":"c"}]})"_ba
                         << u"ok"_s << u"ok"_s;
    QTest::newRow("empty") << 200 << R"({"data":[]})"_ba << u"ok"_s << decoding;
    QTest::newRow("absent") << 200 << R"({"message":"x"})"_ba << decoding << decoding;
    QTest::newRow("null") << 200 << R"({"data":null})"_ba << decoding << decoding;
    QTest::newRow("broken") << 200 << R"({"data":[{}]})"_ba << u"decoding"_s << u"decoding"_s;
    QTest::newRow("bad status") << 503 << R"({"message":"x"})"_ba << u"api خطای سرور (503)"_s
                                << u"api خطای سرور (503)"_s;
}

void tst_APIClient::catalogue()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    FakeHttpSession session;
    const auto client = TestAccess::client(QUrl(u"https://a.example"_s), session);
    auto stations = client->fetchStations();
    auto station = client->hydrateSongsara(u"songsara-12songsara-3"_s);
    for (const auto *path : {"/api/stations", "/api/songsara/playlist/123"}) {
        auto exchange = session.take();
        QCOMPARE(exchange.request.url, QUrl(u"https://a.example"_s + QLatin1StringView(path)));
        QVERIFY(!exchange.request.timeout && exchange.request.headers.isEmpty());
        exchange.answer(body, status);
    }
    QTEST(outcomeOf([&] { static_cast<void>(stations.result()); }), "fetched");
    QTEST(outcomeOf([&] { static_cast<void>(station.result()); }), "hydrated");
    if (station.resultCount() == 1) {
        QCOMPARE(stations.result().size(), 2);
        QCOMPARE(station.result().genre, u"songsara-12songsara-3"_s);
        QCOMPARE(station.result().title, u"t"_s);
    }
}

void tst_APIClient::descriptions()
{
    FakeHttpSession session;
    const auto client = TestAccess::client(QUrl(u"https://a.example"_s), session);
    auto failed = client->get<SimpleMessage>(u"x"_s);
    session.take().fail(TransportError::Kind::TimedOut);
    QCOMPARE(outcomeOf([&] { failed.waitForFinished(); }), u"transport"_s);

    QStringList texts{errorDescription(APIError::badUrl())};
    for (const auto kind : {TransportError::Kind::CannotConnect, TransportError::Kind::TimedOut,
                            TransportError::Kind::ConnectionLost, TransportError::Kind::Insecure,
                            TransportError::Kind::Cancelled, TransportError::Kind::Other})
        texts.append(errorDescription(TransportError(kind, u"words for a log"_s)));
    texts.append(errorDescription(DecodingError("key", "why")));
    texts.append(errorDescription(std::make_exception_ptr(42)));
    QCOMPARE(texts.first(), u"آدرس سرور نامعتبر است"_s);
    QCOMPARE(texts.removeDuplicates(), 0);
    QVERIFY(!texts.contains(u""_s));
}

QTEST_GUILESS_MAIN(tst_APIClient)
#include "tst_APIClient.moc"
