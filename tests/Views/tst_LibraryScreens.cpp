#include "Platform/Storage/QtFileStore.h"
#include "Platform/Tasks/Detached.h"
#include "Services/Account/AuthStore.h"
#include "Services/Account/Keychain.h"
#include "Services/Artwork/ArtworkLoader.h"
#include "Services/Backend/APIClient.h"
#include "Services/Catalogue/StationStore.h"
#include "Services/Offline/OfflineStore.h"
#include "Services/Playback/RadioPlayer.h"
#include "Support/FakeDesktop.h"
#include "Support/FakeMediaPlayer.h"
#include "Support/FakeSecureItemStore.h"
#include "Support/ManualMainQueue.h"
#include "Views/ViewSetup.h"

#include <QQmlApplicationEngine>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QTest>
#include <QThreadPool>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

/// Answers each path as it was told, and notes what was changed.
class LibraryServer final : public HttpSession
{
public:
    [[nodiscard]] QFuture<HttpResponse> send(HttpRequest request) override
    {
        const auto path = request.url.path();
        if (request.method != "GET")
            changes << QString(QString::fromLatin1(request.method) + u' ' + path);
        if (path.startsWith(u"/artwork"_s))
            return QtFuture::makeReadyFuture(HttpResponse{404, {}, {}});
        return QtFuture::makeReadyFuture(HttpResponse{200, {}, answers.value(path, "{}"_ba)});
    }

    [[nodiscard]] QFuture<void> stream(HttpRequest, std::shared_ptr<HttpByteSink>, std::stop_token) override
    {
        return QtFuture::makeExceptionalFuture<void>(
            std::make_exception_ptr(TransportError(TransportError::Kind::CannotConnect, u"no network"_s)));
    }

    QHash<QString, QByteArray> answers;
    QStringList changes;
};

QByteArray records(int count)
{
    QByteArrayList list;
    for (int i = 1; i <= count; ++i) {
        const auto number = QByteArray::number(i);
        list
            << R"({"id":)"_ba + number + R"(,"title":"عنوان )"_ba + number +
                   R"(","artist":"a","track_count":3,"duration":65,"stream_url":"/s","artwork_url":"/artwork/x"})"_ba;
    }
    return list.join(',');
}

} // namespace

struct navorin::TestAccess
{
    template <typename T, typename... Arguments>
    static void install(Arguments &...arguments)
    {
        T::instance().setMaker([&arguments...] { return std::unique_ptr<T>(new T(arguments...)); });
    }
    static void installAll(HttpSession &http, MediaPlayer &engine, FakeDesktop &desktop,
                           SecureItemStore &secrets, MainQueue &queue, FileStore &files)
    {
        static const QUrl address(u"http://127.0.0.1:9"_s);
        install<APIClient>(address, http);
        install<ArtworkLoader>(http);
        OfflineStore::instance().setMaker([&] {
            return std::unique_ptr<OfflineStore>(new OfflineStore({files, queue, http, APIClient::shared()}));
        });
        install<Keychain>(secrets);
        install<StationStore>(APIClient::shared());
        install<AuthStore>(APIClient::shared(), queue);
        RadioPlayer::instance().setMaker([&] {
            return std::unique_ptr<RadioPlayer>(
                new RadioPlayer({engine, desktop.audioSession, desktop.nowPlaying, desktop.remoteCommands,
                                 queue, APIClient::shared(), OfflineStore::shared()}));
        });
    }
    static void reset()
    {
        RadioPlayer::instance().reset();
        AuthStore::instance().reset();
        Keychain::instance().reset();
        StationStore::instance().reset();
        OfflineStore::instance().reset();
        ArtworkLoader::instance().reset();
        APIClient::instance().reset();
    }
};

/// The library's screens as they are, walked by keyboard, and without a word of complaint from QML.
class tst_LibraryScreens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QQuickStyle::setStyle(u"Basic"_s); }
    void init();
    void cleanup();

    void aPlaylistByKeyboard();
    void manyRowsMakeFewItems();
    void sheetsAndSearch_data();
    void sheetsAndSearch();

private:
    void signIn(int playlists);
    void key(Qt::Key key) { QTest::keyClick(m_window, key); }
    /// Every visible item below the window that bears this text or accessible name.
    [[nodiscard]] QQuickItem *labelled(const QString &text, QQuickItem *root = nullptr) const;
    [[nodiscard]] QString focused() const
    {
        return m_window->activeFocusItem() ? m_window->activeFocusItem()->property("text").toString()
                                           : QString();
    }

    std::unique_ptr<LibraryServer> m_http;
    std::unique_ptr<FakeMediaPlayer> m_player;
    std::unique_ptr<ManualMainQueue> m_queue;
    QtFileStore m_files;
    FakeDesktop m_desktop;
    FakeSecureItemStore m_secrets;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QQuickWindow *m_window = nullptr;
};

void tst_LibraryScreens::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_http = std::make_unique<LibraryServer>();
    m_player = std::make_unique<FakeMediaPlayer>();
    m_queue = std::make_unique<ManualMainQueue>();
    TestAccess::installAll(*m_http, *m_player, m_desktop, m_secrets, *m_queue, m_files);
    m_engine = std::make_unique<QQmlApplicationEngine>();
    prepareViews(*m_engine, {*m_queue, m_desktop.urlOpener});
    m_engine->load(QUrl(u"qrc:/qt/qml/Navorin/Main.qml"_s));
    m_window = qobject_cast<QQuickWindow *>(m_engine->rootObjects().value(0));
    QVERIFY(m_window);
    QVERIFY(QTest::qWaitForWindowActive(m_window));
    key(Qt::Key_Tab);
    key(Qt::Key_Tab);
    key(Qt::Key_Return); // the library's tab
}

