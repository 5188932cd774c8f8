#include "Platform/Http/QtHttpSession.h"
#include "Services/Artwork/ArtworkLoader.h"
#include "Services/Artwork/ArtworkPreparation.h"
#include "Support/ScriptedHttpServer.h"

#include <QBuffer>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace navorin {
struct TestAccess
{
    static std::unique_ptr<ArtworkLoader> loader(HttpSession &session)
    {
        return std::unique_ptr<ArtworkLoader>(new ArtworkLoader(session));
    }
};
} // namespace navorin

namespace {

/// Red, with a green square in the middle as large as the shorter side.
QByteArray picture(QSize size, const char *format)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    QRect middle(QPoint(), QSize(1, 1) * std::min(size.width(), size.height()));
    middle.moveCenter(image.rect().center());
    QPainter(&image).fillRect(middle, Qt::green);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format, 95);
    return buffer.data();
}

bool isGreen(QColor colour)
{
    return colour.green() > 240 && colour.red() < 15 && colour.alpha() == 255;
}

} // namespace

class tst_ArtworkLoader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void preparation_data();
    void preparation();
    void roundsTheCorners();
    void standsUpright();
    void fetches_data();
    void fetches();
    void sharesEqualRequests();
    void givesUpWhatNobodyWaitsFor();
    void endsWithoutWaiting();
};

void tst_ArtworkLoader::preparation_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("good");
    const auto jpeg = picture({800, 600}, "jpeg");
    const auto png = picture({300, 500}, "png");
    QTest::newRow("jpeg") << jpeg << true;
    QTest::newRow("png") << png << true;
    QTest::newRow("same size") << picture({120, 120}, "png") << true;
    QTest::newRow("smaller") << picture({20, 30}, "png") << true;
    QTest::newRow("one pixel") << picture({1, 1}, "png") << true;
    QTest::newRow("huge jpeg") << picture({8000, 8000}, "jpeg") << true;
    QTest::newRow("huge png") << picture({8000, 8000}, "png") << true;
    auto claimsTooMuch = picture({12, 9}, "bmp");
    qToLittleEndian(qint32(12000), claimsTooMuch.data() + 18);
    qToLittleEndian(qint32(9000), claimsTooMuch.data() + 22);
    QTest::newRow("too huge") << claimsTooMuch << false;
    QTest::newRow("strip") << picture({20000, 3}, "png") << true;
    QTest::newRow("jpeg strip") << picture({300, 20000}, "jpeg") << true;
    QTest::newRow("cut jpeg") << jpeg.first(jpeg.size() * 2 / 3) << false;
    QTest::newRow("cut png") << png.first(png.size() * 2 / 3) << false;
    QTest::newRow("only a head") << png.first(40) << false;
    QTest::newRow("page") << "<html></html>"_ba << false;
    QTest::newRow("vector") << R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"/>)"_ba
                            << false;
    QTest::newRow("nothing") << ""_ba << false;
}

void tst_ArtworkLoader::preparation()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, good);
    const auto image = preparedArtwork(bytes, {120, 120}, 0);
    QCOMPARE(!image.isNull(), good);
    if (!good)
        return;
    QCOMPARE(image.size(), QSize(120, 120));
    for (const auto point : {QPoint(3, 3), QPoint(116, 60), QPoint(60, 116)}) // no red: cut around the middle
        QVERIFY2(isGreen(image.pixelColor(point)), qPrintable(image.pixelColor(point).name()));
    QVERIFY(preparedArtwork(bytes, {0, 120}, 0).isNull());
}

void tst_ArtworkLoader::roundsTheCorners()
{
    const auto image = preparedArtwork(picture({240, 120}, "jpeg"), {60, 60}, 20);
    QCOMPARE(image.format(), QImage::Format_ARGB32_Premultiplied);
    for (const auto corner : {QPoint(0, 0), QPoint(59, 0), QPoint(0, 59), QPoint(59, 59)})
        QCOMPARE(image.pixelColor(corner).alpha(), 0);
    for (const auto inside : {QPoint(30, 0), QPoint(0, 30), QPoint(10, 10)})
        QVERIFY(isGreen(image.pixelColor(inside)));
    const auto edge = image.pixelColor(5, 5).alpha(); // on the arc
    QVERIFY2(edge > 0 && edge < 255, qPrintable(QString::number(edge)));
}

