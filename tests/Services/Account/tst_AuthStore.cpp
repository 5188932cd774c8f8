#include "Support/Columns.h"
#include "Support/ServicesRig.h"

#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

const auto item = u"ir.navorin.NavorinRadio/session_token"_s;
const auto userAnswer = R"({"data":{"user":{"username":"u","display_name":"نام"}}})"_ba;
const auto loginAnswer = R"({"data":{"token":"new","user":{"username":"u"}}})"_ba;
const auto playlists = R"([{"id":2},{"id":1}])"_ba;
const auto favorites = R"([{"id":1,"track_id":"a#0","stream_url":"/s"},{"id":2}])"_ba;

QCoro::Task<void> note(QCoro::Task<void> work, QString &outcome)
{
    try {
        co_await work;
        outcome = u"ok"_s;
    } catch (const std::exception &error) {
        outcome = errorDescription(error);
    }
}

QCoro::Task<void> note(QCoro::Task<std::optional<bool>> work, QString &outcome)
{
    const auto result = co_await work;
    outcome = !result ? u"nothing"_s : *result ? u"favourite"_s : u"none"_s;
}

} // namespace

class tst_AuthStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_rig.emplace(); }
    void cleanup() { m_rig.reset(); }

    void startsSignedOutWithoutAToken();
    void restores();
    void forgetsATokenThatNobodyAnswersTo();
    void whoSignsInMeanwhileStays();
    void signsIn_data();
    void signsIn();
    void signsOut();
    void libraryStaysWhenALoadFails();
    void favourites();
    void favouritesAsAStation();

private:
    void startWith(const QByteArray &token)
    {
        m_rig->secrets.items.insert(item, token);
        m_rig->auth.reset();
        m_rig->auth = TestAccess::make<AuthStore>(*m_rig->client, m_rig->queue);
        m_rig->queue.drain();
    }
    void fail()
    {
        m_rig->http.take().fail();
        m_rig->settle();
    }

    std::optional<ServicesRig> m_rig;
    QString m_outcome;
};

void tst_AuthStore::startsSignedOutWithoutAToken()
{
    QVERIFY(!m_rig->auth->token() && !m_rig->auth->isAuthed() && m_rig->http.exchanges.empty());
    detach(m_rig->auth->restoreSession(), "test");
    detach(m_rig->auth->loadLibrary(), "test");
    QVERIFY(m_rig->http.exchanges.empty());
    startWith("\xff\xfe"); // no text
    QVERIFY(!m_rig->auth->token() && m_rig->http.exchanges.empty());
}

void tst_AuthStore::restores()
{
    m_rig->secrets.hangs = true;
    startWith("old");
    QVERIFY(!m_rig->auth->token()); // the keyring takes its time, and the window is up
    m_rig->secrets.wakeUp();
    m_rig->settle();
    QCOMPARE(m_rig->auth->token(), u"old"_s);
    QVERIFY(!m_rig->auth->isAuthed());
    QCOMPARE(m_rig->http.exchanges.front().request.headers.constFirst().second, "Bearer old"_ba);
    m_rig->answer(userAnswer);
    QVERIFY(m_rig->auth->isAuthed() && m_rig->auth->isLoadingLibrary());
    m_rig->answerLibrary(playlists, favorites);
    QVERIFY(!m_rig->auth->isLoadingLibrary());
    QCOMPARE(m_rig->auth->playlists().constFirst().id, 2);
    QCOMPARE(m_rig->auth->favoriteIDs(), QSet<QString>({u"a#0"_s}));
    QCOMPARE(m_rig->secrets.items.value(item), "old"_ba);
}

void tst_AuthStore::forgetsATokenThatNobodyAnswersTo()
{
    for (const auto &[status, body] : {std::pair(0, ""_ba), // no network
                                       {401, "{}"_ba},
                                       {200, "<html>"_ba},
                                       {200, R"({"data":{"token":"old"}})"_ba}}) {
        startWith("old");
        if (status == 0)
            fail();
        else
            m_rig->answer(body, status);
        QVERIFY(!m_rig->auth->token() && !m_rig->auth->user() && m_rig->secrets.items.isEmpty());
    }
}

void tst_AuthStore::whoSignsInMeanwhileStays()
{
    m_rig->secrets.hangs = true;
    startWith("old");
    m_rig->signIn(playlists, favorites);
    m_rig->secrets.wakeUp();
    m_rig->settle();
    QCOMPARE(m_rig->auth->token(), u"t"_s);
    QVERIFY(m_rig->http.exchanges.empty());
    QCOMPARE(m_rig->secrets.items.value(item), "t"_ba);

    // Asked about already, the older token takes the newer with it when nobody answers.
    startWith("old");
    auto me = m_rig->http.take();
    m_rig->signIn(playlists, favorites);
    me.fail();
    m_rig->settle();
    QVERIFY(!m_rig->auth->token() && m_rig->secrets.items.isEmpty());
}

void tst_AuthStore::signsIn_data()
{
    addColumns<QByteArray, int, QString, bool, QByteArray>("body", "status", "outcome", "authed", "stored");
    QTest::newRow("token and user") << loginAnswer << 200 << u"ok"_s << true << "new"_ba;
    QTest::newRow("token alone") << R"({"data":{"token":"new"}})"_ba << 200 << u"ok"_s << false << "new"_ba;
    QTest::newRow("user alone") << userAnswer << 200 << u"خطا در پردازش پاسخ سرور"_s << false << ""_ba;
    QTest::newRow("refused") << R"({"message":"کد نادرست است"})"_ba << 400 << u"کد نادرست است"_s << false
                             << ""_ba;
}

