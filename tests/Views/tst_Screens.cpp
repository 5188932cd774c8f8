#include "Platform/Storage/QtFileStore.h"
#include "Platform/Tasks/Detached.h"
#include "Services/Account/AuthStore.h"
#include "Services/Account/Keychain.h"
#include "Services/Artwork/ArtworkLoader.h"
#include "Services/Backend/APIClient.h"
#include "Services/Catalogue/StationStore.h"
#include "Services/Equaliser/Equalizer.h"
#include "Services/Offline/OfflineStore.h"
#include "Services/Playback/RadioPlayer.h"
#include "Support/FakeDesktop.h"
#include "Support/FakeHttpSession.h"
#include "Support/FakeMediaPlayer.h"
#include "Support/FakeSecureItemStore.h"
#include "Support/FakeUserDefaults.h"
#include "Support/ManualMainQueue.h"
#include "Views/ViewSetup.h"

#include <QAccessible>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QTest>
#include <QThreadPool>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

struct navorin::TestAccess
{
    static void install(HttpSession &http, HttpSession &pictures, MediaPlayer &engine, FakeDesktop &desktop,
                        SecureItemStore &secrets, MainQueue &queue, FileStore &files, UserDefaults &defaults)
    {
        APIClient::instance().setMaker(
            [&] { return std::unique_ptr<APIClient>(new APIClient(QUrl(u"http://127.0.0.1:9"_s), http)); });
        ArtworkLoader::instance().setMaker(
            [&] { return std::unique_ptr<ArtworkLoader>(new ArtworkLoader(pictures)); });
        OfflineStore::instance().setMaker([&] {
            return std::unique_ptr<OfflineStore>(new OfflineStore({files, queue, http, APIClient::shared()}));
        });
        StationStore::instance().setMaker(
            [] { return std::unique_ptr<StationStore>(new StationStore(APIClient::shared())); });
        Keychain::instance().setMaker([&] { return std::unique_ptr<Keychain>(new Keychain(secrets)); });
        AuthStore::instance().setMaker(
            [&] { return std::unique_ptr<AuthStore>(new AuthStore(APIClient::shared(), queue)); });
        Equalizer::instance().setMaker([&] { return std::unique_ptr<Equalizer>(new Equalizer(defaults)); });
        RadioPlayer::instance().setMaker([&] {
            return std::unique_ptr<RadioPlayer>(
                new RadioPlayer({engine, desktop.audioSession, desktop.nowPlaying, desktop.remoteCommands,
                                 queue, APIClient::shared(), OfflineStore::shared()}));
        });
    }
    static bool hasEqualizer() { return Equalizer::instance().exists(); }
    static void reset()
    {
        Equalizer::instance().reset();
        RadioPlayer::instance().reset();
        AuthStore::instance().reset();
        Keychain::instance().reset();
        StationStore::instance().reset();
        OfflineStore::instance().reset();
        ArtworkLoader::instance().reset();
        APIClient::instance().reset();
    }
};

namespace {

/// There is no picture anywhere. Asked from several threads.
class NoPictures final : public HttpSession
{
public:
    [[nodiscard]] QFuture<HttpResponse> send(HttpRequest) override
    {
        return QtFuture::makeReadyFuture(HttpResponse{404, {}, {}});
    }
    [[nodiscard]] QFuture<void> stream(HttpRequest, std::shared_ptr<HttpByteSink>, std::stop_token) override
    {
        return QtFuture::makeExceptionalFuture<void>(
            std::make_exception_ptr(TransportError(TransportError::Kind::CannotConnect, u"no network"_s)));
    }
};

QByteArray catalogue(int count, const QByteArray &more = {})
{
    QByteArrayList records;
    for (int i = 0; i < count; ++i) {
        const auto number = QByteArray::number(i);
        records << "{\"genre\":\"g"_ba + number + "\",\"server_name\":\"ایستگاه "_ba + number +
                       "\",\"stream_url\":\"/stream/"_ba + number + "\",\"artwork_url\":\"/artwork/"_ba +
                       number + "\",\"category\":\""_ba + (i % 2 ? "iranian"_ba : "instrumental"_ba) +
                       "\""_ba + more + "}"_ba;
    }
    return "{\"data\":["_ba + records.join(',') + "]}"_ba;
}

/// All visible items below `root` that are made from the QML file `type`, in the order of the tree.
QList<QQuickItem *> itemsOf(QQuickItem *root, const QByteArray &type)
{
    QList<QQuickItem *> found;
    for (auto *child : root->childItems()) {
        if (!child->isVisible())
            continue;
        if (QByteArray(child->metaObject()->className()).startsWith(QByteArray(type + "_QMLTYPE"_ba)))
            found.append(child);
        found.append(itemsOf(child, type));
    }
    return found;
}

/// The visible button below `root` that says or is called `text`.
QQuickItem *buttonOf(QQuickItem *root, const QString &text)
{
    for (auto *child : root->childItems()) {
        if (!child->isVisible())
            continue;
        if (child->inherits("QQuickAbstractButton") && child->property("text").toString() == text)
            return child;
        if (auto *found = buttonOf(child, text))
            return found;
    }
    return nullptr;
}

QPoint middleOf(const QQuickItem *item)
{
    return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
}

} // namespace

