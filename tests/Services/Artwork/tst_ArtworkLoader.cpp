#include "Platform/Http/QtHttpSession.h"
#include "Services/Artwork/ArtworkLoader.h"
#include "Services/Artwork/ArtworkPreparation.h"
#include "Support/Columns.h"
#include "Support/ScriptedHttpServer.h"
#include "Support/TestAccess.h"

#include <QBuffer>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

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
    void prepares_data();
    void prepares();
    void roundsAndTurns();
    void fetches();
    void sharesAndGivesUp();
};

void tst_ArtworkLoader::prepares_data()
{
    addColumns<QByteArray, bool>("bytes", "good");
    const auto jpeg = picture({800, 600}, "jpeg");
    const auto png = picture({300, 500}, "png");
    QTest::newRow("jpeg") << jpeg << true;
    QTest::newRow("png") << png << true;
    QTest::newRow("webp") << picture({300, 500}, "webp") << true;
    QTest::newRow("smaller") << picture({20, 30}, "png") << true;
    QTest::newRow("one pixel") << picture({1, 1}, "png") << true;
    QTest::newRow("huge jpeg") << picture({8000, 8000}, "jpeg") << true;
    QTest::newRow("huge png") << picture({8000, 8000}, "png") << true;
    QTest::newRow("strip") << picture({20000, 3}, "png") << true;
    QTest::newRow("jpeg strip") << picture({300, 20000}, "jpeg") << true;
    auto claimsTooMuch = picture({12, 9}, "bmp");
    qToLittleEndian(qint32(12000), claimsTooMuch.data() + 18);
    qToLittleEndian(qint32(9000), claimsTooMuch.data() + 22);
    QTest::newRow("too huge") << claimsTooMuch << false;
    QTest::newRow("cut jpeg") << jpeg.first(jpeg.size() * 2 / 3) << false;
    QTest::newRow("cut png") << png.first(png.size() * 2 / 3) << false;
    QTest::newRow("page") << "<html></html>"_ba << false;
    QTest::newRow("program") << R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"/>)"_ba
                             << false;
    QTest::newRow("nothing") << ""_ba << false;
}

void tst_ArtworkLoader::prepares()
{
    const auto [bytes, good] = fetched<QByteArray, bool>("bytes", "good");
    const auto image = preparedArtwork(bytes, {120, 120}, 0);
    QCOMPARE(image.size(), good ? QSize(120, 120) : QSize(0, 0));
    for (const auto point : {QPoint(3, 3), QPoint(116, 60), QPoint(60, 116)}) // no red: cut around the middle
        QVERIFY(!good || isGreen(image.pixelColor(point)));
}

void tst_ArtworkLoader::roundsAndTurns()
{
    const auto rounded = preparedArtwork(picture({240, 120}, "jpeg"), {60, 60}, 20);
    for (const auto corner : {QPoint(0, 0), QPoint(59, 0), QPoint(0, 59), QPoint(59, 59)})
        QCOMPARE(rounded.pixelColor(corner).alpha(), 0);
    for (const auto inside : {QPoint(30, 0), QPoint(0, 30), QPoint(10, 10)})
        QVERIFY(isGreen(rounded.pixelColor(inside)));
    const auto edge = rounded.pixelColor(5, 5).alpha();
    QVERIFY2(edge > 0 && edge < 255, qPrintable(QString::number(edge)));

    // taken with the camera on its side
    auto lying = picture({100, 200}, "jpeg");
    lying.insert(
        2, QByteArray::fromHex("FFE1002245786966000049492A0008000000010012010300010000000600000000000000"));
    const auto upright = preparedArtwork(lying, {200, 100}, 0);
    QVERIFY(isGreen(upright.pixelColor(100, 50)) && upright.pixelColor(20, 50).red() > 240);
}

void tst_ArtworkLoader::fetches()
{
    const auto png = picture({64, 64}, "png");
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"kept.art"_s));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(png) == png.size());
    file.close();
    ScriptedHttpServer server;
    server.script("/good"_ba, {200, png});
    server.script("/error"_ba, {404, png});
    server.script("/cut"_ba, {.body = png, .ending = ScriptedAnswer::Ending::Cut});
    server.script("/nobody"_ba, {.ending = ScriptedAnswer::Ending::Hangup});
    QtHttpSession session;
    const auto loader = TestAccess::make<ArtworkLoader>(session);
    const std::pair<QUrl, bool> cases[]{
        {server.url(u"/good"_s), true},    {QUrl::fromLocalFile(file.fileName()), true},
        {server.url(u"/error"_s), false},  {server.url(u"/cut"_s), false},
        {server.url(u"/nobody"_s), false}, {QUrl(u"file:///dev/zero"_s), false},
        {QUrl(u"file:///none"_s), false},
    };
    for (const auto &[address, good] : cases)
        QCOMPARE(loader->load(address, {32, 32}, 0).result().size(), good ? QSize(32, 32) : QSize(0, 0));
}

void tst_ArtworkLoader::sharesAndGivesUp()
{
    ScriptedHttpServer server;
    server.script("/a"_ba, {200, picture({64, 64}, "png"), {}, 150ms});
    server.script("/slow"_ba, {.delay = 60s});
    QtHttpSession session;
    auto loader = TestAccess::make<ArtworkLoader>(session);
    const auto load = [&](const QString &path, int size) {
        return loader->load(server.url(path), {size, size}, 4);
    };

    QList<QFuture<QImage>> equal;
    for (int i = 0; i < 5; ++i)
        equal.append(load(u"/a"_s, 32));
    const auto larger = load(u"/a"_s, 48);
    equal.takeFirst().cancel(); // the others still want it
    for (const auto &answer : equal)
        QCOMPARE(answer.result().size(), QSize(32, 32));
    QCOMPARE(larger.result().size(), QSize(48, 48));
    QCOMPARE(server.requests().size(), 2);

    for (const auto isEnding : {false, true}) {
        const auto before = server.requests().size();
        QList<QFuture<QImage>> scrolledPast;
        for (int i = 0; i < 40; ++i)
            scrolledPast.append(load(u"/slow"_s, 32 + i));
        QTRY_VERIFY(server.requests().size() > before);
        if (isEnding)
            loader.reset();
        for (auto &answer : scrolledPast)
            answer.cancel();
        if (!isEnding)
            QVERIFY(!load(u"/a"_s, 32).result().isNull()); // no longer behind the forty
        QVERIFY(!isEnding || std::ranges::all_of(scrolledPast, &QFuture<QImage>::isFinished));
    }
    QVERIFY(server.requests().size() < 20);
}

QTEST_GUILESS_MAIN(tst_ArtworkLoader)
#include "tst_ArtworkLoader.moc"
