#include "Platform/Http/QtHttpSession.h"
#include "Services/Backend/APIClient.h"
#include "Services/Backend/CallBodies.h"
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

const auto token = u"t"_s;
const auto undecodable = u"خطا در پردازش پاسخ سرور"_s;
const auto notForReading = u"*"_s; // the text of a body that is no such record

QString shown(const AuthData &data)
{
    return data.token.value_or(u"-"_s) + u'/' + (data.user ? data.user->username.value_or(u"?"_s) : u"-"_s);
}
QString shown(const AuthSessionInfo &session)
{
    return session.sessionID + u'/' + session.botUsername.value_or(u"-"_s) + u'/' +
           QString::number(session.expiresIn);
}
QString shown(const std::optional<QString> &text)
{
    return text.value_or(u"-"_s);
}
QString shown(const std::optional<User> &user)
{
    return user ? user->username.value_or(u"?"_s) : u"-"_s;
}
QString shown(const Library &library)
{
    return QString::number(library.playlists.size()) + u'+' + QString::number(library.favorites.size());
}
QString shown(const QList<Station> &stations)
{
    return QString::number(stations.size());
}
QString shown(const PlaylistDetail &playlist)
{
    return playlist.title.value_or(u"-"_s);
}
QString shown(const PlaylistSummary &playlist)
{
    return QString::number(playlist.id);
}
QString shown(const SpotifyEntity &entity)
{
    return entity.id.value_or(u"-"_s);
}
QString shown(const ShazamData &song)
{
    return song.title.value_or(u"-"_s);
}
QString shown(const QUrl &address)
{
    return address.toString();
}