class tst_Screens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void loadingThenErrorThenGrid();
    void layoutFollowsTheWidth_data();
    void layoutFollowsTheWidth();
    void aTapPlaysAndTheMiniPlayerComes();
    void aRefreshKeepsTheCards();
    void categoriesFilter();
    void walkedByKeyboard();
    void spaceIsThePlayersUnlessAControlUsesIt();
    void assistiveTechnologyPresses();
    void theFullPlayerOpensAndCloses();
    void theFullPlayerIsWalkedByKeyboard();
    void aStationWithTracksHasAScreen();
    void theEqualiserIsMadeByItsSheet();

private:
    [[nodiscard]] QList<QQuickItem *> items(const QByteArray &type) const
    {
        return itemsOf(m_window->contentItem(), type);
    }
    [[nodiscard]] QQuickItem *named(const QByteArray &type, const QString &text) const;
    [[nodiscard]] QQuickItem *button(const QString &text) const
    {
        return buttonOf(m_window->contentItem(), text);
    }
    [[nodiscard]] QQuickItem *card(int number) const
    {
        return named("StationCardView"_ba, QString(u"ایستگاه "_s + QString::number(number)));
    }
    void click(const QQuickItem *item) const
    {
        QTest::mouseClick(m_window, Qt::LeftButton, {}, middleOf(item));
    }
    void fill(int count, const QByteArray &more = {});
    void reachPlaying();
    /// Plays a card and goes back from the full player.
    void playBehind(int number);

    std::unique_ptr<FakeHttpSession> m_http;
    NoPictures m_pictures;
    std::unique_ptr<FakeMediaPlayer> m_player;
    std::unique_ptr<ManualMainQueue> m_queue;
    QtFileStore m_files;
    FakeUserDefaults m_defaults;
    FakeDesktop m_desktop;
    FakeSecureItemStore m_secrets;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QQuickWindow *m_window = nullptr;
};

void tst_Screens::initTestCase()
{
    QQuickStyle::setStyle(u"Basic"_s);
}

void tst_Screens::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_http = std::make_unique<FakeHttpSession>();
    m_player = std::make_unique<FakeMediaPlayer>();
    m_queue = std::make_unique<ManualMainQueue>();
    TestAccess::install(*m_http, m_pictures, *m_player, m_desktop, m_secrets, *m_queue, m_files, m_defaults);
    m_engine = std::make_unique<QQmlApplicationEngine>();
    prepareViews(*m_engine, {*m_queue, m_desktop.urlOpener});
    m_engine->load(QUrl(u"qrc:/qt/qml/Navorin/Main.qml"_s));
    m_window = qobject_cast<QQuickWindow *>(m_engine->rootObjects().value(0));
    QVERIFY(m_window);
    QVERIFY(QTest::qWaitForWindowActive(m_window));
    detach(StationStore::shared().load(false), "loading in a test");
}

void tst_Screens::cleanup()
{
    m_engine.reset();
    // nobody may be left waiting for an answer
    m_player->failPendingTracks();
    while (!m_http->exchanges.empty())
        m_http->take().fail();
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    m_player->item.reset();
    TestAccess::reset();
}

QQuickItem *tst_Screens::named(const QByteArray &type, const QString &text) const
{
    for (auto *item : items(type)) {
        if (item->property("text").toString() == text)
            return item;
    }
    return nullptr;
}

void tst_Screens::fill(int count, const QByteArray &more)
{
    m_http->take().answer(catalogue(count, more));
    QTRY_VERIFY(card(0));
}

