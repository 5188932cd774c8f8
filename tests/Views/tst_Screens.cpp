#include "WindowRig.h"

#include <QAccessible>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

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

} // namespace

class tst_Screens : public QObject, private WindowRig
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void loadingThenErrorThenGrid();
    void layoutFollowsTheWidth();
    void aTapPlaysAndTheMiniPlayerComes();
    void walkedByKeyboard();
    void spaceIsThePlayersUnlessAControlUsesIt();
    void assistiveTechnologyPresses();
    void theFullPlayerOpensAndCloses();
    void theFullPlayerIsWalkedByKeyboard();
    void aStationWithTracksHasAScreen();
    void theEqualiserIsMadeByItsSheet();
    void aRequestFromOutsideOpensOneSheet();

private:
    [[nodiscard]] QQuickItem *card(int number) const
    {
        return named("StationCardView"_ba, QString(u"ایستگاه "_s + QString::number(number)));
    }
    void fill(int count, const QByteArray &more = {});
    void reachPlaying();
    /// Plays a card and goes back from the full player.
    void playBehind(int number);

    std::unique_ptr<FakeHttpSession> m_http;
};

void tst_Screens::init()
{
    m_http = std::make_unique<FakeHttpSession>();
    open(*m_http);
    detach(StationStore::shared().load(false), "loading in a test");
}

void tst_Screens::cleanup()
{
    m_engine.reset();
    // nobody may be left waiting for an answer
    m_player->failPendingTracks();
    while (!m_http->exchanges.empty())
        m_http->take().fail();
    close();
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
    key(Qt::Key_Escape);
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
    key(Qt::Key_F5);
    m_http->take().fail();
    QTRY_VERIFY(!StationStore::shared().isLoading());
    const auto before = items("StationCardView"_ba);
    QCOMPARE(before.size(), 3);
    key(Qt::Key_F5); // and what comes anew joins the cards that are there
    m_http->take().answer(catalogue(4));
    QTRY_VERIFY(card(3));
    const auto after = items("StationCardView"_ba);
    for (auto *item : before)
        QVERIFY(after.contains(item));
}

void tst_Screens::layoutFollowsTheWidth()
{
    fill(12);
    for (const auto &[size, columns, tabs] : {std::tuple(QSize(360, 560), 2, QRect(0, 500, 360, 60)),
                                              {QSize(639, 800), 3, QRect(0, 740, 639, 60)},
                                              {QSize(1000, 700), 5, QRect(916, 0, 84, 700)},
                                              {QSize(1120, 700), 5, QRect(920, 0, 200, 700)}}) {
        m_window->resize(size);
        const auto *strip = items("TabStrip"_ba).at(0);
        QTRY_COMPARE(QRectF(strip->position(), strip->size()).toRect(), tabs);
        const auto rowOf = [this](int number) { return middleOf(card(number)).y(); };
        QTRY_COMPARE(rowOf(columns - 1), rowOf(0));
        QTRY_VERIFY(rowOf(columns) > rowOf(0));
        QVERIFY(middleOf(card(1)).x() < middleOf(card(0)).x());
    }
}

void tst_Screens::aTapPlaysAndTheMiniPlayerComes()
{
    fill(3);
    QVERIFY(items("MiniPlayerBar"_ba).isEmpty());
    playBehind(1);
    QCOMPARE(m_player->calls, QStringList({u"replace http://127.0.0.1:9/stream/1"_s, u"play"_s}));
    QTRY_COMPARE(items("MiniPlayerBar"_ba).size(), 1);
    QTRY_VERIFY(card(1)->property("isSelected").toBool());
    QVERIFY(!card(0)->property("isSelected").toBool() && items("EqualizerBars"_ba).isEmpty());
    m_player->calls.clear();
    reachPlaying();
    QTRY_COMPARE(items("EqualizerBars"_ba).size(), 1);
    auto *toggle = named("ScaleButtonStyle"_ba, u"توقف"_s);
    click(toggle);
    QCOMPARE(m_player->takeCalls(), QStringList({u"pause"_s}));
}

void tst_Screens::walkedByKeyboard()
{
    fill(6);
    QStringList walk;
    for (int i = 0; i < 7; ++i) {
        key(Qt::Key_Tab);
        walk << focused();
    }
    QCOMPARE(walk, QStringList({u"رادیو"_s, u"کتابخانه"_s, u"تشخیص آهنگ"_s, u"جستجوی ساندکلود"_s,
                                u"حساب کاربری"_s, u"همه"_s, u"ایستگاه 0"_s}));
    key(Qt::Key_Left);
    QCOMPARE(m_window->activeFocusItem(), card(1));
    key(Qt::Key_Return);
    QTRY_COMPARE(m_player->calls.value(0), u"replace http://127.0.0.1:9/stream/1"_s);
    key(Qt::Key_Escape);
    QTRY_COMPARE(m_window->activeFocusItem(), card(1)); // where it was
    key(Qt::Key_Tab, Qt::ShiftModifier);
    key(Qt::Key_Left);
    key(Qt::Key_Space);
    QCOMPARE(StationStore::shared().selectedCategory(), StationStore::Category::Iranian);
    QTRY_VERIFY(!card(0));
    QVERIFY(card(1) && card(3) && card(5));
    click(named("ScaleButtonStyle"_ba, u"بینالمللی"_s));
    QTRY_VERIFY(items("StationCardView"_ba).isEmpty());
    QVERIFY(items("EmptyState"_ba).isEmpty());
}

