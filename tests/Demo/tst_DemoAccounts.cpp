#include "DemoProcess.h"
#include "Support/Columns.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Answer
{
    int status = 0;
    QJsonObject body;
    QJsonValue data(QLatin1StringView key) const { return body["data"_L1][key]; }
};

QByteArray track(const QString &id)
{
    QJsonObject fields{{u"track_id"_s, id}, {u"artist"_s, u"'; DROP TABLE users; --"_s}, {u"duration"_s, 0}};
    for (const QString &key : {u"track_type"_s, u"title"_s, u"stream_url"_s, u"artwork_url"_s})
        fields[key] = u"\"x'"_s;
    return QJsonDocument(fields).toJson();
}

} // namespace

class TestDemoAccounts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { start(); }

    void signUpWithTheCodeOfTheBot();
    void playlistsAndFavouritesAreKeptForTheirUser();
    void resetReplacesThePassword();
    void codesAndTokensRunOut();
    void badRequestsChangeNothing_data();
    void badRequestsChangeNothing();

private:
    void start(const QStringList &more = {})
    {
        m_backend.reset();
        m_backend = std::make_unique<DemoProcess>(
            QStringList{u"--database"_s, m_folder.filePath(u"accounts"_s)} + more);
        QVERIFY(m_backend->port() > 0);
    }

    Answer call(const QByteArray &verb, const QString &path, const QByteArray &body,
                const QString &token = {})
    {
        DemoProcess::Headers headers;
        if (!token.isEmpty())
            headers.append({"Authorization", "Bearer " + token.toUtf8()});
        const DemoProcess::Reply reply = m_backend->fetch(u"/api/"_s + path, verb, headers, body);
        return {reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
                QJsonDocument::fromJson(reply->readAll()).object()};
    }
    Answer post(const QString &path, const QByteArray &body, const QString &token = {})
    {
        return call("POST", path, body, token);
    }
    Answer post(const QString &path, const QJsonObject &body)
    {
        return post(path, QJsonDocument(body).toJson());
    }
    Answer get(const QString &path, const QString &token) { return call("GET", path, {}, token); }
    Answer login(const QString &name, const QString &password)
    {
        return post(u"auth/login"_s, {{u"username"_s, name}, {u"password"_s, password}});
    }
    Answer startSignup(const QString &name)
    {
        const QString display = u"<b>%1 سارا"_s;
        return post(u"auth/telegram/init-signup"_s,
                    {{u"username"_s, name}, {u"password"_s, u"رمز۱۲"_s}, {u"display_name"_s, display}});
    }
    /// Of a new account.
    QString tokenFor(const QString &name)
    {
        const QString session = startSignup(name).data("session_id"_L1).toString();
        return redeem(session, codeFor(session)).data("token"_L1).toString();
    }
    Answer redeem(const QString &session, const QString &code)
    {
        return post(u"auth/telegram/verify-signup-otp"_s,
                    {{u"session_id"_s, session}, {u"otp_code"_s, code}});
    }
    QString codeFor(const QString &session)
    {
        static const QRegularExpression code(u"data-code=\"(\\d{6})\""_s);
        const QByteArray page = m_backend->fetch(u"/bot?start="_s + session)->readAll();
        return code.match(QString::fromUtf8(page)).captured(1);
    }

    QTemporaryDir m_folder;
    std::unique_ptr<DemoProcess> m_backend;
};

void TestDemoAccounts::signUpWithTheCodeOfTheBot()
{
    const QJsonObject session = startSignup(u" Sara"_s).body["data"_L1].toObject();
    const QString id = session["session_id"_L1].toString();
    QCOMPARE(session["bot_link"_L1], m_backend->url(u"/bot?start="_s + id).toString());
    QCOMPARE(session["expires_in"_L1], 300);
    const QByteArray page = m_backend->fetch(u"/bot?start="_s + id)->readAll();
    QVERIFY(page.contains("&lt;b&gt;%1 سارا") && page.contains(">sara<"));
    QCOMPARE(startSignup(u"sara"_s).status, 200); // a name is taken only once it is verified

    const QString code = codeFor(id);
    const Answer wrong = redeem(id, QString::number((code.toInt() + 1) % 1'000'000));
    QVERIFY(wrong.status == 400 && wrong.body["message"_L1].toString().contains(u"کد"_s));
    QString persian;
    for (const QChar digit : code)
        persian += QChar(u'۰' + digit.digitValue());
    const Answer done = redeem(id, persian);
    const QJsonValue user = done.data("user"_L1);
    QCOMPARE(user["display_name"_L1], u"<b>%1 سارا"_s);
    QCOMPARE(redeem(id, code).status, 404);
    QCOMPARE(startSignup(u"SARA"_s).status, 409);

    const Answer second = login(u"@"_s + user["telegram_username"_L1].toString(), u"رمز۱۲"_s);
    const QString first = done.data("token"_L1).toString();
    QCOMPARE(login(u"Sara"_s, u"رمز۱۳"_s).status, 401);
    QCOMPARE(post(u"auth/logout"_s, "{}", first).status, 200);
    QCOMPARE(get(u"auth/me"_s, first).status, 401);
    start();
    QCOMPARE(get(u"auth/me"_s, second.data("token"_L1).toString()).data("user"_L1), user);
}