void tst_Screens::reachPlaying()
{
    m_player->status = MediaPlayer::TimeControlStatus::Playing;
    m_player->observer(1);
    m_queue->drain();
}

void tst_Screens::playBehind(int number)
{
    click(card(number));
    QTRY_VERIFY(m_player->calls.contains(u"play"_s));
    QTRY_COMPARE(items("FullPlayerView"_ba).size(), 1);
    QTest::keyClick(m_window, Qt::Key_Escape);
    QTRY_VERIFY(items("FullPlayerView"_ba).isEmpty());
}

void tst_Screens::loadingThenErrorThenGrid()
{
    QCOMPARE(items("Spinner"_ba).size(), 1);
    m_http->take().fail();
    QTRY_VERIFY(named("NButton"_ba, u"تلاش دوباره"_s));
    QVERIFY(items("Spinner"_ba).isEmpty());
    click(named("NButton"_ba, u"تلاش دوباره"_s));
    QCOMPARE(items("Spinner"_ba).size(), 1);
    fill(3);
    QCOMPARE(items("StationCardView"_ba).size(), 3);
    QVERIFY(items("EmptyState"_ba).isEmpty());
    // a failure never takes away what is there
    QTest::keyClick(m_window, Qt::Key_F5);
    m_http->take().fail();
    QTRY_VERIFY(!StationStore::shared().isLoading());
    QCOMPARE(items("StationCardView"_ba).size(), 3);
}

void tst_Screens::layoutFollowsTheWidth_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QRect>("tabs");
    QTest::newRow("smallest") << QSize(360, 560) << 2 << QRect(0, 500, 360, 60);
    QTest::newRow("narrow") << QSize(639, 800) << 3 << QRect(0, 740, 639, 60);
    QTest::newRow("medium") << QSize(1000, 700) << 5 << QRect(916, 0, 84, 700);
    QTest::newRow("wide") << QSize(1120, 700) << 5 << QRect(920, 0, 200, 700);
}

void tst_Screens::layoutFollowsTheWidth()
{
    QFETCH(QSize, size);
    QFETCH(int, columns);
    QFETCH(QRect, tabs);
    fill(12);
    m_window->resize(size);
    const auto *strip = items("TabStrip"_ba).at(0);
    QTRY_COMPARE(QRectF(strip->position(), strip->size()).toRect(), tabs);
    const auto rowOf = [this](int number) { return middleOf(card(number)).y(); };
    QTRY_COMPARE(rowOf(columns - 1), rowOf(0));
    QTRY_VERIFY(rowOf(columns) > rowOf(0));
    QVERIFY(middleOf(card(1)).x() < middleOf(card(0)).x());
}

void tst_Screens::aTapPlaysAndTheMiniPlayerComes()
{
    fill(3);
    QVERIFY(items("MiniPlayerBar"_ba).isEmpty());
    playBehind(1);
    QCOMPARE(m_player->calls, QStringList({u"replace http://127.0.0.1:9/stream/1"_s, u"play"_s}));
    QTRY_COMPARE(items("MiniPlayerBar"_ba).size(), 1);
    QTRY_VERIFY(card(1)->property("isSelected").toBool());
    QVERIFY(!card(0)->property("isSelected").toBool());
    QVERIFY(items("EqualizerBars"_ba).isEmpty());
    m_player->calls.clear();
    reachPlaying();
    QTRY_COMPARE(items("EqualizerBars"_ba).size(), 1);
    const auto *toggle = named("ScaleButtonStyle"_ba, u"توقف"_s);
    QTRY_VERIFY(middleOf(toggle).y() < m_window->height() - 50); // it slides in
    click(toggle);
    QCOMPARE(m_player->takeCalls(), QStringList({u"pause"_s}));
}

void tst_Screens::aRefreshKeepsTheCards()
{
    fill(6);
    const auto before = items("StationCardView"_ba);
    QTest::keyClick(m_window, Qt::Key_F5);
    m_http->take().answer(catalogue(7));
    QTRY_VERIFY(card(6));
    const auto after = items("StationCardView"_ba);
    for (auto *item : before)
        QVERIFY(after.contains(item));
}

void tst_Screens::categoriesFilter()
{
    fill(6);
    const auto chip = [this](const QString &text) { return named("ScaleButtonStyle"_ba, text); };
    click(chip(u"ایرانی"_s));
    QTRY_VERIFY(!card(0));
    QVERIFY(card(1) && card(3) && card(5));
    click(chip(u"بینالمللی"_s));
    QTRY_VERIFY(items("StationCardView"_ba).isEmpty());
    QVERIFY(items("EmptyState"_ba).isEmpty());
}

