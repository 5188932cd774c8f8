#include "Services/Story/StoryGeometry.h"
#include "Services/Story/StoryTimeline.h"
#include "Support/Columns.h"

#include <QTest>

#include <limits>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

LyricsLine line(std::optional<double> time, std::optional<QString> text = {},
                std::optional<QString> translation = {})
{
    return {time, std::move(text), std::move(translation)};
}

StoryConfig story(const QList<LyricsLine> &lines, qsizetype start, qsizetype end, double duration)
{
    return {.lines = lines, .startLine = start, .endLine = end, .duration = duration};
}

} // namespace

class tst_StoryTimeline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lengths();
    void timings_data();
    void timings();
    void lineAtATime();
    void fading();
    void motion();
};

void tst_StoryTimeline::lengths()
{
    const std::tuple<double, double, int> cases[]{
        // wished for, given, and in frames
        {2, 3, 72},           {10.99, 10.99, 263}, {200, 60, 1440},
        {infinity, 60, 1440}, {-infinity, 3, 72},  {notANumber, 3, 72},
    };
    for (const auto &[duration, length, frames] : cases) {
        QCOMPARE(storyLength(duration), length);
        QCOMPARE(storyFrameCount(duration), frames);
    }
}

void tst_StoryTimeline::timings_data()
{
    addColumns<StoryConfig, qsizetype, QList<double>>("config", "first", "starts");
    const QList timed{line(42.5), line(45.0), line(40.0), line(110.0)};
    QTest::newRow("from the first line's time, whatever the duration")
        << story(timed, 0, 3, 10) << qsizetype(0) << QList{0.0, 2.5, 0.0, 67.5};
    QTest::newRow("beyond the list") << story(timed, 9, 12, 10) << qsizetype(3) << QList{0.0};
    QTest::newRow("end before start") << story(timed, 1, 0, 10) << qsizetype(1) << QList{0.0};
    QTest::newRow("negative") << story(timed, -4, -1, 10) << qsizetype(0) << QList{0.0};
    QTest::newRow("an untimed line outside of the range counts nothing")
        << story({line(1.0), line(3.0), line({})}, 0, 1, 10) << qsizetype(0) << QList{0.0, 2.0};
    // 6 at least, and the family is one character: 6, 8 and 10 of 24
    QTest::newRow("by length") << story({line(1.0, u"x"_s), line({}, u"چهار"_s, u"four"_s),
                                         line(2.0, u"👨‍👩‍👧ده‌تا"_s, u"abcde"_s)},
                                        0, 2, 24)
                               << qsizetype(0) << QList{0.0, 6.0, 14.0};
    QTest::newRow("by length over the limited duration")
        << story({line({}), line({})}, 0, 1, 500) << qsizetype(0) << QList{0.0, 30.0};
}

void tst_StoryTimeline::timings()
{
    QFETCH(StoryConfig, config);
    const auto timings = computeLineTimings(config);
    QTEST(timings.first, "first");
    QTEST(timings.starts, "starts");
}

void tst_StoryTimeline::lineAtATime()
{
    const auto config = story({line(1.0, u"a"_s), line(2.0, u"b"_s), line(4.0, u"c"_s), line(7.0, u"d"_s),
                               line(7.0, u"e"_s, u"f"_s)},
                              1, 4, 9);
    const std::tuple<double, QString, double> cases[]{
        // t, and the line, if any, with its start
        {-0.1, {}, 0},      {notANumber, {}, 0}, {0.0, u"b"_s, 0},
        {1.999, u"b"_s, 0}, {2.0, u"c"_s, 2},    {5.0, u"e"_s, 5}, // the later of two at one time
        {1e6, u"e"_s, 5},
    };
    for (const auto &[t, text, start] : cases) {
        const auto current = currentLine(computeLineTimings(config), config, t);
        QCOMPARE(current.has_value(), !text.isNull());
        if (!current)
            continue;
        QCOMPARE(current->text, text);
        QCOMPARE(current->start, start);
        QCOMPARE(current->translation, text == u"e" ? u"f"_s : QString());
    }
    QVERIFY(!currentLine({}, config, 0));
}

void tst_StoryTimeline::fading()
{
    for (const auto &[age, alpha] :
         {std::pair(-1.0, 0.25), {0.0, 0.25}, {0.175, 0.625}, {0.35, 1.0}, {30.0, 1.0}})
        QCOMPARE(lineAlpha(age), alpha);
}

void tst_StoryTimeline::motion()
{
    QCOMPARE(storyGlowAlpha(0), 0.14);
    QCOMPARE(storyGlowAlpha(2.25), 0.22);
    QCOMPARE(storyCoverRect(0), QRectF(-17.4, 409.6 - 377.4, 754.8, 754.8));
    QCOMPARE(storyCoverRect(3.25).width(), 769.6); // a quarter of 13 s
    QCOMPARE(storyCoverRect(9.75).width(), 740.0);
    QCOMPARE(storyCoverRect(2.5).center().y(), 419.6);
    for (double t = 0; t < 60; t += 0.25)
        QVERIFY(storyCoverRect(t).left() < -9.9 && storyCoverRect(t).right() > 729.9);
}

QTEST_APPLESS_MAIN(tst_StoryTimeline)
#include "tst_StoryTimeline.moc"
