#include "Platform/Tasks/Detached.h"
#include "Services/Account/AuthStore.h"
#include "Services/Account/Keychain.h"
#include "Services/Backend/APIClient.h"
#include "Support/FakeHttpSession.h"
#include "Support/FakeSecureItemStore.h"
#include "Support/ManualMainQueue.h"

#include <QTest>
#include <QThreadPool>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace navorin {
struct TestAccess
{
    static void installKeychain(SecureItemStore &store)
    {
        Keychain::instance().reset();
        Keychain::instance().setMaker([&store] { return std::unique_ptr<Keychain>(new Keychain(store)); });
    }
    static void removeKeychain() { Keychain::instance().reset(); }
    static std::unique_ptr<APIClient> client(const QUrl &base, HttpSession &session)
    {
        return std::unique_ptr<APIClient>(new APIClient(base, session));
    }
    static std::unique_ptr<AuthStore> store(APIClient &client, MainQueue &queue)
    {
        return std::unique_ptr<AuthStore>(new AuthStore(client, queue));
    }
};
} // namespace navorin

namespace {

const auto item = u"ir.navorin.NavorinRadio/session_token"_s;
const auto userAnswer = R"({"data":{"user":{"username":"u","display_name":"نام"}}})"_ba;
const auto loginAnswer = R"({"data":{"token":"new","user":{"username":"u"}}})"_ba;
const auto playlistsAnswer = R"({"data":{"playlists":[{"id":2},{"id":1}]}})"_ba;
const auto favoritesAnswer = R"({"data":[{"id":1,"track_id":"a#0","stream_url":"/s"},{"id":2}]})"_ba;

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
    void init();
    void cleanup();

    void startsSignedOutWithoutAToken();
    void restores();
    void forgetsATokenThatNobodyAnswersTo_data();
    void forgetsATokenThatNobodyAnswersTo();
    void whoSignsInMeanwhileStays();
    void signsIn_data();
    void signsIn();
    void signsOut();
    void libraryStaysWhenALoadFails();
    void favourites();
    void favouritesAsAStation();

private:
    void start(const QByteArray &storedToken = {});
    QString nextPath()
    {
        return m_http->exchanges.empty() ? QString() : m_http->exchanges.front().request.url.path();
    }
    void answer(const QByteArray &body, int status = 200)
    {
        m_http->take().answer(body, status);
        settle();
    }
    void answerLibrary()
    {
        answer(playlistsAnswer);
        answer(favoritesAnswer);
    }
    void settle()
    {
        QThreadPool::globalInstance()->waitForDone();
        m_queue->drain();
    }
    void signIn()
    {
        detach(m_store->login(u"u"_s, u"p"_s), "test");
        answer(loginAnswer);
        answerLibrary();
    }

    std::unique_ptr<FakeHttpSession> m_http;
    std::unique_ptr<ManualMainQueue> m_queue;
    std::unique_ptr<FakeSecureItemStore> m_secrets;
    std::unique_ptr<APIClient> m_client;
    std::unique_ptr<AuthStore> m_store;
    QString m_outcome;
};

void tst_AuthStore::init()
{
    m_http = std::make_unique<FakeHttpSession>();
    m_queue = std::make_unique<ManualMainQueue>();
    m_secrets = std::make_unique<FakeSecureItemStore>();
    m_client = TestAccess::client(QUrl(u"https://a.example"_s), *m_http);
    TestAccess::installKeychain(*m_secrets);
    m_outcome.clear();
}

void tst_AuthStore::cleanup()
{
    while (!m_http->exchanges.empty()) {
        m_http->take().fail();
        settle();
    }
    m_store.reset();
    TestAccess::removeKeychain();
}

void tst_AuthStore::start(const QByteArray &storedToken)
{
    if (!storedToken.isEmpty())
        m_secrets->items.insert(item, storedToken);
    m_store = TestAccess::store(*m_client, *m_queue);
    m_queue->drain();
}