void tst_Screens::walkedByKeyboard()
{
    fill(6);
    QStringList walk;
    for (int i = 0; i < 6; ++i) {
        QTest::keyClick(m_window, Qt::Key_Tab);
        walk << m_window->activeFocusItem()->property("text").toString();
    }
    QCOMPARE(walk, QStringList({u"رادیو"_s, u"کتابخانه"_s, u"جستجوی ساندکلود"_s, u"حساب کاربری"_s, u"همه"_s,
                                u"ایستگاه 0"_s}));
    QTest::keyClick(m_window, Qt::Key_Left);
    QCOMPARE(m_window->activeFocusItem(), card(1));
    QTest::keyClick(m_window, Qt::Key_Return);
    QTRY_COMPARE(m_player->calls.value(0), u"replace http://127.0.0.1:9/stream/1"_s);
    QTest::keyClick(m_window, Qt::Key_Escape);
    QTRY_COMPARE(m_window->activeFocusItem(), card(1)); // where it was
    QTest::keyClick(m_window, Qt::Key_Tab, Qt::ShiftModifier);
    QTest::keyClick(m_window, Qt::Key_Left);
    QTest::keyClick(m_window, Qt::Key_Space);
    QCOMPARE(StationStore::shared().selectedCategory(), StationStore::Category::Iranian);
}

void tst_Screens::spaceIsThePlayersUnlessAControlUsesIt()
{
    fill(3);
    QTest::keyClick(m_window, Qt::Key_Space);
    QVERIFY(m_player->takeCalls().isEmpty());
    playBehind(0);
    m_player->calls.clear();
    reachPlaying();
    QTest::keyClick(m_window, Qt::Key_Space);
    QCOMPARE(m_player->takeCalls(), QStringList({u"pause"_s}));

    QTest::keyClick(m_window, Qt::Key_Left); // from here on the keyboard steers
    QTest::keyClick(m_window, Qt::Key_Space);
    QTRY_VERIFY(m_player->calls.contains(u"replace http://127.0.0.1:9/stream/1"_s));
}

void tst_Screens::assistiveTechnologyPresses()
{
    fill(3);
    auto *interface = QAccessible::queryAccessibleInterface(card(2));
    QVERIFY(interface);
    QCOMPARE(interface->role(), QAccessible::Button);
    QCOMPARE(interface->text(QAccessible::Name), u"ایستگاه 2"_s);
    interface->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QTRY_VERIFY(m_player->calls.contains(u"replace http://127.0.0.1:9/stream/2"_s));
}

void tst_Screens::theFullPlayerOpensAndCloses()
{
    fill(2);
    click(card(0));
    QTRY_COMPARE(items("FullPlayerView"_ba).size(), 1);
    QTRY_VERIFY(items("HomeView"_ba).isEmpty()); // not painted behind it
    for (const auto &size : {QSize(420, 800), QSize(1000, 700), QSize(1920, 1080), QSize(360, 560)}) {
        m_window->resize(size);
        const auto *play = button(u"پخش"_s);
        QTRY_VERIFY(QRect({}, size).contains(middleOf(play)));
        const auto *record = items("Record"_ba).at(0);
        QTRY_VERIFY(record->mapToScene({0, 0}).y() >= 56);
        const auto *footer = items("PlayerFooter"_ba).at(0);
        QTRY_VERIFY(footer->mapToScene({0, footer->height()}).y() <= size.height());
    }
    QTRY_VERIFY(QRect({}, m_window->size()).contains(middleOf(button(u"بستن"_s))));
    click(button(u"بستن"_s));
    QTRY_VERIFY(items("FullPlayerView"_ba).isEmpty());
    QTRY_COMPARE(items("HomeView"_ba).size(), 1);
    QVERIFY(!RadioPlayer::shared().isFullPlayerPresented());
}

