#include "Platform/Http/HttpRules.h"
#include "Platform/Http/QtHttpSession.h"
#include "Support/ScriptedHttpServer.h"

#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <thread>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

using Ending = ScriptedAnswer::Ending;
using Kind = TransportError::Kind;

namespace navorin {
static char *toString(const std::optional<Kind> &kind)
{
    return qstrdup(kind ? QByteArray::number(int(*kind)).constData() : "none");
}
} // namespace navorin

namespace {

HttpRequest to(const QUrl &url, const QByteArray &method = "GET"_ba, const QByteArray &body = {})
{
    HttpRequest request{url, method, {}, body, {}};
    if (!body.isEmpty())
        request.headers.append({"Content-Type"_ba, "application/json"_ba});
    return request;
}

std::optional<Kind> failureOf(QFuture<HttpResponse> answer)
{
    try {
        answer.waitForFinished();
        return {};
    } catch (const TransportError &error) {
        return error.kind();
    }
}

} // namespace

class tst_QtHttpSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void failures_data();
    void failures();
    void answersOfEveryStatus();
    void whatMayNotBeRepeatedIsSentOnce();
    void ownTimeoutOfARequest();
    void redirections_data();
    void redirections();
    void followsRedirectsOnTheWire();
    void cancellingEndsTheRequest();
    void destructionEndsEverything();
    void servesManyThreads();
    void keepsAnswersOnlyOnRequest();
    void goesThroughTheUsersProxy();
};

