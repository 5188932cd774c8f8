#include "Services/Artwork/ArtworkColor.h"

#include <QTest>

using namespace navorin;

class tst_ArtworkColor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void averages();
    void pushes();
};

void tst_ArtworkColor::averages()
{
    QVERIFY(!averageColor(QImage()));
    QImage image(3, 1, QImage::Format_RGB888); // lines with padding
    image.setPixelColor(0, 0, QColor(255, 0, 10));
    image.setPixelColor(1, 0, QColor(0, 1, 20));
    image.setPixelColor(2, 0, QColor(0, 1, 31));
    QCOMPARE(averageColor(image), QColor(85, 1, 20)); // 2/3 and 20 1/3, rounded

    QImage halfEmpty(2, 1, QImage::Format_ARGB32);
    halfEmpty.setPixelColor(0, 0, QColor(200, 100, 50));
    halfEmpty.setPixelColor(1, 0, QColor(255, 255, 255, 0));
    QCOMPARE(averageColor(halfEmpty), QColor(100, 50, 25));

    QImage huge(4000, 4000, QImage::Format_RGB32);
    huge.fill(QColor(254, 253, 252));
    QCOMPARE(averageColor(huge), QColor(254, 253, 252));
}

void tst_ArtworkColor::pushes()
{
    for (const auto &[average, vibrant] :
         {std::pair(QColor(Qt::red), QColor::fromHsvF(0, 0.85F, 0.95F)), // stays below the limits
          {QColor::fromHsvF(0.5F, 0.4F, 0.5F), QColor::fromHsvF(0.5F, 0.5F, 0.54F)},
          {QColor::fromHsvF(0, 0, 0.5F), QColor::fromHsvF(0, 0, 0.54F)}, // grey has no hue
          {QColor(Qt::black), QColor(Qt::black)},
          {QColor(Qt::white), QColor::fromHsvF(0, 0, 0.95F)}}) {
        QCOMPARE(vibrantColor(average).name(), vibrant.name());
        QCOMPARE(vibrantColor(average).alpha(), 255);
    }
}

QTEST_GUILESS_MAIN(tst_ArtworkColor)
#include "tst_ArtworkColor.moc"