/// What a call came to: its result, or what a person is told, with the code of what the server itself said.
template <typename T>
QString outcomeOf(QFuture<T> call)
{
    try {
        call.waitForFinished();
        if constexpr (std::is_void_v<T>)
            return u"done"_s;
        else
            return shown(call.result());
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
    Station station;
    station.genre = u"pop"_s;
    station.title = u"گروه - \"شب\""_s;
    station.streamURL = u"/stream/pop"_s;
    return station;
}

template <typename Body>
QString body(const Body &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

const QList<Operation> operations{
    {"soundcloudSearch",
     [](const APIClient &client) { return outcomeOf(client.soundcloudSearch(u"گل & \"a\"+b#=c"_s)); },
     u"GET /api/soundcloud/search?q=%DA%AF%D9%84%20%26%20%22a%22%2Bb%23%3Dc|-|-|"_s,
     {{200, R"({"data":[{"genre":"x"}]})"}, {200, "{}"}, {404, R"({"message":"نه"})"}},
     {u"1"_s, u"0"_s, u"خطای سرور (404)"_s}},
    {"login",
     [](const APIClient &client) { return outcomeOf(client.login(u"نام\"'"_s, u"ر&+#"_s)); },
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
     [](const APIClient &client) { return outcomeOf(client.initTelegramSignup(u"u"_s, u"p"_s, u"ن"_s)); },
     u"POST /api/auth/telegram/init-signup|-|application/json|"
     "{\"display_name\":\"ن\",\"password\":\"p\",\"username\":\"u\"}"_s,
     {{200, R"({"session_id":"s","data":{"session_id":"no","expires_in":90,"bot_username":"B"}})"},
      {200, R"({"session_id":"","data":{"session_id":"s"}})"},
      {200, R"({"code":9,"message":"پر است","data":null})"},
      {200, R"({"session_id":7})"}},
     {u"s/B/90"_s, u"-1: خطا در شروع ثبتنام"_s, u"9: پر است"_s, notForReading}},
    {"verifySignupOTP",
     [](const APIClient &client) { return outcomeOf(client.verifySignupOTP(u"s"_s, u"۱۲۳۴۵۶"_s)); },
     u"POST /api/auth/telegram/verify-signup-otp|-|application/json|"
     "{\"otp_code\":\"۱۲۳۴۵۶\",\"session_id\":\"s\"}"_s,
     {{200, R"({"data":{"token":"k"}})"}, {200, "{}"}, {200, R"({"message":"دیر شد"})"}},
     {u"k/-"_s, u"-1: کد تایید نامعتبر است"_s, u"-1: دیر شد"_s}},
    {"forgotPassword",
     [](const APIClient &client) { return outcomeOf(client.forgotPassword(u"@U"_s)); },
     u"POST /api/auth/telegram/forgot-password|-|application/json|{\"identifier\":\"@U\"}"_s,
     {{200, R"({"data":{"session_id":"s"}})"}, {200, R"({"data":{}})"}},
     {u"s/-/300"_s, u"-1: خطا در ارسال کد بازیابی"_s}},
    {"resetPassword",
     [](const APIClient &client) { return outcomeOf(client.resetPassword(u"s"_s, u"1"_s, u"n"_s)); },
     u"POST /api/auth/telegram/reset-password|-|application/json|"
     "{\"new_password\":\"n\",\"otp_code\":\"1\",\"session_id\":\"s\"}"_s,
     {{200, R"({"message":"شد"})"}, {200, "{}"}, {400, R"({"message":"کد نادرست"})"}},
     {u"شد"_s, u"-"_s, u"400: کد نادرست"_s}},
    {"me",
     [](const APIClient &client) { return outcomeOf(client.me(token)); },
     u"GET /api/auth/me|Bearer t|-|"_s,
     {{200, R"({"data":{"user":{"username":"u"}}})"}, {200, "{}"}, {401, "{}"}, {200, "<html>"}},
     {u"u"_s, u"-"_s, u"-"_s, u"-"_s}},
    {"loadLibrary",
     [](const APIClient &client) { return outcomeOf(client.loadLibrary(token)); },
     u"GET /api/playlists|Bearer t|-| GET /api/favorites|Bearer t|-|"_s,
     {{200, R"({"data":{"playlists":[{"id":1}]}})"}, {200, R"({"data":[{"id":1},{"id":2}]})"}},
     {u"1+2"_s}},
    {"loadLibrary without data",
     [](const APIClient &client) { return outcomeOf(client.loadLibrary(token)); },
     u"GET /api/playlists|Bearer t|-| GET /api/favorites|Bearer t|-|"_s,
     {{200, "{}"}, {200, R"({"data":null})"}},
     {u"0+0"_s}},
    {"loadLibrary of a bad favourite",
     [](const APIClient &client) { return outcomeOf(client.loadLibrary(token)); },
     u"GET /api/playlists|Bearer t|-| GET /api/favorites|Bearer t|-|"_s,
     {{200, "{}"}, {200, R"({"data":[{"id":"1"}]})"}},
     {notForReading}},
    {"loadLibrary refused",
     [](const APIClient &client) { return outcomeOf(client.loadLibrary(token)); },
     u"GET /api/playlists|Bearer t|-|"_s,
     {{401, R"({"message":"نه"})"}},
     {u"خطای سرور (401)"_s}},
    {"playlistDetail",
     [](const APIClient &client) { return outcomeOf(client.playlistDetail(7, {})); },
     u"GET /api/playlists/7|-|-|"_s,
     {{200, R"({"data":{"title":"ف","tracks":[{"id":"3"}]}})"}, {200, "{}"}},
     {u"ف"_s, undecodable}},
    {"createPlaylist",
     [](const APIClient &client) { return outcomeOf(client.createPlaylist(u"ف"_s, token)); },
     u"POST /api/playlists|Bearer t|application/json|{\"description\":\"\",\"title\":\"ف\"}"_s,
     {{201, R"({"data":{"id":5}})"}, {200, "{}"}, {200, R"({"data":{}})"}},
     {u"5"_s, undecodable, notForReading}},
    {"deletePlaylist",
     [](const APIClient &client) { return outcomeOf(client.deletePlaylist(-5, token)); },
     u"DELETE /api/playlists/-5|Bearer t|-|"_s,
     {{200, "{}"}, {404, R"({"message":"نیست"})"}, {204, ""}},
     {u"done"_s, u"404: نیست"_s, notForReading}},
    {"addTrackToPlaylist",
     [](const APIClient &client) { return outcomeOf(client.addTrackToPlaylist(5, station(), token)); },
     u"POST /api/playlists/5/tracks|Bearer t|application/json|"_s + body(playlistTrackBody(station())),
     {{200, "{}"}, {500, ""}},
     {u"done"_s, u"خطای سرور (500)"_s}},
    {"deletePlaylistTrack",
     [](const APIClient &client) { return outcomeOf(client.deletePlaylistTrack(5, u"6"_s, token)); },
     u"DELETE /api/playlists/5/tracks/6|Bearer t|-|"_s,
     {{200, "{}"}},
     {u"done"_s}},
    {"spotifyResolve",
     [](const APIClient &client) {
         return outcomeOf(client.spotifyResolve(u"https://s.example/a?b=c&d#e"_s));
     },
     u"GET /api/spotify/resolve?url=https%3A%2F%2Fs.example%2Fa%3Fb%3Dc%26d%23e|-|-|"_s,
     {{200, R"({"data":{"id":"e"}})"}, {200, "{}"}},
     {u"e"_s, undecodable}},
    {"recognize",
     [](const APIClient &client) { return outcomeOf(client.recognize("sound"_ba)); },
     u"POST /api/shazam|-|audio/mp4|sound"_s,
     {{200, R"({"data":{"title":"ش"}})"},
      {200, "{}"},
      {404, R"({"message":"نبود"})"},
      {404, R"({"data":1})"}},
     {u"ش"_s, undecodable, u"404: نبود"_s, u"خطای سرور (404)"_s}},
    {"telegramDownloadToken",
     [](const APIClient &client) { return outcomeOf(client.telegramDownloadToken(station())); },
     u"POST /api/telegram/download-token|-|application/json|"_s + body(downloadTokenBody(station())),
     {{200, R"({"data":{"bot_url":"https://bot.example/?start=x"}})"},
      {200, R"({"data":{}})"},
      {200, R"({"data":{"bot_url":""}})"},
      {200, R"({"data":{"bot_url":"http://[bad"}})"}},
     {u"https://bot.example/?start=x"_s, undecodable, undecodable, undecodable}},
};

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
        outcomes.append(operation.call(*TestAccess::client(server.url(), session)));
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
    const auto client = TestAccess::client(QUrl(u"https://a.example"_s), session);
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
    QCOMPARE(playlistTrackBody(live), (QJsonObject{{u"track_type"_s, u"radio"_s},
                                                   {u"track_id"_s, u"pop#\"شب\""_s},
                                                   {u"title"_s, u"\"شب\""_s},
                                                   {u"artist"_s, u"گروه"_s},
                                                   {u"stream_url"_s, u"/stream/pop"_s},
                                                   {u"artwork_url"_s, u""_s},
                                                   {u"duration"_s, 0}}));
    live.streamURL.reset();
    QCOMPARE(downloadTokenBody(live), (QJsonObject{{u"track_type"_s, u"radio"_s},
                                                   {u"track_id"_s, u"pop"_s},
                                                   {u"title"_s, u"\"شب\""_s},
                                                   {u"artist"_s, u"گروه"_s},
                                                   {u"stream_url"_s, u"/stream/pop"_s},
                                                   {u"artwork_url"_s, u"/artwork/pop.jpg"_s},
                                                   {u"seconds"_s, 180}}));

    auto list = station();
    list.source = u"custom"_s;
    list.artworkURL = u"/station.jpg"_s;
    PlaylistTrack track;
    track.trackType = u"soundcloud"_s;
    track.trackID = u"9"_s;
    track.title = u""_s; // present, and therefore sent
    track.streamURL = u"/s/9"_s;
    track.artworkURL = u"/9.jpg"_s;
    track.duration = 215;
    list.tracks = {track};
    QCOMPARE(playlistTrackBody(list), (QJsonObject{{u"track_type"_s, u"soundcloud"_s},
                                                   {u"track_id"_s, u"9"_s},
                                                   {u"title"_s, u""_s},
                                                   {u"artist"_s, u"گروه"_s},
                                                   {u"stream_url"_s, u"/s/9"_s},
                                                   {u"artwork_url"_s, u"/9.jpg"_s},
                                                   {u"duration"_s, 215}}));
    QCOMPARE(favoriteBody(list), (QJsonObject{{u"track_type"_s, u"custom"_s},
                                              {u"track_id"_s, u"pop#0"_s},
                                              {u"title"_s, u"\"شب\""_s},
                                              {u"artist"_s, u"گروه"_s},
                                              {u"stream_url"_s, u"/s/9"_s},
                                              {u"artwork_url"_s, u"/station.jpg"_s},
                                              {u"duration"_s, 0}}));
    QCOMPARE(downloadTokenBody(list).value(u"seconds"_s).toInt(), 215);
}

QTEST_GUILESS_MAIN(tst_APICalls)
#include "tst_APICalls.moc"
