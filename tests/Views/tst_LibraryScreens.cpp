#include "WindowRig.h"

#include <QQmlComponent>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

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

/// The library's screens as they are, walked by keyboard.
class tst_LibraryScreens : public QObject, private WindowRig
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aPlaylistByKeyboard();
    void manyRowsMakeFewItems();
    void addingAsksForALogin();

private:
    void signIn(int playlists);

    std::unique_ptr<InstantServer> m_http;
};

void tst_LibraryScreens::init()
{
    m_http = std::make_unique<InstantServer>();
    open(*m_http);
    key(Qt::Key_Tab);
    key(Qt::Key_Tab);
    key(Qt::Key_Return); // the library's tab
}

void tst_LibraryScreens::cleanup()
{
    m_engine.reset();
    m_player->failPendingTracks();
    close();
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
    QVERIFY(!labelled(u"وارد حساب شوید"_s) && labelled(u"آهنگهای پسندیده"_s));
    while (focused() != u"عنوان 1"_s)
        key(Qt::Key_Tab);
    key(Qt::Key_Left);
    QTRY_COMPARE(focused(), u"عنوان 2"_s);
    key(Qt::Key_Delete);
    QTRY_VERIFY(labelled(u"حذف پلیلیست؟"_s));
    QTRY_COMPARE(focused(), u"انصراف"_s); // harmless
    key(Qt::Key_Return);
    QTRY_COMPARE(focused(), u"عنوان 2"_s);
    QVERIFY(m_http->changes.isEmpty());
    key(Qt::Key_Right);
    key(Qt::Key_Return);
    QTRY_VERIFY(labelled(u"1:05"_s));
    QTRY_COMPARE(focused(), u"عنوان 1"_s); // its first track
    key(Qt::Key_Down);
    QTRY_COMPARE(focused(), u"عنوان 2"_s);
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

void tst_LibraryScreens::addingAsksForALogin()
{
    QQmlComponent component(m_engine.get(), QUrl(u"qrc:/qt/qml/Navorin/Library/AddToPlaylistSheet.qml"_s));
    const std::unique_ptr<QObject> object(component.create());
    auto *item = qobject_cast<QQuickItem *>(object.get());
    QVERIFY(item);
    item->setParentItem(m_window->contentItem());
    item->setSize(QSizeF(400, 500));
    QTRY_VERIFY(labelled(u"برای افزودن به پلیلیست وارد شوید."_s, item));
}

QTEST_MAIN(tst_LibraryScreens)
#include "tst_LibraryScreens.moc"
