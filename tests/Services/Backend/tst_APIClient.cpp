#include "Services/Backend/APIClient.h"
#include "Support/Columns.h"
#include "Support/FakeHttpSession.h"
#include "Support/TestAccess.h"

#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

const auto undecodable = u"خطا در پردازش پاسخ سرور"_s;

QString httpText(int status)
{
    return u"خطای سرور ("_s + QString::number(status) + u')';
}

/// "ok", or what a person is told; with the code of what the server itself said.
template <typename T>
QString outcomeOf(const QFuture<T> &call)
{
    try {
        static_cast<void>(call.result());
        return u"ok"_s;
    } catch (const ServerError &error) {
        return QString(QString::number(error.code()) + u": "_s + errorDescription(error));
    } catch (...) {
        return errorDescription(std::current_exception());
    }
}

} // namespace

class tst_APIClient : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void judging_data();
    void judging();
    void addresses();
    void absoluteAddresses();
    void catalogue();
    void descriptions();

private:
    FakeHttpSession m_session;
    std::unique_ptr<APIClient> m_client =
        TestAccess::make<APIClient>(QUrl(u"https://a.example"_s), m_session);
};

void tst_APIClient::judging_data()
{
    // status: -1: not HTTP
    // outcomes: of GET, POST, PUT, DELETE
    addColumns<int, QByteArray, QStringList>("status", "body", "outcomes");
    const auto row = [](int status, const char *body, const QString &get, const QString &post,
                        const QString &put) {
        QTest::addRow("%d %s", status, body)
            << status << QByteArray(body) << QStringList{get, post, put, put};
    };
    const auto same = [row](int status, const char *body, const QString &all) {
        row(status, body, all, all, all);
    };
    const auto unread = DecodingError::description();
    same(200, R"({"message":"نه"})", u"ok"_s);
    same(299, "{}", u"ok"_s);
    same(200, R"({"code":500})", u"ok"_s);
    same(200, "<html>", unread);
    same(204, "", unread);
    same(200, R"({"message":7})", unread);
    for (const auto status : {199, 300, 400, 401, 500}) {
        const QString said = QString::number(status) + u": نه"_s;
        row(status, R"({"message":"نه","code":7})", httpText(status), said, said);
    }
    row(401, R"({"message":""})", httpText(401), u"401: "_s, u"401: "_s);
    same(401, R"({"code":1})", httpText(401));
    same(422, R"({"message":null})", httpText(422));
    same(500, R"({"message":["نه"]})", httpText(500));
    same(502, "<html>", httpText(502));
    row(-1, R"({"message":"نه"})", httpText(-1), httpText(-1), u"-1: نه"_s);
    same(-1, "", httpText(-1));
}

void tst_APIClient::judging()
{
    const auto [status, body] = fetched<int, QByteArray>("status", "body");
    const QList<QFuture<SimpleMessage>> calls{
        m_client->get<SimpleMessage>(u"x"_s), m_client->post<SimpleMessage>(u"x"_s, {}),
        m_client->put<SimpleMessage>(u"x"_s, {}), m_client->remove<SimpleMessage>(u"x"_s)};
    QStringList outcomes;
    for (const auto &call : calls) {
        auto promise = m_session.take().promise;
        promise->addResult(HttpResponse{status < 0 ? std::nullopt : std::optional(status), {}, body});
        promise->finish();
        outcomes.append(outcomeOf(call));
    }
    QTEST(outcomes, "outcomes");
}

void tst_APIClient::addresses()
{
    const auto request = getRequest(QUrl(u"https://a.example"_s), u"p"_s,
                                    {{u"q"_s, u"a&b#c+d=e %41 گل/?\n"_s}, {u"empty"_s, {}}}, {});
    QCOMPARE(request.url.query(QUrl::FullyEncoded),
             u"q=a%26b%23c%2Bd%3De%20%2541%20%DA%AF%D9%84%2F%3F%0A&empty="_s);
    QCOMPARE(request.timeout, std::chrono::seconds(60));

    const std::array<QString, 3> joined[]{
        {u"https://a.example"_s, u"api/x"_s, u"https://a.example/api/x"_s},
        {u"https://a.example/"_s, u"/api/x"_s, u"https://a.example/api/x"_s},
        {u"https://a.example/v1"_s, u"api/x"_s, u"https://a.example/v1/api/x"_s},
        {u"https://a.example"_s, u"a/x?y#z 50%/گ/"_s, u"https://a.example/a/x%3Fy%23z%2050%25/%DA%AF/"_s},
    };
    for (const auto &[base, path, address] : joined)
        QCOMPARE(withPath(QUrl(base), path).toString(QUrl::FullyEncoded), address);

    for (const auto &good : {u"https://a.example:8443/"_s, u"http://127.0.0.1:8080"_s,
                             u"http://localhost:1"_s, u"http://[::1]:2"_s})
        QVERIFY2(isUsableBase(QUrl(good)), qPrintable(good));
    for (const auto &bad : {u""_s, u"a.example"_s, u"https://"_s, u"https:///x"_s, u"http://a.example"_s,
                            u"ftp://a.example"_s, u"http://localhost.a.example"_s, u"http://10.0.0.1"_s})
        QVERIFY2(!isUsableBase(QUrl(bad)), qPrintable(bad));
}

