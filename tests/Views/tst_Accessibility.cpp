#include "WindowRig.h"

#include <QAccessible>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

enum class Closing { Escape, Button, PressOutside };

const auto catalogue = R"({"data":[
    {"genre":"g","server_name":"ایستگاه","stream_url":"/s","artwork_url":"/a","category":"iranian"},
    {"genre":"h","server_name":"ایستگاه دیگر","stream_url":"/t","title":"A rather long title of a song"}]})"_ba;

} // namespace

Q_DECLARE_METATYPE(Closing)

/// The window as those meet it who do not see it, do not point, read large letters or want nothing to move.
class tst_Accessibility : public QObject, private WindowRig
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init();
    void cleanup();

    void focusComesBack_data();
    void focusComesBack();
    void menusWithinASheet();
    void tabsAreReadWhereTheyStand();
    void textsFit_data();
    void textsFit();
    void nothingMovesIfUnwanted();

private:
    void openPlayer();
    [[nodiscard]] QStringList dialogs() const;
    [[nodiscard]] QStringList readingOrder() const;
    void close(Closing closing);
    [[nodiscard]] QStringList moving() const;
    [[nodiscard]] QStringList cutTexts() const;

    InstantServer m_http;
};

void tst_Accessibility::init()
{
    m_http.answers = {{u"/api/stations"_s, catalogue}};
    open(m_http);
    detach(StationStore::shared().load(false), "loading in a test");
    QTRY_VERIFY(button(u"ایستگاه"_s));
}

void tst_Accessibility::cleanup()
{
    m_engine.reset();
    m_player->failPendingTracks();
    m_settings.setTextScale(1);
    m_settings.setReducedMotion(false);
    WindowRig::close();
}

void tst_Accessibility::openPlayer()
{
    click(button(u"ایستگاه"_s));
    QTRY_VERIFY(button(u"اکولایزر"_s));
    m_player->status = MediaPlayer::TimeControlStatus::Playing;
    m_player->observer(1);
    m_queue->drain();
    QTRY_VERIFY(button(u"اکولایزر"_s)->mapToScene({0, 0}).y() < 60); // it slides in
}

/// The names of those that are open.
QStringList tst_Accessibility::dialogs() const
{
    const auto isDialog = [](QQuickItem *item) {
        const auto *interface = QAccessible::queryAccessibleInterface(item);
        return interface && interface->role() == QAccessible::Dialog;
    };
    QStringList names;
    for (auto *item : all(isDialog))
        names << QAccessible::queryAccessibleInterface(item)->text(QAccessible::Name);
    return names;
}

void tst_Accessibility::close(Closing closing)
{
    switch (closing) {
    case Closing::Escape:
        return key(Qt::Key_Escape);
    case Closing::Button:
        return click(all([this](const QQuickItem *item) {
                         return item->inherits("QQuickAbstractButton") && textOf(item) == u"بستن";
                     }).constLast());
    case Closing::PressOutside:
        return QTest::mouseClick(m_window, Qt::LeftButton, {}, {m_window->width() - 4, 4});
    }
}

void tst_Accessibility::focusComesBack_data()
{
    QTest::addColumn<bool>("isInPlayer");
    QTest::addColumn<QString>("opener");
    QTest::addColumn<QString>("dialog");
    QTest::addColumn<Closing>("closing");
    const auto account = u"حساب کاربری"_s;
    QTest::newRow("login") << false << account << account << Closing::Escape;
    QTest::newRow("login, its button") << false << account << account << Closing::Button;
    QTest::newRow("login, beside it") << false << account << account << Closing::PressOutside;
    QTest::newRow("recognition") << false << u"تشخیص آهنگ"_s << u"تشخیص آهنگ"_s << Closing::Button;
    QTest::newRow("equaliser") << true << u"اکولایزر"_s << u"اکولایزر"_s << Closing::PressOutside;
    QTest::newRow("adding") << true << u"افزودن به پلیلیست"_s << account << Closing::Escape;
    QTest::newRow("lyrics") << true << u"متن ترانه"_s << u"متن ترانه"_s << Closing::Escape;
    QTest::newRow("lyrics, its button") << true << u"متن ترانه"_s << u"متن ترانه"_s << Closing::Button;
}