void tst_AuthStore::startsSignedOutWithoutAToken()
{
    start();
    QVERIFY(!m_store->token() && !m_store->isAuthed() && m_http->exchanges.empty());
    detach(m_store->restoreSession(), "test");
    detach(m_store->loadLibrary(), "test");
    QVERIFY(m_http->exchanges.empty());
    m_store.reset();
    start("\xff\xfe"); // no text
    QVERIFY(!m_store->token() && m_http->exchanges.empty());
}

void tst_AuthStore::restores()
{
    m_secrets->hangs = true;
    start("old");
    QVERIFY(!m_store->token()); // the keyring takes its time, and the window is up
    m_secrets->wakeUp();
    settle();
    QCOMPARE(m_store->token(), u"old"_s);
    QVERIFY(!m_store->isAuthed());
    QCOMPARE(m_http->exchanges.front().request.headers.constFirst().second, "Bearer old"_ba);
    answer(userAnswer);
    QVERIFY(m_store->isAuthed() && m_store->isLoadingLibrary());
    answerLibrary();
    QVERIFY(!m_store->isLoadingLibrary());
    QCOMPARE(m_store->playlists().constFirst().id, 2);
    QCOMPARE(m_store->favoriteIDs(), QSet<QString>({u"a#0"_s}));
    QCOMPARE(m_secrets->items.value(item), "old"_ba);
}

void tst_AuthStore::forgetsATokenThatNobodyAnswersTo_data()
{
    QTest::addColumn<int>("status"); // 0: no network
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("no network") << 0 << ""_ba;
    QTest::newRow("refused") << 401 << "{}"_ba;
    QTest::newRow("rubbish") << 200 << "<html>"_ba;
    QTest::newRow("nobody") << 200 << R"({"data":{"token":"old"}})"_ba;
}

void tst_AuthStore::forgetsATokenThatNobodyAnswersTo()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    start("old");
    if (status == 0) {
        m_http->take().fail();
        settle();
    } else {
        answer(body, status);
    }
    QVERIFY(!m_store->token() && !m_store->user() && m_secrets->items.isEmpty());
}

void tst_AuthStore::whoSignsInMeanwhileStays()
{
    m_secrets->hangs = true;
    start("old");
    signIn();
    m_secrets->wakeUp();
    settle();
    QCOMPARE(m_store->token(), u"new"_s);
    QVERIFY(m_http->exchanges.empty());
    QCOMPARE(m_secrets->items.value(item), "new"_ba);

    // Asked about already, the older token takes the newer with it when nobody answers.
    m_store.reset();
    start("old");
    auto me = m_http->take();
    signIn();
    me.fail();
    settle();
    QVERIFY(!m_store->token() && m_secrets->items.isEmpty());
}

void tst_AuthStore::signsIn_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("outcome");
    QTest::addColumn<bool>("authed");
    QTest::addColumn<QByteArray>("stored");
    QTest::newRow("token and user") << loginAnswer << 200 << u"ok"_s << true << "new"_ba;
    QTest::newRow("token alone") << R"({"data":{"token":"new"}})"_ba << 200 << u"ok"_s << false << "new"_ba;
    QTest::newRow("user alone") << userAnswer << 200 << u"خطا در پردازش پاسخ سرور"_s << false << ""_ba;
    QTest::newRow("refused") << R"({"message":"کد نادرست است"})"_ba << 400 << u"کد نادرست است"_s << false
                             << ""_ba;
}

void tst_AuthStore::signsIn()
{
    QFETCH(QByteArray, body);
    QFETCH(int, status);
    start();
    for (const auto bySignUp : {false, true}) {
        m_secrets->items.clear();
        detach(note(bySignUp ? m_store->completeTelegramSignup(u"s"_s, u"123456"_s)
                             : m_store->login(u"u"_s, u"p"_s),
                    m_outcome),
               "test");
        answer(body, status);
        if (m_store->token()) {
            m_http->take().fail(); // a library that does not load is nobody's failure
            settle();
        }
        QTEST(m_outcome, "outcome");
        QTEST(m_store->isAuthed(), "authed");
        QTEST(m_secrets->items.value(item), "stored");
    }
}