void tst_Screens::theFullPlayerIsWalkedByKeyboard()
{
    fill(1, ",\"tracks\":[{\"title\":\"a\",\"track_id\":\"1\",\"stream_url\":\"/t\"},"
            "{\"title\":\"b\",\"track_id\":\"2\",\"stream_url\":\"/u\"}],\"track_count\":2"_ba);
    auto station = StationStore::shared().stations().constFirst();
    detach(RadioPlayer::shared().selectStation(station), "selecting in a test");
    RadioPlayer::shared().setFullPlayerPresented(true);
    QTRY_VERIFY(m_player->item);
    m_player->item->length = 100;
    reachPlaying();
    QTRY_COMPARE(items("FullPlayerView"_ba).size(), 1);
    QTRY_VERIFY(RadioPlayer::shared().duration() > 0);

    QStringList walk;
    for (int i = 0; i < 16; ++i) {
        QTest::keyClick(m_window, Qt::Key_Tab);
        auto *interface = QAccessible::queryAccessibleInterface(m_window->activeFocusItem());
        QVERIFY(interface);
        const auto name = interface->text(QAccessible::Name);
        if (walk.contains(name))
            break;
        const auto role = interface->role();
        QVERIFY2(role == QAccessible::Button || role == QAccessible::Slider, qPrintable(name));
        walk.append(name);
    }
    walk.sort();
    QStringList expected{u"بستن"_s,
                         u"اکولایزر"_s,
                         u"پسندیدن"_s,
                         u"افزودن به پلیلیست"_s,
                         u"موقعیت پخش"_s,
                         u"۱۰ ثانیه عقب"_s,
                         u"آهنگ قبلی"_s,
                         u"توقف"_s,
                         u"آهنگ بعدی"_s,
                         u"۱۰ ثانیه جلو"_s,
                         u"بلندی صدا"_s,
                         u"دانلود آفلاین"_s,
                         u"دانلود در تلگرام"_s};
    expected.sort();
    QCOMPARE(walk, expected);

    m_player->calls.clear();
    for (auto *slider : items("NSlider"_ba)) {
        slider->forceActiveFocus();
        QTest::keyClick(m_window, Qt::Key_Right);
    }
    QCOMPARE(m_player->calls.filter(u"seek"_s).size(), 1);
    QVERIFY(RadioPlayer::shared().volume() > 0.86F);
}

void tst_Screens::aStationWithTracksHasAScreen()
{
    fill(
        1,
        ",\"tracks\":[{\"title\":\"a\",\"stream_url\":\"/t\"},{\"stream_url\":\"/u\"}],\"track_count\":2"_ba);
    click(card(0));
    QTRY_COMPARE(items("StationTrackRow"_ba).size(), 2);
    QVERIFY(m_player->calls.isEmpty());
    auto *row = items("StationTrackRow"_ba).at(1);
    row->forceActiveFocus();
    QTest::keyClick(m_window, Qt::Key_Menu);
    QTRY_VERIFY(button(u"دانلود آفلاین"_s));
    QTest::keyClick(m_window, Qt::Key_Escape);
    QTRY_VERIFY(!button(u"دانلود آفلاین"_s));
    QTRY_COMPARE(row->mapToScene({0, 0}).x(), 24.0); // it slides in
    click(items("StationTrackRow"_ba).at(1));
    QTRY_COMPARE(m_player->calls.value(0), u"replace http://127.0.0.1:9/u"_s);
    QTRY_COMPARE(items("FullPlayerView"_ba).size(), 1);
    QTest::keyClick(m_window, Qt::Key_Escape); // closes what is on top, and only that
    QTRY_VERIFY(items("FullPlayerView"_ba).isEmpty());
    QTRY_COMPARE(items("StationTrackRow"_ba).size(), 2);
    QTest::keyClick(m_window, Qt::Key_Escape);
    QTRY_VERIFY(items("StationTrackRow"_ba).isEmpty());
    QTRY_VERIFY(card(0));
}

void tst_Screens::theEqualiserIsMadeByItsSheet()
{
    fill(1);
    click(card(0));
    QTRY_COMPARE(items("FullPlayerView"_ba).size(), 1);
    QVERIFY(!TestAccess::hasEqualizer());
    QTRY_VERIFY(button(u"اکولایزر"_s)->mapToScene({0, 0}).y() < 60);
    click(button(u"اکولایزر"_s));
    QTRY_COMPARE(items("EQBandRow"_ba).size(), 5);
    QVERIFY(TestAccess::hasEqualizer());
    for (auto *row : items("EQBandRow"_ba))
        QVERIFY(!row->isEnabled());
    Equalizer::shared().setEnabled(true);
    Equalizer::shared().setSelectedPreset(EQPreset::customName);
    for (auto *row : items("EQBandRow"_ba))
        QVERIFY(row->isEnabled());
}

QTEST_MAIN(tst_Screens)
#include "tst_Screens.moc"