void tst_Accessibility::focusComesBack()
{
    QFETCH(bool, isInPlayer);
    QFETCH(QString, opener);
    QFETCH(QString, dialog);
    QFETCH(Closing, closing);
    m_settings.setReducedMotion(true); // everything is in its place at once
    if (isInPlayer)
        openPlayer();
    QTRY_VERIFY(button(opener));
    auto *from = button(opener);
    for (const bool byKey : {true, false}) {
        if (byKey) {
            from->forceActiveFocus(Qt::TabFocusReason);
            key(Qt::Key_Return);
        } else {
            click(from);
        }
        QTRY_COMPARE(dialogs(), QStringList(dialog));
        QTRY_VERIFY(m_window->activeFocusItem() != from);
        close(closing);
        QTRY_VERIFY(dialogs().isEmpty());
        QTRY_COMPARE(m_window->activeFocusItem(), from);
    }
}

void tst_Accessibility::menusWithinASheet()
{
    openPlayer();
    click(button(u"اکولایزر"_s));
    QTRY_COMPARE(items("EQBandRow"_ba).size(), 5);
    auto *opener = m_window->activeFocusItem();
    for (int i = 0; i < 9 && QAccessible::queryAccessibleInterface(opener)->role() != QAccessible::ButtonMenu;
         ++i) {
        key(Qt::Key_Tab);
        opener = m_window->activeFocusItem();
    }
    for (const bool byKey : {true, false}) {
        if (byKey)
            key(Qt::Key_Return);
        else
            click(opener);
        QTRY_VERIFY(!items("NMenuItem"_ba).isEmpty());
        key(Qt::Key_Escape);
        QTRY_VERIFY(items("NMenuItem"_ba).isEmpty());
        QTRY_COMPARE(m_window->activeFocusItem(), opener);
        QCOMPARE(dialogs(), QStringList(u"اکولایزر"_s)); // Escape closed the menu alone
    }
}

/// The names below the window, as a screen reader goes through them.
QStringList tst_Accessibility::readingOrder() const
{
    QStringList names;
    const auto read = [&names](const auto &again, const QAccessibleInterface *from) -> void {
        names << from->text(QAccessible::Name);
        for (int i = 0; i < from->childCount(); ++i)
            again(again, from->child(i));
    };
    read(read, QAccessible::queryAccessibleInterface(m_window));
    return names;
}

void tst_Accessibility::tabsAreReadWhereTheyStand()
{
    const auto tabsComeFirst = [this] {
        const auto names = readingOrder();
        return names.indexOf(u"کتابخانه"_s) < names.indexOf(u"ایستگاه"_s);
    };
    QVERIFY(readingOrder().contains(u"کتابخانه"_s) && tabsComeFirst());
    button(u"کتابخانه"_s)->forceActiveFocus(Qt::TabFocusReason);
    m_window->resize(420, 800);
    QTRY_VERIFY(!tabsComeFirst());
    QCOMPARE(focused(), u"کتابخانه"_s);
    m_window->resize(1000, 700);
    QTRY_VERIFY(tabsComeFirst());
    QCOMPARE(focused(), u"کتابخانه"_s);
}

