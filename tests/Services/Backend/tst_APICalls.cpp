#include "Platform/Http/QtHttpSession.h"
#include "Services/Backend/APIClient.h"
#include "Services/Backend/CallBodies.h"
#include "Support/FakeHttpSession.h"
#include "Support/ScriptedHttpServer.h"
#include "Support/TestAccess.h"

#include <QJsonDocument>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

const auto token = u"t"_s;
const auto undecodable = u"خطا در پردازش پاسخ سرور"_s;
const auto notForReading = u"*"_s; // the text of a body that is no such record

const auto none = u"-"_s;

/// The one thing of a result that tells it from others.
struct Shown
{
    static QString of(const std::optional<QString> &text) { return text.value_or(none); }
    static QString of(const std::optional<User> &user) { return user ? of(user->username) : none; }
    static QString of(const AuthData &data) { return of(data.token) + u'/' + of(data.user); }
    static QString of(const AuthSessionInfo &session)
    {
        return session.sessionID + u'/' + of(session.botUsername) + u'/' + QString::number(session.expiresIn);
    }
    static QString of(const Library &library)
    {
        return QString::number(library.playlists.size()) + u'+' + QString::number(library.favorites.size());
    }
    static QString of(const PlaylistSummary &playlist) { return QString::number(playlist.id); }
    static QString of(const ShazamData &song) { return of(song.title); }
    static QString of(const QUrl &address) { return address.toString(); }
};

/// What a call came to: its result, or what a person is told, with the code of what the server itself said.
template <typename T>
QString outcomeOf(QFuture<T> call)
{
    try {
        call.waitForFinished();
        if constexpr (std::is_void_v<T>)
            return u"done"_s;
        else
            return Shown::of(call.result());
    } catch (const ServerError &error) {
        return QString(QString::number(error.code()) + u": "_s + errorDescription(error));
    } catch (const DecodingError &) {
        return notForReading;
    } catch (...) {
        return errorDescription(std::current_exception());
    }
}

using Call = QString (*)(const APIClient &);

struct Operation
{
    const char *name;
    Call call;
    QString request; ///< verb, target, authorisation, kind of content, body
    QList<std::pair<int, QByteArray>> answers;
    QStringList outcomes;
};

Station station()
{
    return {.genre = u"pop"_s, .title = u"گروه - \"شب\""_s, .streamURL = u"/stream/pop"_s};
}

