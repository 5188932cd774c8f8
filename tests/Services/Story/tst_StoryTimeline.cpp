#include "Services/Story/StoryGeometry.h"
#include "Services/Story/StoryTimeline.h"

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
    LyricsLine made;
    made.time = time;
    made.text = std::move(text);
    made.translation = std::move(translation);
    return made;
}

StoryConfig story(const QList<LyricsLine> &lines, qsizetype start, qsizetype end, double duration)
{
    StoryConfig config;
    config.lines = lines;
    config.startLine = start;
    config.endLine = end;
    config.duration = duration;
    return config;
}

} // namespace

class tst_StoryTimeline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lengths_data();
    void lengths();
    void timings_data();
    void timings();
    void lineAtATime_data();
    void lineAtATime();
    void fading_data();
    void fading();
    void motion();
};

void tst_StoryTimeline::lengths_data()
{
    QTest::addColumn<double>("duration");
    QTest::addColumn<double>("length");
    QTest::addColumn<int>("frames");
    QTest::newRow("short") << 2.0 << 3.0 << 72;
    QTest::newRow("shortest") << 3.0 << 3.0 << 72;
    QTest::newRow("truncated") << 10.99 << 10.99 << 263;
    QTest::newRow("long") << 200.0 << 60.0 << 1440;
    QTest::newRow("endless") << infinity << 60.0 << 1440;
    QTest::newRow("negative") << -infinity << 3.0 << 72;
    QTest::newRow("no number") << notANumber << 3.0 << 72;
}

void tst_StoryTimeline::lengths()
{
    QFETCH(double, duration);
    QTEST(storyLength(duration), "length");
    QTEST(storyFrameCount(duration), "frames");
}

void tst_StoryTimeline::timings_data()
{
    QTest::addColumn<StoryConfig>("config");
    QTest::addColumn<qsizetype>("first");
    QTest::addColumn<QList<double>>("starts");
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

void tst_StoryTimeline::lineAtATime_data()
{
    QTest::addColumn<double>("t");
    QTest::addColumn<QString>("text"); ///< null for none
    QTest::addColumn<double>("start");
    QTest::newRow("before") << -0.1 << QString() << 0.0;
    QTest::newRow("no number") << notANumber << QString() << 0.0;
    QTest::newRow("first") << 0.0 << u"b"_s << 0.0;
    QTest::newRow("to the last moment") << 1.999 << u"b"_s << 0.0;
    QTest::newRow("exactly") << 2.0 << u"c"_s << 2.0;
    QTest::newRow("the later of two at one time") << 5.0 << u"e"_s << 5.0;
    QTest::newRow("to the end") << 1e6 << u"e"_s << 5.0;
}

void tst_StoryTimeline::lineAtATime()
{
    QFETCH(double, t);
    QFETCH(QString, text);
    QFETCH(double, start);
    const auto config = story({line(1.0, u"a"_s), line(2.0, u"b"_s), line(4.0, u"c"_s), line(7.0, u"d"_s),
                               line(7.0, u"e"_s, u"f"_s)},
                              1, 4, 9);
    const auto current = currentLine(computeLineTimings(config), config, t);
    QCOMPARE(current.has_value(), !text.isNull());
    if (!current)
        return;
    QCOMPARE(current->text, text);
    QCOMPARE(current->start, start);
    QCOMPARE(current->translation, text == u"e" ? u"f"_s : QString());
    QVERIFY(!currentLine({}, config, t));
}

void tst_StoryTimeline::fading_data()
{
    QTest::addColumn<double>("age");
    QTest::addColumn<double>("alpha");
    QTest::newRow("before") << -1.0 << 0.25;
    QTest::newRow("at its start") << 0.0 << 0.25;
    QTest::newRow("half way") << 0.175 << 0.625;
    QTest::newRow("full") << 0.35 << 1.0;
    QTest::newRow("long since") << 30.0 << 1.0;
}

void tst_StoryTimeline::fading()
{
    QFETCH(double, age);
    QTEST(lineAlpha(age), "alpha");
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
