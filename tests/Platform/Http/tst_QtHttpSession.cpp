#include "Platform/Http/HttpRules.h"
#include "Platform/Http/QtHttpSession.h"
#include "Support/ScriptedHttpServer.h"

#include <QSemaphore>
#include <QTemporaryDir>
#include <QTest>

#include <mutex>
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

template <typename T>
std::optional<Kind> failureOf(QFuture<T> answer)
{
    try {
        answer.waitForFinished();
        return {};
    } catch (const TransportError &error) {
        return error.kind();
    }
}

/// The lock is for the thread sanitizer: it does not see that a future which has finished already, and so is
/// not waited for, comes after what was done before.
class Collector final : public HttpByteSink
{
public:
    explicit Collector(bool refuses = false)
        : m_refuses(refuses)
    {
    }
    void begin(qint64 expectedLength) override
    {
        {
            const std::scoped_lock lock(m_mutex);
            m_beginnings.append(expectedLength);
        }
        if (m_refuses)
            throw TransportError(Kind::Insecure, u"the sink's own"_s);
        begun.release();
    }
    void receive(QByteArrayView bytes) override
    {
        const std::scoped_lock lock(m_mutex);
        m_received.append(bytes);
    }
    [[nodiscard]] QList<qint64> beginnings() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_beginnings;
    }
    [[nodiscard]] QByteArray received() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_received;
    }

    QSemaphore begun;

private:
    mutable std::mutex m_mutex;
    QList<qint64> m_beginnings;
    QByteArray m_received;
    bool m_refuses;
};

} // namespace

class tst_QtHttpSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void failures();
    void answersOfEveryStatus();
    void redirections();
    void endings();
    void streams();
    void streamsThatAreStopped();
    void servesManyThreads();
    void keepsAnswersOnlyOnRequest();
    void goesThroughTheUsersProxy();
};