void tst_Screens::spaceIsThePlayersUnlessAControlUsesIt()
{
    fill(3);
    key(Qt::Key_Space);
    QVERIFY(m_player->takeCalls().isEmpty());
    playBehind(0);
    m_player->calls.clear();
    reachPlaying();
    key(Qt::Key_Space);
    QCOMPARE(m_player->takeCalls(), QStringList({u"pause"_s}));

    key(Qt::Key_Left); // from here on the keyboard steers
    key(Qt::Key_Space);
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
        key(Qt::Key_Tab);
        auto *interface = QAccessible::queryAccessibleInterface(m_window->activeFocusItem());
        QVERIFY(interface);
        const auto name = interface->text(QAccessible::Name);
        if (walk.contains(name))
            break;
        const auto role = interface->role();
        QVERIFY2(role == QAccessible::Button || role == QAccessible::Slider, qPrintable(name));
        walk.append(name);
    }
    QCOMPARE(QSet<QString>(walk.begin(), walk.end()),
             QSet<QString>({u"بستن"_s, u"متن ترانه"_s, u"اکولایزر"_s, u"پسندیدن"_s, u"افزودن به پلیلیست"_s,
                            u"موقعیت پخش"_s, u"۱۰ ثانیه عقب"_s, u"آهنگ قبلی"_s, u"توقف"_s, u"آهنگ بعدی"_s,
                            u"۱۰ ثانیه جلو"_s, u"بلندی صدا"_s, u"دانلود آفلاین"_s, u"دانلود در تلگرام"_s,
                            u"استوری هوشمند"_s}));

    m_player->calls.clear();
    for (auto *slider : items("NSlider"_ba)) {
        slider->forceActiveFocus();
        key(Qt::Key_Right);
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
    key(Qt::Key_Menu);
    QTRY_VERIFY(button(u"دانلود آفلاین"_s));
    key(Qt::Key_Escape);
    QTRY_VERIFY(!button(u"دانلود آفلاین"_s));
    QTRY_COMPARE(row->mapToScene({0, 0}).x(), 24.0); // it slides in
    click(items("StationTrackRow"_ba).at(1));
    QTRY_COMPARE(m_player->calls.value(0), u"replace http://127.0.0.1:9/u"_s);
    QTRY_COMPARE(items("FullPlayerView"_ba).size(), 1);
    key(Qt::Key_Escape); // closes what is on top, and only that
    QTRY_VERIFY(items("FullPlayerView"_ba).isEmpty());
    QTRY_COMPARE(items("StationTrackRow"_ba).size(), 2);
    key(Qt::Key_Escape);
    QTRY_VERIFY(items("StationTrackRow"_ba).isEmpty());
    QTRY_VERIFY(card(0));
}

void tst_Screens::theEqualiserIsMadeByItsSheet()
{
    fill(1);
    click(card(0));
    QTRY_COMPARE(items("FullPlayerView"_ba).size(), 1);
    QVERIFY(!TestAccess::isMade<Equalizer>());
    QTRY_VERIFY(button(u"اکولایزر"_s)->mapToScene({0, 0}).y() < 60);
    click(button(u"اکولایزر"_s));
    QTRY_COMPARE(items("EQBandRow"_ba).size(), 5);
    QVERIFY(TestAccess::isMade<Equalizer>());
    for (auto *row : items("EQBandRow"_ba))
        QVERIFY(!row->isEnabled());
    Equalizer::shared().setEnabled(true);
    Equalizer::shared().setSelectedPreset(EQPreset::customName);
    for (auto *row : items("EQBandRow"_ba))
        QVERIFY(row->isEnabled());
}

void tst_Screens::aRequestFromOutsideOpensOneSheet()
{
    auto &shazam = ShazamManager::shared();
    shazam.requestOpen(true);
    shazam.requestOpen(true);
    QVERIFY(!shazam.openRequest());
    QTRY_COMPARE(items("ListenButton"_ba).size(), 1);
    QTRY_COMPARE(focused(), u"تشخیص آهنگ"_s);
    QVERIFY(items("ListenButton"_ba).at(0)->hasActiveFocus());
    m_queue->advance(std::chrono::milliseconds(800));
    QTRY_VERIFY(shazam.isListening());
    for (const auto &size : {QSize(420, 800), QSize(1000, 700)}) {
        m_window->resize(size);
        QTRY_VERIFY(QRect({}, size).contains(middleOf(items("ListenButton"_ba).at(0))));
    }
    shazam.setRecognizedTrack(ShazamData{.title = u"باران"_s, .streamURL = u"/song"_s});
    QTRY_VERIFY(button(u"پخش در رادیو"_s));
    click(button(u"پخش در رادیو"_s));
    QTRY_VERIFY(m_player->calls.contains(u"replace http://127.0.0.1:9/song"_s));
    QTRY_VERIFY(items("ListenButton"_ba).isEmpty() && RadioPlayer::shared().isFullPlayerPresented());
    QTRY_VERIFY(!shazam.recognizedTrack());
    QCOMPARE(RadioPlayer::shared().currentStation()->genre, u"shazam-result"_s);
}

QTEST_MAIN(tst_Screens)
#include "tst_Screens.moc"
