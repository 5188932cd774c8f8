#include "ReferenceFrame.h"
#include "Services/Story/RowKernels.h"
#include "Services/Story/StoryGeometry.h"
#include "Services/Story/StoryPainter.h"
#include "Services/Story/StoryText.h"
#include "StorySamples.h"
#include "Support/Columns.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <random>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Frame
{
    [[nodiscard]] PlanarCanvas canvas()
    {
        return {luma.bytes.data(), blue.bytes.data(), red.bytes.data(), 720};
    }
    [[nodiscard]] bool operator==(const Frame &other) const
    {
        return luma.bytes == other.luma.bytes && blue.bytes == other.blue.bytes &&
               red.bytes == other.red.bytes;
    }

    Plane luma{{720, 1280}};
    Plane blue{{360, 640}};
    Plane red{{360, 640}};
};

double decibels(const Plane &a, const Plane &b, int from, int to)
{
    double sum = 0;
    for (int y = from; y < to; ++y) {
        for (int x = 0; x < a.width; ++x)
            sum += std::pow(int(a.row(y)[x]) - int(b.row(y)[x]), 2);
    }
    return sum == 0 ? 99 : 10 * std::log10(255.0 * 255.0 * (to - from) * a.width / sum);
}

} // namespace

class tst_StoryPainter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { loadAppFonts(); }
    void matchesTheReference_data();
    void matchesTheReference();
    void isAPureFunction();
    void anyCover_data();
    void anyCover();
    void texts_data();
    void texts();
    void kernelsAgree();
};

void tst_StoryPainter::matchesTheReference_data()
{
    addColumns<StoryConfig, double>("config", "t");
    const auto story = sampleStory(sampleCover({600, 600}));
    QTest::newRow("first frame, a line fading in over its translation") << story << 0.0;
    QTest::newRow("half faded in") << story << 4 / 24.0;
    QTest::newRow("two lines of mixed scripts") << story << 2.5;
    QTest::newRow("smallest and highest") << story << 59.5;
    QTest::newRow("no cover") << sampleStory({}) << 1.0;
    QTest::newRow("a cover finer than the canvas") << sampleStory(sampleCover({1000, 1100})) << 4.875;
}

void tst_StoryPainter::matchesTheReference()
{
    const auto [config, t] = fetched<StoryConfig, double>("config", "t");
    Frame frame;
    StoryPainter(config).drawFrame(frame.canvas(), t);
    const auto reference = planarPicture(referenceFrame(config, t));
    const auto luma = decibels(frame.luma, reference.luma, 0, 1280);
    const auto lyrics = decibels(frame.luma, reference.luma, 720, 904);
    const auto names = decibels(frame.luma, reference.luma, 1040, 1218);
    const auto chroma =
        std::min(decibels(frame.blue, reference.blue, 0, 640), decibels(frame.red, reference.red, 0, 640));
    qInfo("PSNR: luma %.1f dB, lyrics %.1f, names %.1f, chroma %.1f", luma, lyrics, names, chroma);
    QVERIFY(luma >= 40 && lyrics >= 40 && names >= 40 && chroma >= 40);
}

void tst_StoryPainter::isAPureFunction()
{
    const auto story = sampleStory(sampleCover({300, 300}));
    StoryPainter painter(story);
    Frame first;
    painter.drawFrame(first.canvas(), 0.5);
    Frame used;
    for (const double t : {4.9, 1.7, 0.5}) // over other frames and lines, and back in time
        painter.drawFrame(used.canvas(), t);
    QVERIFY(used == first);
}

void tst_StoryPainter::anyCover_data()
{
    addColumns<QImage, bool>("cover", "isVisible");
    QImage clear(500, 500, QImage::Format_ARGB32);
    clear.fill(Qt::transparent);
    QTest::newRow("a single pixel") << sampleCover({1, 1}) << true;
    QTest::newRow("an odd strip") << sampleCover({3, 777}) << true;
    QTest::newRow("8000 x 8000") << sampleCover({80, 80}).scaled(8000, 8000) << true;
    QTest::newRow("nothing but transparency") << clear << false;
}

void tst_StoryPainter::anyCover()
{
    const auto [cover, isVisible] = fetched<QImage, bool>("cover", "isVisible");
    Frame with;
    StoryPainter(sampleStory(cover)).drawFrame(with.canvas(), 46.5);
    Frame without;
    StoryPainter(sampleStory({})).drawFrame(without.canvas(), 46.5);
    // The middle of the cover, and below it, where only its blur shines.
    QCOMPARE(std::abs(with.luma.row(400)[360] - without.luma.row(400)[360]) > 8, isVisible);
    QCOMPARE(with.luma.row(960)[360] != without.luma.row(960)[360], isVisible);
    QVERIFY(decibels(with.luma, without.luma, 1040, 1100) > 15);
}

void tst_StoryPainter::texts_data()
{
    // lowest: the last row of the box with ink
    addColumns<QString, int, bool>("text", "lowest", "isCentered");
    QTest::newRow("empty") << QString() << 0 << true;
    QTest::newRow("one line stands at the top") << u"دل"_s << 53 << true;
    QTest::newRow("wraps at a word") << u"باران گرفت و کوچه پر از بوی خاک شد"_s << 106 << true;
    QTest::newRow("a third line is left out")
        << u"باران گرفت و کوچه پر از بوی خاک شد "_s.repeated(60) << 106 << true;
    QTest::newRow("2000 letters without a blank") << u"ا"_s.repeated(2000) << 106 << false;
    // Where no font has them the first or last of them is a gap.
    QTest::newRow("emoji") << u"سلام 👋🏽 دنیا 🌍"_s << 60 << false;
    QTest::newRow("line breaks") << u"یک\nدو\nسه"_s << 106 << true;
}

void tst_StoryPainter::texts()
{
    const auto [text, lowest, isCentered] = fetched<QString, int, bool>("text", "lowest", "isCentered");
    const auto picture = storyText(text, storyLineStyle, Qt::white);
    QCOMPARE(picture.size(), storyLineStyle.box.size());
    QRect ink;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qAlpha(picture.pixel(x, y)) > 0)
                ink |= QRect(x, y, 1, 1);
        }
    }
    QCOMPARE(ink.isEmpty(), text.isEmpty());
    QVERIFY(ink.bottom() <= lowest);
    QVERIFY(text.isEmpty() || lowest - ink.bottom() < 40); // it uses its last line
    if (isCentered && !text.isEmpty())
        QVERIFY(std::abs(ink.center().x() - 300) < 12);
}

void tst_StoryPainter::kernelsAgree()
{
    const auto fast = avx2SampleKernel();
    if (!fast)
        QSKIP("this processor has no AVX2");
    std::mt19937 random(7);
    std::vector<std::uint16_t> row(1153);
    for (auto &value : row)
        value = std::uint16_t(random() % (255 * tapSteps + 1));
    std::vector<std::int32_t> index(720);
    std::vector<std::uint32_t> weights(720);
    for (std::size_t i = 0; i < index.size(); ++i) {
        const auto nearness = random() % tapSteps;
        index[i] = std::int32_t(random() % 1152);
        weights[i] = std::uint32_t((tapSteps - nearness) | nearness << 16);
    }
    std::vector<std::uint8_t> plain(720);
    std::vector<std::uint8_t> quick(720);
    sampleRowPortable(row.data(), {index.data(), weights.data(), 720}, plain.data());
    fast(row.data(), {index.data(), weights.data(), 720}, quick.data());
    QCOMPARE(quick, plain);
}

QTEST_MAIN(tst_StoryPainter)
#include "tst_StoryPainter.moc"