template <typename Body>
QString body(const Body &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

#define CALL(call) [](const APIClient &client) { return outcomeOf(client.call); }

const QList<Operation> operations{
    {"login",
     CALL(login(u"نام\"'"_s, u"ر&+#"_s)),
     u"POST /api/auth/login|-|application/json|"_s +
         body(QJsonObject{{u"username"_s, u"نام\"'"_s}, {u"password"_s, u"ر&+#"_s}}),
     {{200, R"({"data":{"token":"k","user":{"id":1,"username":"u"}}})"},
      {200, R"({"data":{}})"},
      {200, R"({"data":null})"},
      {200, R"({"data":[]})"},
      {200, R"({"data":{"user":{"id":"1"}}})"},
      {401, R"({"message":"نام یا رمز نادرست است"})"}},
     {u"k/u"_s, u"-/-"_s, undecodable, notForReading, notForReading, u"401: نام یا رمز نادرست است"_s}},
    {"initTelegramSignup",
     CALL(initTelegramSignup(u"u"_s, u"p"_s, u"ن"_s)),
     u"POST /api/auth/telegram/init-signup|-|application/json|"
     "{\"display_name\":\"ن\",\"password\":\"p\",\"username\":\"u\"}"_s,
     {{200, R"({"session_id":"s","data":{"session_id":"no","expires_in":90,"bot_username":"B"}})"},
      {200, R"({"session_id":"","data":{"session_id":"s"}})"},
      {200, R"({"code":9,"message":"پر است","data":null})"},
      {200, R"({"session_id":7})"}},
     {u"s/B/90"_s, u"-1: خطا در شروع ثبتنام"_s, u"9: پر است"_s, notForReading}},
    {"verifySignupOTP",
     CALL(verifySignupOTP(u"s"_s, u"۱۲۳۴۵۶"_s)),
     u"POST /api/auth/telegram/verify-signup-otp|-|application/json|"
     "{\"otp_code\":\"۱۲۳۴۵۶\",\"session_id\":\"s\"}"_s,
     {{200, R"({"data":{"token":"k"}})"}, {200, "{}"}, {200, R"({"message":"دیر شد"})"}},
     {u"k/-"_s, u"-1: کد تایید نامعتبر است"_s, u"-1: دیر شد"_s}},
    {"forgotPassword",
     CALL(forgotPassword(u"@U"_s)),
     u"POST /api/auth/telegram/forgot-password|-|application/json|{\"identifier\":\"@U\"}"_s,
     {{200, R"({"data":{"session_id":"s"}})"}, {200, R"({"data":{}})"}},
     {u"s/-/300"_s, u"-1: خطا در ارسال کد بازیابی"_s}},
    {"resetPassword",
     CALL(resetPassword(u"s"_s, u"1"_s, u"n"_s)),
     u"POST /api/auth/telegram/reset-password|-|application/json|"
     "{\"new_password\":\"n\",\"otp_code\":\"1\",\"session_id\":\"s\"}"_s,
     {{200, R"({"message":"شد"})"}, {200, "{}"}, {400, R"({"message":"کد نادرست"})"}},
     {u"شد"_s, u"-"_s, u"400: کد نادرست"_s}},
    {"me",
     CALL(me(token)),
     u"GET /api/auth/me|Bearer t|-|"_s,
     {{200, R"({"data":{"user":{"username":"u"}}})"}, {200, "{}"}, {401, "{}"}, {200, "<html>"}},
     {u"u"_s, u"-"_s, u"-"_s, u"-"_s}},
    {"loadLibrary",
     CALL(loadLibrary(token)),
     u"GET /api/playlists|Bearer t|-| GET /api/favorites|Bearer t|-|"_s,
     {{200, R"({"data":{"playlists":[{"id":1}]}})"},
      {200, R"({"data":[{"id":1},{"id":2}]})"},
      {200, "{}"},
      {200, R"({"data":null})"},
      {200, "{}"},
      {200, R"({"data":[{"id":"1"}]})"}},
     {u"1+2"_s, u"0+0"_s, notForReading}},
    {"loadLibrary refused",
     CALL(loadLibrary(token)),
     u"GET /api/playlists|Bearer t|-|"_s,
     {{401, R"({"message":"نه"})"}},
     {u"خطای سرور (401)"_s}},
    {"createPlaylist",
     CALL(createPlaylist(u"ف"_s, token)),
     u"POST /api/playlists|Bearer t|application/json|{\"description\":\"\",\"title\":\"ف\"}"_s,
     {{201, R"({"data":{"id":5}})"}, {200, "{}"}, {200, R"({"data":{}})"}},
     {u"5"_s, undecodable, notForReading}},
    {"deletePlaylist",
     CALL(deletePlaylist(-5, token)),
     u"DELETE /api/playlists/-5|Bearer t|-|"_s,
     {{200, "{}"}, {404, R"({"message":"نیست"})"}, {204, ""}},
     {u"done"_s, u"404: نیست"_s, notForReading}},
    {"addTrackToPlaylist",
     CALL(addTrackToPlaylist(5, station(), token)),
     u"POST /api/playlists/5/tracks|Bearer t|application/json|"_s + body(playlistTrackBody(station())),
     {{200, "{}"}, {500, ""}},
     {u"done"_s, u"خطای سرور (500)"_s}},
    {"recognize",
     CALL(recognize("sound"_ba)),
     u"POST /api/shazam|-|audio/mp4|sound"_s,
     {{200, R"({"data":{"title":"ش"}})"},
      {200, "{}"},
      {404, R"({"message":"نبود"})"},
      {404, R"({"data":1})"}},
     {u"ش"_s, undecodable, u"404: نبود"_s, u"خطای سرور (404)"_s}},
    {"telegramDownloadToken",
     CALL(telegramDownloadToken(station())),
     u"POST /api/telegram/download-token|-|application/json|"_s + body(downloadTokenBody(station())),
     {{200, R"({"data":{"bot_url":"https://bot.example/?start=x"}})"},
      {200, R"({"data":{}})"},
      {200, R"({"data":{"bot_url":""}})"},
      {200, R"({"data":{"bot_url":"http://[bad"}})"}},
     {u"https://bot.example/?start=x"_s, undecodable, undecodable, undecodable}},
};

#undef CALL

} // namespace

/// Each call as the server sees it, and what becomes of the server's answers.
class tst_APICalls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onTheWire_data();
    void onTheWire();
    void timeouts();
    void bodies();
};

void tst_APICalls::onTheWire_data()
{
    QTest::addColumn<qsizetype>("index");
    for (qsizetype i = 0; i < operations.size(); ++i)
        QTest::newRow(operations[i].name) << i;
}

void tst_APICalls::onTheWire()
{
    QFETCH(qsizetype, index);
    const auto &operation = operations[index];
    const auto calls = operation.request.split(u"| "_s).size(); // of one operation
    QtHttpSession session;
    QStringList outcomes;
    for (qsizetype at = 0; at + calls <= operation.answers.size(); at += calls) {
        ScriptedHttpServer server;
        for (qsizetype i = 0; i < calls; ++i) {
            const auto target = operation.request.split(u"| "_s)[i].section(u'|', 0, 0).section(u' ', 1);
            const auto &[status, text] = operation.answers[at + i];
            server.script(target.toLatin1(), {status, text});
        }
        outcomes.append(operation.call(*TestAccess::make<APIClient>(server.url(), session)));
        QStringList seen;
        for (const auto &request : server.requests())
            seen.append(QString::fromUtf8(
                request.line + '|' + request.headers.value("authorization"_ba, "-"_ba) + '|' +
                request.headers.value("content-type"_ba, "-"_ba) + '|' + request.body));
        QCOMPARE(seen.join(u' '), operation.request);
    }
    QCOMPARE(outcomes, operation.outcomes);
}

void tst_APICalls::timeouts()
{
    FakeHttpSession session;
    const auto client = TestAccess::make<APIClient>(QUrl(u"https://a.example"_s), session);
    const QList<QFuture<void>> calls{QFuture<void>(client->recognize({})), QFuture<void>(client->me(token))};
    QCOMPARE(session.exchanges[0].request.timeout, std::chrono::seconds(25));
    QCOMPARE(session.exchanges[1].request.timeout, std::chrono::seconds(60));
    session.take().fail(TransportError::Kind::TimedOut);
    session.take().fail();
    for (auto call : calls) {
        try {
            call.waitForFinished();
        } catch (const TransportError &error) {
            QCOMPARE(error.kind(), TransportError::Kind::TimedOut);
        }
    }
}

void tst_APICalls::bodies()
{
    auto live = station();
    QCOMPARE(body(playlistTrackBody(live)),
             uR"({"artist":"گروه","artwork_url":"","duration":0,"stream_url":"/stream/pop",)"
             uR"("title":"\"شب\"","track_id":"pop#\"شب\"","track_type":"radio"})"_s);
    live.streamURL.reset();
    QCOMPARE(body(downloadTokenBody(live)),
             uR"({"artist":"گروه","artwork_url":"/artwork/pop.jpg","seconds":180,"stream_url":"/stream/pop",)"
             uR"("title":"\"شب\"","track_id":"pop","track_type":"radio"})"_s);

    auto list = station();
    list.source = u"custom"_s;
    list.artworkURL = u"/station.jpg"_s;
    list.tracks = {PlaylistTrack{.trackType = u"soundcloud"_s,
                                 .trackID = u"9"_s,
                                 .title = u""_s, // present, and therefore sent
                                 .artworkURL = u"/9.jpg"_s,
                                 .streamURL = u"/s/9"_s,
                                 .duration = 215}};
    QCOMPARE(body(playlistTrackBody(list)),
             uR"({"artist":"گروه","artwork_url":"/9.jpg","duration":215,"stream_url":"/s/9",)"
             uR"("title":"","track_id":"9","track_type":"soundcloud"})"_s);
    QCOMPARE(body(favoriteBody(list)),
             uR"({"artist":"گروه","artwork_url":"/station.jpg","duration":0,"stream_url":"/s/9",)"
             uR"("title":"\"شب\"","track_id":"pop#0","track_type":"custom"})"_s);
    QCOMPARE(downloadTokenBody(list).value(u"seconds"_s).toInt(), 215);
}

QTEST_GUILESS_MAIN(tst_APICalls)
#include "tst_APICalls.moc"