void tst_QtHttpSession::failures_data()
{
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<std::optional<Kind>>("kind");
    const auto row = [](const char *name, const ScriptedAnswer &answer, std::optional<Kind> kind) {
        QTest::newRow(name) << answer << kind;
    };
    row("whole", {200, "body"_ba}, {});
    row("no length, closed", {.raw = "HTTP/1.0 200 OK\r\n\r\nbody"_ba}, {});
    row("cut body", {.body = "0123456789"_ba, .ending = Ending::Cut}, Kind::ConnectionLost);
    row("another tongue", {.raw = "SSH-2.0-server\r\n\r\n"_ba}, Kind::ConnectionLost);
    row("no answer", {.ending = Ending::Hangup}, Kind::ConnectionLost);
    row("silence", {.delay = 60s}, Kind::TimedOut);
    row("stalled body", {.body = "0123456789"_ba, .ending = Ending::Stall}, Kind::TimedOut);
    row("endless drip", {.body = QByteArray(1000, 'x'), .ending = Ending::Drip}, Kind::TimedOut);
    row("too large", {.body = QByteArray(100'000, 'x')}, Kind::Other);
    row("circle", {302, {}, {{"Location"_ba, "/"_ba}}}, Kind::Other);
}

void tst_QtHttpSession::failures()
{
    QFETCH(ScriptedAnswer, answer);
    QFETCH(std::optional<Kind>, kind);
    ScriptedHttpServer server;
    server.script("/"_ba, answer);
    QtHttpSession session({.timeoutForRequest = 300ms, .timeoutForResource = 900ms, .largestBody = 50'000});
    QCOMPARE(failureOf(session.send(to(server.url(u"/"_s)))), kind);
}

void tst_QtHttpSession::answersOfEveryStatus()
{
    ScriptedHttpServer server;
    QtHttpSession session;
    for (const auto status : {200, 204, 301, 400, 401, 404, 407, 429, 500, 503, 599}) {
        const QByteArray target = '/' + QByteArray::number(status);
        server.script(target, {status,
                               status == 204 ? ""_ba : "words"_ba,
                               {{"X-A"_ba, "b"_ba}, {"WWW-Authenticate"_ba, "Basic realm=r"_ba}}});
        const auto request = to(server.url(QString::fromLatin1(target)), "POST"_ba, "{}"_ba);
        auto answer = session.send(request).result();
        QCOMPARE(answer.status, status);
        QCOMPARE(answer.body, status == 204 ? ""_ba : "words"_ba);
        QVERIFY(answer.headers.contains(std::pair("X-A"_ba, "b"_ba)));
    }
    QCOMPARE(failureOf(session.send(to(QUrl(u"http://127.0.0.1:1/"_s)))), Kind::CannotConnect);
}

void tst_QtHttpSession::whatMayNotBeRepeatedIsSentOnce()
{
    ScriptedHttpServer server;
    server.script("/toggle"_ba, {.ending = Ending::Hangup});
    QtHttpSession session;
    QCOMPARE(failureOf(session.send(to(server.url(u"/toggle"_s), "POST"_ba, "{}"_ba))), Kind::ConnectionLost);
    QCOMPARE(server.requests().size(), 1);
    QCOMPARE(server.requests().first().body, "{}"_ba);
}

void tst_QtHttpSession::ownTimeoutOfARequest()
{
    ScriptedHttpServer server;
    server.script("/"_ba, {.delay = 400ms});
    QtHttpSession session({.timeoutForRequest = 100ms});
    auto request = to(server.url(u"/"_s));
    QCOMPARE(failureOf(session.send(request)), Kind::TimedOut);
    request.timeout = 30s;
    QCOMPARE(failureOf(session.send(request)), std::nullopt);
}

void tst_QtHttpSession::redirections_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("location");
    QTest::addColumn<QString>("next"); // method, address, A with authorisation, B with body; or what else
    const auto https = u"https://a.example/x"_s;
    const auto http = u"http://a.example/x"_s;
    const auto row = [](const char *name, const QString &from, const char *method, int status,
                        const char *location, const char16_t *next) {
        QTest::newRow(name) << from << QByteArray(method) << status << QByteArray(location)
                            << QString::fromUtf16(next);
    };
    row("relative", https, "GET", 302, "y?q=1", u"GET https://a.example/y?q=1 AB");
    row("post becomes get", https, "POST", 301, "/y", u"GET https://a.example/y A");
    row("put stays", https, "PUT", 302, "/y", u"PUT https://a.example/y AB");
    row("see other", https, "PUT", 303, "/y", u"GET https://a.example/y A");
    row("post stays", https, "POST", 307, "/y", u"POST https://a.example/y AB");
    row("delete stays", https, "DELETE", 308, "/y", u"DELETE https://a.example/y AB");
    row("other host", https, "GET", 302, "https://b.example/y", u"GET https://b.example/y B");
    row("other port", https, "GET", 302, "https://a.example:444/y", u"GET https://a.example:444/y B");
    row("same port spelt out", https, "GET", 302, "https://a.example:443/y",
        u"GET https://a.example:443/y AB");
    row("safer", http, "GET", 302, "https://a.example/y", u"GET https://a.example/y B");
    row("less safe", https, "GET", 302, "http://a.example/y", u"insecure");
    row("to a file", https, "GET", 302, "file:///etc/passwd", u"none");
    row("no location", https, "GET", 302, "", u"none");
    row("not modified", https, "GET", 304, "/y", u"none");
}

void tst_QtHttpSession::redirections()
{
    QFETCH(QString, from);
    QFETCH(QByteArray, method);
    QFETCH(int, status);
    QFETCH(QByteArray, location);
    auto request = to(QUrl(from), method, "{}"_ba);
    request.headers.append({"authorization"_ba, "Bearer t"_ba});
    const auto [verdict, next] = redirection(request, status, location);
    QString shown = verdict == Redirection::Verdict::Insecure ? u"insecure"_s : u"none"_s;
    if (verdict == Redirection::Verdict::Follow) {
        shown = QString::fromLatin1(next.method) + u' ' + next.url.toString() + u' ';
        shown += next.headers.contains(std::pair("authorization"_ba, "Bearer t"_ba)) ? u"A"_s : u""_s;
        const auto hasType = next.headers.contains(std::pair("Content-Type"_ba, "application/json"_ba));
        QCOMPARE(hasType, !next.body.isEmpty());
        shown += hasType ? u"B"_s : u""_s;
    }
    QTEST(shown, "next");
}

void tst_QtHttpSession::followsRedirectsOnTheWire()
{
    ScriptedHttpServer server;
    server.script("/a"_ba, {307, {}, {{"Location"_ba, "/b"_ba}}});
    server.script("/b"_ba, {303, {}, {{"Location"_ba, "/c"_ba}}});
    server.script("/c"_ba, {200, "end"_ba});
    QtHttpSession session;
    QCOMPARE(session.send(to(server.url(u"/a"_s), "POST"_ba, "{}"_ba)).result().body, "end"_ba);
    QByteArrayList seen;
    for (const auto &request : server.requests())
        seen.append(request.method + request.target + request.body);
    QCOMPARE(seen, QByteArrayList({"POST/a{}"_ba, "POST/b{}"_ba, "GET/c"_ba}));
}

void tst_QtHttpSession::cancellingEndsTheRequest()
{
    ScriptedHttpServer server;
    server.script("/"_ba, {.delay = 60s});
    QtHttpSession session;
    auto answer = session.send(to(server.url(u"/"_s)));
    QTRY_COMPARE(server.requests().size(), 1);
    answer.cancel();
    QTRY_COMPARE(server.openConnections(), 0);
    QVERIFY(answer.isFinished());
}

void tst_QtHttpSession::destructionEndsEverything()
{
    ScriptedHttpServer server;
    server.script("/"_ba, {.delay = 60s});
    QList<QFuture<HttpResponse>> answers;
    {
        QtHttpSession session;
        answers.append(session.send(to(server.url(u"/"_s))));
        QTRY_COMPARE(server.requests().size(), 1);
        for (int i = 0; i < 20; ++i) // some of them still on their way to the network thread
            answers.append(session.send(to(server.url(u"/"_s))));
    }
    for (const auto &answer : answers) {
        QVERIFY(answer.isFinished());
        QCOMPARE(failureOf(answer), Kind::Cancelled);
    }
}

void tst_QtHttpSession::servesManyThreads()
{
    ScriptedHttpServer server;
    QtHttpSession session;
    std::array<int, 4> right{};
    std::array<std::thread, 4> threads;
    for (std::size_t n = 0; n < threads.size(); ++n) {
        const auto body = QByteArray(10'000, char('a' + n));
        server.script('/' + QByteArray::number(n), {200, body});
        threads[n] = std::thread([&right, &session, n, body, url = server.url(u'/' + QString::number(n))] {
            for (int i = 0; i < 25; ++i)
                right[n] += session.send(to(url)).result().body == body;
        });
    }
    for (auto &thread : threads)
        thread.join();
    QCOMPARE(right, (std::array{25, 25, 25, 25}));
}

void tst_QtHttpSession::keepsAnswersOnlyOnRequest()
{
    const QTemporaryDir folder;
    ScriptedHttpServer server;
    server.script("/"_ba,
                  {200, "kept"_ba, {{"Cache-Control"_ba, "max-age=600"_ba}, {"Set-Cookie"_ba, "a=b"_ba}}});
    const HttpSessionConfiguration caching{.diskCache = HttpDiskCache{folder.path(), 1 << 20}};
    qsizetype asked = 0;
    for (const auto &[configuration, more] : {std::pair(HttpSessionConfiguration(), 2), // every time
                                              std::pair(caching, 1), std::pair(caching, 0)}) {
        QtHttpSession session(configuration);
        for (int i = 0; i < 2; ++i)
            QCOMPARE(session.send(to(server.url(u"/"_s))).result().body, "kept"_ba);
        QCOMPARE(server.requests().size(), asked += more);
    }
    for (const auto &request : server.requests())
        QVERIFY(!request.headers.contains("cookie"_ba));
}

void tst_QtHttpSession::goesThroughTheUsersProxy()
{
    ScriptedHttpServer proxy;
    proxy.script("http://far.invalid/x"_ba, {200, "by proxy"_ba});
    proxy.script("/x"_ba, {200, "directly"_ba});
    qputenv("http_proxy", proxy.url().toEncoded());
    QtHttpSession session;
    QCOMPARE(session.send(to(QUrl(u"http://far.invalid/x"_s))).result().body, "by proxy"_ba);
    QCOMPARE(session.send(to(proxy.url(u"/x"_s))).result().body, "directly"_ba);
    qunsetenv("http_proxy");
}

QTEST_GUILESS_MAIN(tst_QtHttpSession)
#include "tst_QtHttpSession.moc"