void tst_AuthStore::signsIn()
{
    const auto [body, status] = fetched<QByteArray, int>("body", "status");
    for (const auto bySignUp : {false, true}) {
        m_rig->secrets.items.clear();
        detach(note(bySignUp ? m_rig->auth->completeTelegramSignup(u"s"_s, u"123456"_s)
                             : m_rig->auth->login(u"u"_s, u"p"_s),
                    m_outcome),
               "test");
        m_rig->answer(body, status);
        if (m_rig->auth->token())
            fail(); // a library that does not load is nobody's failure
        QTEST(m_outcome, "outcome");
        QTEST(m_rig->auth->isAuthed(), "authed");
        QTEST(m_rig->secrets.items.value(item), "stored");
    }
}

void tst_AuthStore::signsOut()
{
    m_rig->auth->logout(); // signed out already: tells nobody
    m_rig->settle();
    QVERIFY(m_rig->http.exchanges.empty());
    m_rig->signIn(playlists, favorites);
    m_rig->auth->logout();
    QVERIFY(!m_rig->auth->user() && !m_rig->auth->token() && m_rig->auth->playlists().isEmpty());
    QVERIFY(m_rig->auth->favorites().isEmpty() && m_rig->auth->favoriteIDs().isEmpty() &&
            m_rig->secrets.items.isEmpty());
    m_rig->settle();
    auto farewell = m_rig->http.take();
    QCOMPARE(farewell.request.url.path(), u"/api/auth/logout"_s);
    QCOMPARE(farewell.request.body, "{}"_ba);
    QVERIFY(farewell.request.headers.contains(std::pair("Authorization"_ba, "Bearer t"_ba)));
    farewell.fail();
    m_rig->settle();

    m_rig->signIn(playlists, favorites);
    detach(m_rig->auth->loadLibrary(), "test");
    m_rig->auth->logout();
    m_rig->settle();
    auto load = m_rig->http.take();
    m_rig->http.take().fail(); // the farewell
    m_rig->settle();
    load.answer(R"({"data":{"playlists":[]}})");
    m_rig->settle();
    m_rig->answer("{\"data\":"_ba + favorites + '}');
    QCOMPARE(m_rig->auth->favorites().size(), 2); // a load under way still publishes what it brings
}

void tst_AuthStore::libraryStaysWhenALoadFails()
{
    m_rig->signIn(playlists, favorites);
    detach(m_rig->auth->loadLibrary(), "test");
    detach(m_rig->auth->loadLibrary(), "test"); // dropped
    QCOMPARE(m_rig->http.exchanges.size(), std::size_t(1));
    m_rig->answer(R"({"data":{"playlists":[]}})");
    m_rig->answer("{}", 500);
    QCOMPARE(m_rig->auth->playlists().size(), 2);
    QVERIFY(!m_rig->auth->isLoadingLibrary() && m_rig->http.exchanges.empty());
    detach(m_rig->auth->loadLibrary(), "test");
    m_rig->answer("{}");
    m_rig->answer("{\"data\":"_ba + favorites + '}');
    QVERIFY(m_rig->auth->playlists().isEmpty());
    QCOMPARE(m_rig->auth->favorites().size(), 2);
}

void tst_AuthStore::favourites()
{
    Station station;
    station.genre = u"a"_s;
    station.tracks = {PlaylistTrack()};
    detach(note(m_rig->auth->toggleFavorite(station), m_outcome), "test");
    QCOMPARE(m_outcome, u"nothing"_s);
    QVERIFY(m_rig->http.exchanges.empty());

    m_rig->signIn(playlists, favorites);
    detach(note(m_rig->auth->toggleFavorite(station), m_outcome), "test");
    QCOMPARE(m_rig->http.exchanges.front().request.url.path(), u"/api/favorites/toggle"_s);
    m_rig->answer(R"({"data":{"favorited":false}})"); // the library decides, not this
    m_rig->answerLibrary(playlists, favorites);
    QCOMPARE(m_outcome, u"favourite"_s);
    detach(note(m_rig->auth->toggleFavorite(station), m_outcome), "test");
    m_rig->answer("{}");
    m_rig->answer("{}");
    m_rig->answer("{}");
    QCOMPARE(m_outcome, u"none"_s);
    detach(note(m_rig->auth->toggleFavorite(station), m_outcome), "test");
    m_rig->answer("{}", 401);
    QCOMPARE(m_outcome, u"nothing"_s);
    QVERIFY(m_rig->auth->isAuthed());
}

void tst_AuthStore::favouritesAsAStation()
{
    QVERIFY(!m_rig->auth->favoritesStation());
    m_rig->signIn(playlists, favorites);
    const auto station = m_rig->auth->favoritesStation().value();
    QCOMPARE((QStringList{station.genre, *station.title, *station.serverName, *station.artist}),
             (QStringList{u"custom-favorites"_s, u"آهنگهای پسندیده"_s, u"آهنگهای پسندیده"_s, u"ali"_s}));
    QVERIFY(station.trackCount == 2 && station.trackIndex == 0);
    QCOMPARE(station.tracks->at(0).trackID, u"a#0"_s);
    QCOMPARE(station.currentStreamURL(), u"/s"_s);
    QVERIFY(!station.streamURL && !station.tracks->at(1).trackID);
}

QTEST_GUILESS_MAIN(tst_AuthStore)
#include "tst_AuthStore.moc"