void tst_ArtworkLoader::standsUpright()
{
    // a camera's orientation 6: to be turned clockwise by a quarter
    QImage lying(400, 200, QImage::Format_RGB32);
    lying.fill(Qt::blue);
    QPainter(&lying).fillRect(0, 0, 200, 200, Qt::green);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    lying.save(&buffer, "jpeg", 95);
    auto bytes = buffer.data();
    bytes.insert(2, QByteArray::fromHex("FFE10022457869660000"
                                        "4D4D002A00000008"
                                        "0001011200030000000100060000"
                                        "00000000"));
    const auto image = preparedArtwork(bytes, {50, 100}, 0);
    QVERIFY(isGreen(image.pixelColor(25, 5)));
    QVERIFY(image.pixelColor(25, 95).blue() > 240);
}

void tst_ArtworkLoader::fetches_data()
{
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<bool>("good");
    const auto png = picture({64, 64}, "png");
    QTest::newRow("picture") << ScriptedAnswer{200, png} << true;
    QTest::newRow("error page that is a picture") << ScriptedAnswer{404, png} << false;
    QTest::newRow("cut") << ScriptedAnswer{.body = png, .ending = ScriptedAnswer::Ending::Cut} << false;
    QTest::newRow("nobody") << ScriptedAnswer{.ending = ScriptedAnswer::Ending::Hangup} << false;
}

void tst_ArtworkLoader::fetches()
{
    QFETCH(ScriptedAnswer, answer);
    QFETCH(bool, good);
    ScriptedHttpServer server;
    server.script("/a"_ba, answer);
    QtHttpSession session;
    const auto loader = TestAccess::loader(session);
    QCOMPARE(!loader->load(server.url(u"/a"_s), {32, 32}, 0).result().isNull(), good);

    const QTemporaryDir folder;
    QFile file(folder.filePath(u"kept.art"_s));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(answer.body) == answer.body.size());
    file.close();
    const auto kept = loader->load(QUrl::fromLocalFile(file.fileName()), {32, 32}, 4).result();
    QCOMPARE(!kept.isNull(), !answer.body.isEmpty());
    QVERIFY(loader->load(QUrl(u"file:///dev/zero"_s), {32, 32}, 0).result().isNull());
}

void tst_ArtworkLoader::sharesEqualRequests()
{
    ScriptedHttpServer server;
    server.script("/a"_ba, {200, picture({64, 64}, "png"), {}, 150ms});
    QtHttpSession session;
    const auto loader = TestAccess::loader(session);
    QList<QFuture<QImage>> equal;
    for (int i = 0; i < 5; ++i)
        equal.append(loader->load(server.url(u"/a"_s), {32, 32}, 4));
    auto larger = loader->load(server.url(u"/a"_s), {48, 48}, 4);
    equal.first().cancel(); // the others still want it
    for (auto &answer : equal.sliced(1))
        QCOMPARE(answer.result().size(), QSize(32, 32));
    QCOMPARE(larger.result().size(), QSize(48, 48));
    QCOMPARE(server.requests().size(), 2);
    QVERIFY(!loader->load(server.url(u"/a"_s), {32, 32}, 4).result().isNull()); // nothing is kept
    QCOMPARE(server.requests().size(), 3);
}

void tst_ArtworkLoader::givesUpWhatNobodyWaitsFor()
{
    ScriptedHttpServer server;
    server.script("/slow"_ba, {.delay = 60s});
    server.script("/a"_ba, {200, picture({64, 64}, "png")});
    QtHttpSession session;
    const auto loader = TestAccess::loader(session);
    QList<QFuture<QImage>> scrolledPast;
    for (int i = 0; i < 40; ++i)
        scrolledPast.append(loader->load(server.url(u"/slow"_s), {32 + i, 32}, 0));
    QTRY_VERIFY(!server.requests().isEmpty());
    for (auto &answer : scrolledPast)
        answer.cancel();
    QVERIFY(!loader->load(server.url(u"/a"_s), {32, 32}, 0).result().isNull());
    QVERIFY(server.requests().size() < 10);
}

void tst_ArtworkLoader::endsWithoutWaiting()
{
    ScriptedHttpServer server;
    server.script("/slow"_ba, {.delay = 60s});
    QtHttpSession session;
    auto loader = TestAccess::loader(session);
    QList<QFuture<QImage>> answers;
    for (int i = 0; i < 10; ++i)
        answers.append(loader->load(server.url(u"/slow"_s), {32 + i, 32}, 0));
    QTRY_VERIFY(!server.requests().isEmpty());
    loader.reset();
    for (const auto &answer : answers)
        QVERIFY(answer.isFinished() && (answer.isCanceled() || answer.result().isNull()));
}

QTEST_GUILESS_MAIN(tst_ArtworkLoader)
#include "tst_ArtworkLoader.moc"