void tst_APIClient::absoluteAddresses()
{
    const std::pair<QString, QString> cases[]{
        // the second empty: absent
        {u""_s, u""_s},
        {u"http://b.example/a?x=1#f"_s, u"http://b.example/a?x=1#f"_s},
        {u"https://b.example/گ"_s, u"https://b.example/%DA%AF"_s},
        {u"https://b.example/a b"_s, u""_s},
        {u"https://b.example:port/"_s, u""_s},
        {u"httpfoo"_s, u"httpfoo"_s},
        {u"/stream/persian"_s, u"https://a.example/stream/persian"_s},
        {u"stream/g?track=2"_s, u"https://a.example/stream/g?track=2"_s},
        {u"//host/x"_s, u"https://host/x"_s},
        {u"?q"_s, u"https://a.example?q"_s},
        {u"/a%20b"_s, u"https://a.example/a%20b"_s},
        {u"/a b"_s, u""_s},
        {u"/50%"_s, u""_s},
        {u"file:///home/a/track.m4a"_s, u"file:///home/a/track.m4a"_s},
    };
    for (const auto &[text, expected] : cases) {
        const auto address = m_client->absolute(text);
        QCOMPARE(address ? address->toString(QUrl::FullyEncoded) : QString(), expected);
        QCOMPARE(address.has_value(), !expected.isEmpty());
    }
    QVERIFY(!m_client->absolute(std::nullopt));
}

void tst_APIClient::catalogue()
{
    const std::tuple<int, const char *, QString, QString> cases[]{
        {200, R"({"code":500,"data":[{"genre":"b","title":"t"},{"genre":"c"}]})", u"ok"_s, u"ok"_s},
        {200, R"({"data":[]})", u"ok"_s, undecodable},
        {200, R"({"message":"x"})", undecodable, undecodable},
        {200, R"({"data":[{}]})", DecodingError::description(), DecodingError::description()},
        {503, R"({"message":"x"})", httpText(503), httpText(503)},
    };
    const auto genre = u"songsara-12songsara-3"_s;
    for (const auto &[status, body, fetched, hydrated] : cases) {
        auto stations = m_client->fetchStations();
        auto station = m_client->hydrateSongsara(genre);
        for (const auto &path : {u"/api/stations"_s, u"/api/songsara/playlist/123"_s}) {
            auto exchange = m_session.take();
            QCOMPARE(exchange.request.url.path(), path);
            QVERIFY(!exchange.request.timeout && exchange.request.headers.isEmpty());
            exchange.answer(body, status);
        }
        QCOMPARE(outcomeOf(stations), fetched);
        QCOMPARE(outcomeOf(station), hydrated);
        if (hydrated == u"ok"_s)
            QCOMPARE(station.result().genre + *station.result().title, QString(genre + u't'));
    }
}

void tst_APIClient::descriptions()
{
    auto failed = m_client->get<SimpleMessage>(u"x"_s);
    m_session.take().fail(TransportError::Kind::TimedOut); // as it stands, in no other wrapping
    QVERIFY_EXCEPTION_THROWN(static_cast<void>(failed.result()), TransportError);

    QStringList texts{undecodable, DecodingError::description(),
                      errorDescription(std::make_exception_ptr(42))};
    for (int kind = 0; kind <= int(TransportError::Kind::Other); ++kind)
        texts.append(errorDescription(TransportError(TransportError::Kind(kind), u"words for a log"_s)));
    QCOMPARE(texts.removeDuplicates(), 0);
    QVERIFY(!texts.contains(u""_s));
    QCOMPARE(errorDescription(APIError::badUrl()), u"آدرس سرور نامعتبر است"_s);
}

QTEST_GUILESS_MAIN(tst_APIClient)
#include "tst_APIClient.moc"