void TestDemoAccounts::playlistsAndFavouritesAreKeptForTheirUser()
{
    const QString token = tokenFor(u"list"_s);
    for (const auto &[id, favorited] :
         {std::pair{u"7"_s, true}, {u"kavir#3"_s, true}, {u"7"_s, false}, {u"7"_s, true}})
        QCOMPARE(post(u"favorites/toggle"_s, track(id), token).data("favorited"_L1), favorited);
    const Answer made = post(u"playlists"_s, R"({"title": "Robert'); --", "description": ""})"_ba, token);
    const QString path = u"playlists/"_s + made.data("id"_L1).toVariant().toString();
    for (const QString &id : {u"a#/1"_s, u"b"_s, u"c"_s})
        QCOMPARE(post(path + u"/tracks"_s, track(id), token).status, 200);
    QCOMPARE(post(path + u"/tracks"_s, track(u"b"_s), token).status, 409);

    const QJsonArray tracks = get(path, token).data("tracks"_L1).toArray();
    const QString row = path + u"/tracks/"_s + tracks[1]["id"_L1].toVariant().toString();
    QCOMPARE(post(path + u"/tracks"_s, track(row.section(u'/', -1)), token).status, 200);
    QCOMPARE(call("DELETE", row, {}, token).status, 200);
    QCOMPARE(call("DELETE", path + u"/tracks/a%23/1"_s, {}, token).status, 200);
    const QByteArray words = R"({"title": "نو", "artist": "ما", "description": "د"})";
    QCOMPARE(call("PUT", path + u"/tracks/c"_s, words, token).status, 200);
    QCOMPARE(call("PUT", path, words, token).status, 200);

    const QString other = tokenFor(u"other"_s);
    QCOMPARE(call("DELETE", path, {}, other).status, 404);
    QCOMPARE(get(path, other).status, 404);
    QCOMPARE(get(path, {}).status, 401);
    QCOMPARE(post(u"spotify/import"_s, R"({"url": "spotify:playlist:x", "title": "t"})"_ba).status, 401);
    start();
    const Answer detail = get(path, token);
    QCOMPARE(detail.data("title"_L1), u"نو"_s);
    const QJsonArray left = detail.data("tracks"_L1).toArray();
    QCOMPARE(left.size(), 2);
    QCOMPARE(left[0]["title"_L1], u"نو"_s);
    QCOMPARE(left[1]["artist"_L1], u"'; DROP TABLE users; --"_s);
    QCOMPARE(get(u"playlists"_s, token).data("favorites_count"_L1), 2);
    QCOMPARE(get(u"playlists"_s, token).data("playlists"_L1)[0]["track_count"_L1], 2);
    const QJsonArray favorites = get(u"favorites"_s, token).body["data"_L1].toArray();
    QCOMPARE(favorites[0]["track_id"_L1], u"7"_s); // a text, and the newest first
    QVERIFY(favorites[0]["id"_L1].isDouble() && favorites[0]["duration"_L1].isNull());
    QCOMPARE(call("DELETE", path, {}, token).status, 200);
    QCOMPARE(get(path, token).status, 404);
}

void TestDemoAccounts::resetReplacesThePassword()
{
    const QString token = tokenFor(u"reset"_s);
    const QJsonObject session =
        post(u"auth/telegram/forgot-password"_s, {{u"identifier"_s, u" @Reset_TG "_s}}).body;
    QCOMPARE(session["telegram_username"_L1], u"reset_tg"_s);
    const QString id = session["session_id"_L1].toString();
    QJsonObject body{{u"session_id"_s, id}, {u"otp_code"_s, codeFor(id)}, {u"new_password"_s, u"abc"_s}};
    QCOMPARE(redeem(id, codeFor(id)).status, 404); // a reset signs nobody up
    QCOMPARE(post(u"auth/telegram/reset-password"_s, body).status, 400);
    body["new_password"_L1] = u"abcd"_s;
    QCOMPARE(post(u"auth/telegram/reset-password"_s, body).status, 200);
    QCOMPARE(get(u"auth/me"_s, token).status, 401);
    QCOMPARE(login(u"reset"_s, u"رمز۱۲"_s).status, 401);
    QCOMPARE(login(u"reset"_s, u"abcd"_s).status, 200);
}

void TestDemoAccounts::codesAndTokensRunOut()
{
    const QString guessed = startSignup(u"guess"_s).data("session_id"_L1).toString();
    const QString code = codeFor(guessed);
    for (const int status : {400, 400, 400, 400, 400, 429})
        QCOMPARE(redeem(guessed, status == 429 ? code : u"x"_s).status, status);
    QVERIFY(codeFor(guessed).isEmpty());

    tokenFor(u"late"_s);
    start({u"--token-seconds"_s, u"0"_s, u"--code-seconds"_s, u"0"_s});
    const Answer late = login(u"late"_s, u"رمز۱۲"_s);
    QCOMPARE(late.status, 200);
    QCOMPARE(get(u"favorites"_s, late.data("token"_L1).toString()).status, 401);
    const QString session = startSignup(u"later"_s).data("session_id"_L1).toString();
    QCOMPARE(redeem(session, u"000000"_s).status, 404);
    QCOMPARE(m_backend->fetch(u"/bot?start="_s + session)->error(), QNetworkReply::ContentNotFoundError);
}

void TestDemoAccounts::badRequestsChangeNothing_data()
{
    addColumns<QString, QByteArray>("path", "body");
    const auto signup = u"auth/telegram/init-signup"_s;
    QTest::newRow("no JSON") << u"auth/login"_s << "{\"username\": \"\xff"_ba;
    QTest::newRow("a list") << u"auth/login"_s << QByteArray("[").repeated(60'000);
    QTest::newRow("too large") << u"auth/login"_s << "{\"a\":\"" + QByteArray(200'000, 'a') + "\"}";
    QTest::newRow("number for a text") << u"auth/login"_s << R"({"username": 1, "password": "abcd"})"_ba;
    QTest::newRow("short password") << signup << R"({"username": "fine", "password": "abc"})"_ba;
    QTest::newRow("quoted name") << signup << "{\"username\": \"a'b\", \"password\": \"abcd\"}"_ba;
    QTest::newRow("NUL") << signup << R"({"username": "fine", "password": "abcd\u0000"})"_ba;
    QTest::newRow("blank title") << u"playlists"_s << R"({"title": " \u200a", "description": ""})"_ba;
    QTest::newRow("long title") << u"playlists"_s << "{\"title\":\"" + QByteArray(201, 'a') + "\"}";
    QTest::newRow("no such link") << u"spotify/import"_s << R"({"url": "x", "title": "t"})"_ba;
    for (const char *duration : {"-1", "1.5", "1e30", "18446744073709551615", "\"3\""})
        QTest::newRow(duration) << u"favorites/toggle"_s
                                << R"({"track_type": "a", "track_id": "b", "title": "c", "duration": )" +
                                       QByteArray(duration) + "}";
}

// the demo user's library, made at the first start, stays as it is through all of them
void TestDemoAccounts::badRequestsChangeNothing()
{
    const auto [path, body] = fetched<QString, QByteArray>("path", "body");
    start({u"--demo-user"_s, u"demo:abcd"_s});
    const QString token = login(u"demo"_s, u"abcd"_s).data("token"_L1).toString();
    const Answer answer = post(path, body, token);
    QVERIFY(answer.status == 400 && !answer.body["message"_L1].toString().isEmpty());
    const Answer library = get(u"playlists"_s, token);
    QCOMPARE(library.data("playlists"_L1).toArray().size(), 2);
    QCOMPARE(library.data("playlists"_L1)[1]["track_count"_L1], 5);
    QCOMPARE(library.data("favorites_count"_L1), 3);
}

QTEST_GUILESS_MAIN(TestDemoAccounts)
#include "tst_DemoAccounts.moc"