/// Texts that are higher than their own place or reach beyond the button or field they stand in.
QStringList tst_Accessibility::cutTexts() const
{
    QStringList cut;
    for (auto *text : all([](const QQuickItem *item) { return item->inherits("QQuickText"); })) {
        const QRectF place(0, 0, text->property("paintedWidth").toDouble(), text->height());
        if (textOf(text).isEmpty() || place.width() == 0)
            continue;
        const auto painted = text->property("paintedHeight").toDouble();
        auto *around = text->parentItem();
        while (around && !around->inherits("QQuickAbstractButton") && !around->inherits("QQuickTextField"))
            around = around->parentItem();
        const auto within = around ? text->mapRectToItem(around, place) : QRectF();
        const bool leaves = around && (within.top() < -0.5 || within.bottom() > around->height() + 0.5);
        if (painted > text->height() + 1 || leaves)
            cut << u"%1 (%2 of %3 in %4)"_s.arg(textOf(text))
                       .arg(painted)
                       .arg(text->height())
                       .arg(around ? around->height() : 0);
    }
    return cut;
}

void tst_Accessibility::textsFit_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("scale");
    QTest::newRow("as drawn") << QSize(1000, 700) << 1.0;
    QTest::newRow("large") << QSize(1000, 700) << 1.5;
    QTest::newRow("large and narrow") << QSize(420, 800) << 1.5;
    QTest::newRow("larger than there is room for") << QSize(1200, 700) << 4.0;
}

void tst_Accessibility::textsFit()
{
    QFETCH(QSize, size);
    QFETCH(double, scale);
    m_window->resize(size);
    QTRY_COMPARE(m_window->width(), size.width());
    const auto headerHeight = [this] { return items("HomeHeader"_ba).at(0)->implicitHeight(); };
    const auto drawn = headerHeight();
    m_settings.setTextScale(scale);
    QTRY_COMPARE(headerHeight(), drawn + 60 * (std::min(scale, 1.5) - 1));
    QTRY_COMPARE(cutTexts(), QStringList());
    for (const auto &opener : {u"حساب کاربری"_s, u"تشخیص آهنگ"_s}) {
        click(button(opener));
        QTRY_COMPARE(dialogs(), QStringList(opener));
        QTRY_COMPARE(cutTexts(), QStringList());
        key(Qt::Key_Escape);
        QTRY_VERIFY(dialogs().isEmpty());
    }
    openPlayer();
    QTRY_COMPARE(cutTexts(), QStringList());
    const auto footer = items("PlayerFooter"_ba).at(0);
    QTRY_VERIFY(footer->mapToScene({0, footer->height()}).y() <= size.height());
    click(button(u"اکولایزر"_s));
    QTRY_COMPARE(items("EQBandRow"_ba).size(), 5);
    QTRY_COMPARE(cutTexts(), QStringList());
}

/// What is in motion, but for the sign that something is waited for.
QStringList tst_Accessibility::moving() const
{
    QStringList names;
    for (const auto *object : m_window->findChildren<QObject *>()) {
        const bool waits =
            object->parent() && QByteArray(object->parent()->metaObject()->className()).startsWith("Spinner");
        if (object->inherits("QQuickAbstractAnimation") && object->property("running").toBool() && !waits)
            names << QString::fromLatin1(object->metaObject()->className());
    }
    return names;
}

void tst_Accessibility::nothingMovesIfUnwanted()
{
    openPlayer();
    QVERIFY(!moving().isEmpty()); // the record
    m_settings.setReducedMotion(true);
    QTRY_COMPARE(moving(), QStringList());
    key(Qt::Key_Escape);
    QTRY_VERIFY(!items("EqualizerBars"_ba).isEmpty());
    const auto *bars = items("EqualizerBars"_ba).at(0);
    const auto time = bars->property("time");

    RadioPlayer::shared().setFullPlayerPresented(true);
    QCoreApplication::processEvents();
    QCOMPARE(items("FullPlayerView"_ba).at(0)->property("presence").toDouble(), 1.0); // at once
    QTRY_COMPARE(moving(), QStringList());
    click(button(u"اکولایزر"_s));
    QTRY_VERIFY(!dialogs().isEmpty());
    QTRY_COMPARE(moving(), QStringList());
    QCOMPARE(bars->property("time"), time);
}

QTEST_MAIN(tst_Accessibility)
#include "tst_Accessibility.moc"