void tst_AuthStore::signsOut()
{
    start();
    m_store->logout(); // signed out already: tells nobody
    settle();
    QVERIFY(m_http->exchanges.empty());
    signIn();
    m_store->logout();
    QVERIFY(!m_store->user() && !m_store->token() && m_store->playlists().isEmpty());
    QVERIFY(m_store->favorites().isEmpty() && m_store->favoriteIDs().isEmpty() && m_secrets->items.isEmpty());
    settle();
    const auto farewell = m_http->take();
    QCOMPARE(farewell.request.url.path(), u"/api/auth/logout"_s);
    QCOMPARE(farewell.request.body, "{}"_ba);
    QVERIFY(farewell.request.headers.contains(std::pair("Authorization"_ba, "Bearer new"_ba)));
    auto unheard = farewell;
    unheard.fail();
    settle();

    signIn();
    detach(m_store->loadLibrary(), "test");
    m_store->logout();
    settle();
    auto playlists = m_http->take();
    m_http->take().fail(); // the farewell
    playlists.answer(playlistsAnswer);
    settle();
    answer(favoritesAnswer);
    QCOMPARE(m_store->favorites().size(), 2); // a load under way still publishes what it brings
}

void tst_AuthStore::libraryStaysWhenALoadFails()
{
    start();
    signIn();
    detach(m_store->loadLibrary(), "test");
    detach(m_store->loadLibrary(), "test"); // dropped
    QCOMPARE(m_http->exchanges.size(), std::size_t(1));
    answer(R"({"data":{"playlists":[]}})");
    answer("{}", 500);
    QCOMPARE(m_store->playlists().size(), 2);
    QVERIFY(!m_store->isLoadingLibrary() && m_http->exchanges.empty());
    detach(m_store->loadLibrary(), "test");
    answer("{}");
    answer(favoritesAnswer);
    QVERIFY(m_store->playlists().isEmpty());
    QCOMPARE(m_store->favorites().size(), 2);
}

void tst_AuthStore::favourites()
{
    start();
    Station station;
    station.genre = u"a"_s;
    station.tracks = {PlaylistTrack()};
    detach(note(m_store->toggleFavorite(station), m_outcome), "test");
    QCOMPARE(m_outcome, u"nothing"_s);
    QVERIFY(m_http->exchanges.empty());

    signIn();
    detach(note(m_store->toggleFavorite(station), m_outcome), "test");
    QCOMPARE(nextPath(), u"/api/favorites/toggle"_s);
    answer(R"({"data":{"favorited":false}})"); // the library decides, not this
    answerLibrary();
    QCOMPARE(m_outcome, u"favourite"_s);
    detach(note(m_store->toggleFavorite(station), m_outcome), "test");
    answer("{}");
    answer("{}");
    answer("{}");
    QCOMPARE(m_outcome, u"none"_s);
    detach(note(m_store->toggleFavorite(station), m_outcome), "test");
    answer("{}", 401);
    QCOMPARE(m_outcome, u"nothing"_s);
    QVERIFY(m_store->isAuthed());
}

void tst_AuthStore::favouritesAsAStation()
{
    start();
    QVERIFY(!m_store->favoritesStation());
    signIn();
    const auto station = m_store->favoritesStation().value();
    QCOMPARE(station.genre, u"custom-favorites"_s);
    QCOMPARE(station.title, u"آهنگهای پسندیده"_s);
    QCOMPARE(station.serverName, station.title);
    QCOMPARE(station.artist, u"u"_s);
    QCOMPARE(station.trackCount, 2);
    QCOMPARE(station.trackIndex, 0);
    QCOMPARE(station.tracks->at(0).trackID, u"a#0"_s);
    QCOMPARE(station.currentStreamURL(), u"/s"_s);
    QVERIFY(!station.streamURL && !station.tracks->at(1).trackID);
}

QTEST_GUILESS_MAIN(tst_AuthStore)
#include "tst_AuthStore.moc"