void tst_LibraryScreens::cleanup()
{
    m_engine.reset();
    m_player->failPendingTracks();
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    m_player->item.reset();
    TestAccess::reset();
}

QQuickItem *tst_LibraryScreens::labelled(const QString &text, QQuickItem *root) const
{
    for (auto *child : (root ? root : m_window->contentItem())->childItems()) {
        if (!child->isVisible() || child->opacity() == 0)
            continue;
        if (child->property("text").toString() == text)
            return child;
        if (auto *found = labelled(text, child))
            return found;
    }
    return nullptr;
}

void tst_LibraryScreens::signIn(int playlists)
{
    m_http->answers = {
        {u"/api/auth/login"_s, R"({"data":{"token":"t","user":{"username":"ali"}}})"_ba},
        {u"/api/playlists"_s, R"({"data":{"playlists":[)"_ba + records(playlists) + "]}}"_ba},
        {u"/api/favorites"_s, R"({"data":[{"id":1,"stream_url":"/f"}]})"_ba},
        {u"/api/playlists/1"_s, R"({"data":{"id":1,"title":"شب","tracks":[)"_ba + records(2) + "]}}"_ba}};
    detach(AuthStore::shared().login(u"ali"_s, u"1234"_s), "signing in in a test");
    QTRY_VERIFY(labelled(u"عنوان 1"_s));
    m_http->changes.clear();
}

void tst_LibraryScreens::aPlaylistByKeyboard()
{
    QTRY_VERIFY(labelled(u"وارد حساب شوید"_s));
    QVERIFY(labelled(u"ایمپورت از اسپاتیفای"_s) && labelled(u"جستجوی ساندکلود"_s));
    QVERIFY(!labelled(u"پلیلیستهای من"_s) && labelled(u"دانلودهای آفلاین"_s));
    signIn(2);
    QVERIFY(!labelled(u"وارد حساب شوید"_s));
    QVERIFY(labelled(u"آهنگهای پسندیده"_s));
    while (focused() != u"عنوان 1"_s)
        key(Qt::Key_Tab);
    key(Qt::Key_Left);
    QCOMPARE(focused(), u"عنوان 2"_s);
    key(Qt::Key_Delete);
    QTRY_VERIFY(labelled(u"حذف پلیلیست؟"_s));
    QTRY_COMPARE(focused(), u"انصراف"_s); // harmless
    key(Qt::Key_Return);
    QTRY_COMPARE(focused(), u"عنوان 2"_s);
    QVERIFY(m_http->changes.isEmpty());
    key(Qt::Key_Right);
    key(Qt::Key_Return);
    QTRY_VERIFY(labelled(u"1:05"_s));
    while (focused() != u"عنوان 1"_s)
        key(Qt::Key_Tab);
    key(Qt::Key_Down);
    key(Qt::Key_F2);
    QTRY_VERIFY(labelled(u"ویرایش آهنگ"_s));
    QTRY_COMPARE(focused(), u"عنوان 2"_s);
    key(Qt::Key_X); // in place of what is selected
    key(Qt::Key_Return);
    QTRY_COMPARE(m_http->changes, QStringList(u"PUT /api/playlists/1/tracks/2"_s));
    QTRY_VERIFY(!labelled(u"ویرایش آهنگ"_s));
    key(Qt::Key_Return);
    QTRY_VERIFY(m_player->calls.contains(u"replace http://127.0.0.1:9/s"_s));
    QTRY_VERIFY(RadioPlayer::shared().isFullPlayerPresented());
    key(Qt::Key_Escape);
    QTRY_VERIFY(!RadioPlayer::shared().isFullPlayerPresented());
    key(Qt::Key_Escape);
    QTRY_VERIFY(labelled(u"پلیلیستهای من"_s));
}

void tst_LibraryScreens::manyRowsMakeFewItems()
{
    signIn(2000);
    QVERIFY(m_window->findChildren<QQuickItem *>().size() < 4000);
    QVERIFY(labelled(u"عنوان 5"_s) && !labelled(u"عنوان 300"_s));
}

void tst_LibraryScreens::sheetsAndSearch_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("signedIn");
    QTest::addColumn<QString>("shows");
    QTest::newRow("adding, signed out")
        << u"AddToPlaylistSheet"_s << false << u"برای افزودن به پلیلیست وارد شوید."_s;
    QTest::newRow("adding") << u"AddToPlaylistSheet"_s << true << u"عنوان 1"_s;
    QTest::newRow("search") << u"SoundCloudSearchView"_s << false << u"یه آهنگ یا هنرمند رو سرچ کن"_s;
}

void tst_LibraryScreens::sheetsAndSearch()
{
    QFETCH(QString, file);
    QFETCH(bool, signedIn);
    QFETCH(QString, shows);
    if (signedIn)
        signIn(1);
    QQmlComponent component(m_engine.get(), QUrl(u"qrc:/qt/qml/Navorin/Library/"_s + file + u".qml"_s));
    const auto properties =
        file == u"SoundCloudSearchView"_s ? QVariantMap{{u"margin"_s, 16}} : QVariantMap();
    const std::unique_ptr<QObject> object(component.createWithInitialProperties(properties));
    auto *item = qobject_cast<QQuickItem *>(object.get());
    QVERIFY(item);
    item->setParentItem(m_window->contentItem());
    item->setSize(QSizeF(400, 500));
    QTRY_VERIFY(labelled(shows, item));
}

QTEST_MAIN(tst_LibraryScreens)
#include "tst_LibraryScreens.moc"