void tst_QtHttpSession::failures()
{
    const std::pair<ScriptedAnswer, std::optional<Kind>> cases[]{
        {{.raw = "HTTP/1.0 200 OK\r\n\r\nno length"_ba}, {}},
        {{.raw = "SSH-2.0-server\r\n\r\n"_ba}, Kind::ConnectionLost},
        {{.body = "0123456789"_ba, .ending = Ending::Cut}, Kind::ConnectionLost},
        {{.ending = Ending::Hangup}, Kind::ConnectionLost},
        {{.delay = 60s}, Kind::TimedOut},
        {{.body = "0123456789"_ba, .ending = Ending::Stall}, Kind::TimedOut},
        {{.body = QByteArray(100'000, 'x')}, Kind::Other},
        {{302, {}, {{"Location"_ba, "/8"_ba}}}, Kind::Other}, // a circle
    };
    ScriptedHttpServer server;
    QtHttpSession session({.timeoutForRequest = 300ms, .largestBody = 50'000});
    for (int i = 0; const auto &[answer, kind] : cases) {
        const QByteArray target = '/' + QByteArray::number(++i);
        server.script(target, answer);
        QCOMPARE(failureOf(session.send(to(server.url(QString::fromLatin1(target))))), kind);
    }
    QCOMPARE(failureOf(session.send(to(QUrl(u"http://127.0.0.1:1/"_s)))), Kind::CannotConnect);

    server.script("/late"_ba, {.delay = 600ms}); // a request may bring its own patience
    auto patient = to(server.url(u"/late"_s));
    patient.timeout = 30s;
    QCOMPARE(failureOf(session.send(patient)), std::nullopt);
    QtHttpSession hasty({.timeoutForResource = 300ms}); // but the whole may not take longer
    QCOMPARE(failureOf(hasty.send(patient)), Kind::TimedOut);

    server.script("/toggle"_ba, {.ending = Ending::Hangup}); // what may have taken effect is sent once
    const auto before = server.requests().size();
    QCOMPARE(failureOf(session.send(to(server.url(u"/toggle"_s), "POST"_ba, "{}"_ba))), Kind::ConnectionLost);
    QCOMPARE(server.requests().size(), before + 1);
}

void tst_QtHttpSession::answersOfEveryStatus()
{
    ScriptedHttpServer server;
    QtHttpSession session;
    for (const auto status : {200, 204, 301, 307, 400, 401, 404, 407, 429, 500, 503, 599}) {
        const QByteArray target = '/' + QByteArray::number(status);
        const auto body = status == 204 ? ""_ba : "words"_ba;
        server.script(target, {status, body, {{"WWW-Authenticate"_ba, "Basic realm=r"_ba}}});
        const auto request =
            to(server.url(QString::fromLatin1(target)), status == 307 ? "PUT"_ba : "POST"_ba, "{}"_ba);
        const auto answer = session.send(request).result();
        QCOMPARE(answer.status, status);
        QCOMPARE(answer.body, body);
        QVERIFY(answer.headers.contains(std::pair("WWW-Authenticate"_ba, "Basic realm=r"_ba)));
    }
}

void tst_QtHttpSession::redirections()
{
    // method, status, from, location, and what follows: A with authorisation, B with body
    const std::tuple<const char *, int, const char *, const char *, QString> cases[]{
        {"GET", 302, "https://a.example/x", "y?q=1", u"GET https://a.example/y?q=1 AB"_s},
        {"POST", 301, "https://a.example/x", "/y", u"GET https://a.example/y A"_s},
        {"PUT", 302, "https://a.example/x", "/y", u"PUT https://a.example/y AB"_s},
        {"PUT", 303, "https://a.example/x", "/y", u"GET https://a.example/y A"_s},
        {"POST", 307, "https://a.example/x", "/y", u"POST https://a.example/y AB"_s},
        {"DELETE", 308, "https://a.example/x", "/y", u"DELETE https://a.example/y AB"_s},
        {"GET", 302, "https://a.example/x", "https://b.example/y", u"GET https://b.example/y B"_s},
        {"GET", 302, "https://a.example/x", "https://a.example:444/y", u"GET https://a.example:444/y B"_s},
        {"GET", 302, "https://a.example/x", "https://a.example:443/y", u"GET https://a.example:443/y AB"_s},
        {"GET", 302, "http://a.example/x", "https://a.example/y", u"GET https://a.example/y B"_s},
        {"GET", 302, "https://a.example/x", "http://a.example/y", u"insecure"_s},
        {"GET", 302, "https://a.example/x", "file:///etc/passwd", u"none"_s},
        {"GET", 302, "https://a.example/x", "", u"none"_s},
        {"GET", 304, "https://a.example/x", "/y", u"none"_s},
    };
    for (const auto &[method, status, from, location, expected] : cases) {
        auto request = to(QUrl(QString::fromLatin1(from)), method, "{}"_ba);
        request.headers.append({"authorization"_ba, "Bearer t"_ba});
        const auto [verdict, next] = redirection(request, status, location);
        QString shown = verdict == Redirection::Verdict::Insecure ? u"insecure"_s : u"none"_s;
        if (verdict == Redirection::Verdict::Follow) {
            shown = QString::fromLatin1(next.method) + u' ' + next.url.toString() + u' ';
            for (const auto &header : next.headers)
                shown += header.first == "authorization"_ba ? u"A"_s : u""_s;
            shown += next.body.isEmpty() ? u""_s : u"B"_s;
            QCOMPARE(next.headers.size(), shown.count(u'A') + shown.count(u'B'));
        }
        QCOMPARE(shown, expected);
    }

    ScriptedHttpServer server;
    server.script("/a"_ba, {307, {}, {{"Location"_ba, "/b"_ba}}});
    server.script("/b"_ba, {303, {}, {{"Location"_ba, "/c"_ba}}});
    server.script("/c"_ba, {200, "end"_ba});
    QtHttpSession session;
    QCOMPARE(session.send(to(server.url(u"/a"_s), "POST"_ba, "{}"_ba)).result().body, "end"_ba);
    QCOMPARE(server.requests().at(1).line + server.requests().at(1).body, "POST /b{}"_ba);
    QCOMPARE(server.requests().at(2).line + server.requests().at(2).body, "GET /c"_ba);
}

void tst_QtHttpSession::endings()
{
    ScriptedHttpServer server;
    server.script("/"_ba, {.delay = 60s});
    QtHttpSession session;
    auto cancelled = session.send(to(server.url(u"/"_s)));
    QTRY_COMPARE(server.requests().size(), 1);
    cancelled.cancel();
    QTRY_COMPARE(server.openConnections(), 0);
    QTRY_VERIFY(cancelled.isFinished());

    QList<QFuture<HttpResponse>> answers{session.send(to(server.url(u"/"_s)))};
    QTRY_COMPARE(server.requests().size(), 2);
    for (int i = 0; i < 20; ++i) // some of them still on their way to the network thread
        answers.append(session.send(to(server.url(u"/"_s))));
    session.close();
    answers.append(session.send(to(server.url(u"/"_s)))); // too late
    for (const auto &answer : answers)
        QCOMPARE(answer.isFinished() ? failureOf(answer) : std::nullopt, Kind::Cancelled);
}

void tst_QtHttpSession::streams()
{
    struct Row
    {
        ScriptedAnswer answer;
        std::optional<Kind> failure;
        QList<qint64> beginnings;
        QByteArray received;
    };
    const QByteArray song(3 << 20, 's');
    const Row rows[]{
        {{.body = song}, {}, {song.size()}, song},
        {{302, "moved", {{"Location"_ba, "/1"_ba}}}, {}, {song.size()}, song},
        {{404, "an error page"_ba}, {}, {13}, "an error page"_ba},
        {{}, {}, {0}, {}},
        {{.raw = "HTTP/1.0 200 OK\r\n\r\nlive"_ba}, {}, {-1}, "live"_ba},
        {{.raw = "HTTP/1.1 200 OK\r\nContent-Length: 99999999999999999999\r\n\r\nlive"_ba},
         {},
         {-1},
         "live"_ba},
        {{.raw = "HTTP/1.1 200 OK\r\nContent-Length: 9\r\nTransfer-Encoding: chunked\r\n\r\n"
                 "4\r\nlive\r\n0\r\n\r\n"_ba},
         {},
         {-1},
         "live"_ba},
        {{.raw = "HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nlonger"_ba}, {}, {4}, "long"_ba},
        {{.body = song.first(4000), .ending = Ending::Cut}, {}, {4000}, song.first(2000)},
        {{.body = song, .ending = Ending::Stall}, Kind::TimedOut, {song.size()}, {}},
        {{.ending = Ending::Hangup}, Kind::ConnectionLost, {}, {}},
    };
    ScriptedHttpServer server;
    QtHttpSession session({.timeoutForRequest = 1s});
    for (int i = 0; const auto &row : rows) {
        const QByteArray target = '/' + QByteArray::number(++i);
        server.script(target, row.answer);
        const auto sink = std::make_shared<Collector>();
        const auto url = server.url(QString::fromLatin1(target));
        QCOMPARE(failureOf(session.stream(to(url), sink, {})), row.failure);
        QCOMPARE(sink->beginnings(), row.beginnings);
        QVERIFY2(row.failure || sink->received() == row.received, target.constData());
    }
    QCOMPARE(server.requests().first().headers.value("accept-encoding"_ba), "identity"_ba);

    const auto refusing = std::make_shared<Collector>(true);
    QCOMPARE(failureOf(session.stream(to(server.url(u"/1"_s)), refusing, {})), Kind::Insecure);
    QVERIFY(refusing->received().isEmpty());
}

void tst_QtHttpSession::streamsThatAreStopped()
{
    ScriptedHttpServer server;
    server.script("/silent"_ba, {.delay = 60s});
    server.script("/stalls"_ba, {.body = "0123456789"_ba, .ending = Ending::Stall});
    QtHttpSession session;
    std::stop_source stop;
    const auto before =
        session.stream(to(server.url(u"/silent"_s)), std::make_shared<Collector>(), stop.get_token());
    const auto sink = std::make_shared<Collector>();
    const auto during = session.stream(to(server.url(u"/stalls"_s)), sink, stop.get_token());
    QTRY_COMPARE(server.requests().size(), 2);
    QVERIFY(sink->begun.tryAcquire(1, 10'000));
    stop.request_stop();
    QCOMPARE(failureOf(before), Kind::Cancelled);
    QCOMPARE(failureOf(during), Kind::Cancelled);
    QTRY_COMPARE(server.openConnections(), 0);
    const auto after =
        session.stream(to(server.url(u"/silent"_s)), std::make_shared<Collector>(), stop.get_token());
    QCOMPARE(failureOf(after), Kind::Cancelled);

    const auto closed = session.stream(to(server.url(u"/silent"_s)), std::make_shared<Collector>(), {});
    session.close();
    const auto late = session.stream(to(server.url(u"/silent"_s)), std::make_shared<Collector>(), {});
    QCOMPARE(failureOf(closed), Kind::Cancelled);
    QCOMPARE(failureOf(late), Kind::Cancelled);
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
    for (const auto &[configuration, more] :
         {std::pair(HttpSessionConfiguration(), 2), std::pair(caching, 1), std::pair(caching, 0)}) {
        QtHttpSession session(configuration);
        for (int i = 0; i < 2; ++i)
            QCOMPARE(session.send(to(server.url(u"/"_s))).result().body, "kept"_ba);
        QCOMPARE(server.requests().size(), asked += more);
        QVERIFY(!server.requests().last().headers.contains("cookie"_ba));
    }
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
