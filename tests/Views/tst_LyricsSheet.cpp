#include "Support/ServicesRig.h"
#include "Views/Lyrics/LyricsSheet.h"

#include <QStandardPaths>
#include <QTest>

#include <algorithm>
#include <limits>

using namespace navorin;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto untimed = std::nullopt;
constexpr auto huge = std::numeric_limits<double>::max();
using Times = QList<std::optional<double>>;

QList<LyricsLine> linesAt(const Times &times)
{
    QList<LyricsLine> lines;
    for (const auto &time : times)
        lines.append({time, u"بنی‌آدم feat. ۱۲"_s, {}});
    return lines;
}

Station live(const QString &title)
{
    Station station;
    station.genre = u"persian"_s;
    station.serverName = u"رادیو"_s;
    station.title = title;
    station.streamURL = u"/stream/persian"_s;
    return station;
}

Station list(std::optional<qint64> duration = {})
{
    Station station;
    station.genre = u"kavir"_s;
    station.tracks.emplace();
    for (const auto &title : {u"یک"_s, u"دو"_s}) {
        PlaylistTrack track;
        track.trackID = title;
        track.title = title;
        track.artist = u"گروه"_s;
        track.streamURL = u"/stream/kavir"_s;
        track.duration = duration;
        station.tracks->append(track);
    }
    return station;
}

QByteArray threeLines(const QByteArray &more = {})
{
    return R"({"data":{"found":true,"lines":[{"time":10,"text":"یک"},{"time":20,"text":"two"},)"
           R"({"time":30,"text":"سه","translation":"three"}])" +
           more + "}}";
}

/// A player that a test moves, and a clock of the same hours.
struct Rig : ServicesRig
{
    std::unique_ptr<LyricsSheet> sheet()
    {
        return std::make_unique<LyricsSheet>(
            list(), LyricsSheet::Sources{*player, *client, queue, [this] { return now; }});
    }
    /// What the engine reports while it plays.
    void hear(double seconds)
    {
        engine.status = MediaPlayer::TimeControlStatus::Playing;
        engine.observer(seconds);
        queue.drain();
    }
    /// The oldest request for words that waits; what else was asked for fails.
    FakeHttpSession::Exchange takeRequest()
    {
        while (http.exchanges.front().request.url.path() != u"/api/lyrics"_s)
            http.take().fail();
        return http.take();
    }
    void answerLyrics(const QByteArray &body)
    {
        takeRequest().answer(body);
        settle();
    }
    [[nodiscard]] qsizetype requests() const
    {
        return std::count_if(http.exchanges.begin(), http.exchanges.end(), [](const auto &exchange) {
            return exchange.request.url.path() == u"/api/lyrics"_s;
        });
    }
    void change(const Station &station)
    {
        select(station);
        hear(0);
    }
    void pass(std::chrono::milliseconds duration)
    {
        for (; duration > 0ms; duration -= 100ms) {
            now += 100ms;
            queue.advance(100ms);
        }
        queue.drain();
    }

    std::chrono::steady_clock::time_point now;
};

} // namespace

Q_DECLARE_METATYPE(Times)

class tst_LyricsSheet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void picksTheLine_data();
    void picksTheLine();
    void asks_data();
    void asks();
    void shows_data();
    void shows();
    void followsATrack();
    void followsALiveProgramme();
    void holdsALiveProgrammeOnPause();
    void fetchesAnewForEachTrack();
    void lastAnswerStays();
    void restsWhileNobodyLooks();
    void closedDuringAFetch();
};

void tst_LyricsSheet::picksTheLine_data()
{
    QTest::addColumn<Times>("times");
    QTest::addColumn<double>("position");
    QTest::addColumn<int>("active");
    const auto row = [](const char *name, const Times &times, double position, int active) {
        QTest::newRow(name) << times << position << active;
    };
    row("no lines", {}, 5, -1);
    row("before the first", {10, 20}, 9.79, -1);
    row("just reached", {10, 20}, 9.8, 0);
    row("shortly before it", {10, 20}, 9.85, 0);
    row("between two", {10, 20}, 15, 0);
    row("the last stays", {10, 20}, 1e9, 1);
    row("first without a time", {untimed, 10}, 50, -1);
    row("run ends in the middle", {10, 20, untimed, 40}, 50, 1);
    row("equal times: the later", {10, 10, 10, 20}, 12, 2);
    row("out of order behind a later one", {10, 30, 20}, 25, 0);
    row("out of order, all begun", {30, 10, 20}, 40, 2);
    row("negative times", {-5, -1, 3}, 0, 1);
    row("negative position", {0, 1}, -10, -1);
    row("huge", {0, huge, huge}, 1e300, 0);
}

void tst_LyricsSheet::picksTheLine()
{
    QFETCH(Times, times);
    QFETCH(double, position);
    QTEST(activeLine(linesAt(times), position), "active");
}

void tst_LyricsSheet::asks_data()
{
    QTest::addColumn<bool>("isLive");
    QTest::addColumn<qint64>("stated"); // -1 for none
    QTest::addColumn<double>("played");
    QTest::addColumn<QString>("duration");
    QTest::newRow("live") << true << qint64(-1) << 0.0 << u""_s;
    QTest::newRow("stated") << false << qint64(215) << 99.0 << u"215"_s;
    QTest::newRow("stated as 0, which wins") << false << qint64(0) << 99.0 << u""_s;
    QTest::newRow("the player's, cut") << false << qint64(-1) << 99.9 << u"99"_s;
    QTest::newRow("nobody knows") << false << qint64(-1) << 0.0 << u""_s;
    QTest::newRow("less than a second") << false << qint64(-1) << 0.4 << u""_s;
    QTest::newRow("no number") << false << qint64(-1) << std::numeric_limits<double>::infinity() << u""_s;
}

void tst_LyricsSheet::asks()
{
    QFETCH(bool, isLive);
    QFETCH(qint64, stated);
    QFETCH(double, played);
    const auto station =
        isLive ? live(u"حافظ - ساقی"_s) : list(stated < 0 ? std::nullopt : std::optional(stated));
    QFETCH(QString, duration);
    const QueryItems expected{{u"genre"_s, station.genre},
                              {u"title"_s, isLive ? u"ساقی"_s : u"یک"_s},
                              {u"artist"_s, isLive ? u"حافظ"_s : u"گروه"_s},
                              {u"duration"_s, duration}};
    QCOMPARE(lyricsQuery(station, played), expected);
}

void tst_LyricsSheet::shows_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("status");
    QTest::addColumn<LyricsSheet::Content>("content");
    const auto row = [](const char *name, const QByteArray &body, LyricsSheet::Content content,
                        int status = 200) { QTest::newRow(name) << body << status << content; };
    row("lines", threeLines(), LyricsSheet::Lines);
    row("lines of nothing", R"({"data":{"found":true,"lines":[{}]}})", LyricsSheet::Lines);
    row("not found", R"({"data":{"found":false,"lines":[{"text":"x"}]}})", LyricsSheet::NotFound);
    row("found is not stated", R"({"data":{"lines":[{"text":"x"}]}})", LyricsSheet::NotFound);
    row("no lines", R"({"data":{"found":true,"lines":[]}})", LyricsSheet::NotFound);
    row("without content", R"({"code":200,"message":"ok"})", LyricsSheet::Loading);
    row("a bad status", threeLines(), LyricsSheet::Failed, 500);
    row("rubbish", "<html>", LyricsSheet::Failed);
    row("a time that is no number", R"({"data":{"found":true,"lines":[{"time":NaN}]}})", LyricsSheet::Failed);
}

void tst_LyricsSheet::shows()
{
    QFETCH(QByteArray, body);
    QFETCH(int, status);
    Rig rig;
    rig.select(list());
    auto sheet = rig.sheet();
    sheet->appear();
    QCOMPARE(sheet->content(), LyricsSheet::Loading);
    QCOMPARE(rig.http.exchanges.front().request.url.path(), u"/api/lyrics"_s);
    rig.answer(body, status);
    QTEST(sheet->content(), "content");
    QCOMPARE(sheet->lines()->rowCount() > 0, sheet->content() == LyricsSheet::Lines);
}

void tst_LyricsSheet::followsATrack()
{
    Rig rig;
    rig.select(list());
    auto sheet = rig.sheet();
    sheet->appear();
    rig.answerLyrics(threeLines(R"(,"elapsed_seconds":25)"));
    QVERIFY(sheet->canSeek());
    QCOMPARE(sheet->activeIndex(), -1);
    rig.hear(15);
    QCOMPARE(sheet->activeIndex(), -1); // between two ticks nothing moves
    rig.pass(400ms);
    QCOMPARE(sheet->activeIndex(), 0);

    sheet->seekTo(2);
    QCOMPARE(rig.engine.calls.last(), u"seek 30"_s);
    rig.pass(400ms);
    QCOMPARE(sheet->activeIndex(), 2);
    rig.player->togglePlayPause();
    rig.pass(60s);
    QCOMPARE(sheet->activeIndex(), 2);
    rig.engine.calls.clear();
    sheet->seekTo(7);
    QVERIFY(rig.engine.calls.isEmpty());
}

void tst_LyricsSheet::followsALiveProgramme()
{
    Rig rig;
    rig.select(live(u"a - b"_s));
    rig.hear(0);
    auto sheet = rig.sheet();
    sheet->appear();
    rig.pass(5s); // the time on the road is not added
    rig.answerLyrics(threeLines(R"(,"elapsed_seconds":15.5)"));
    QCOMPARE(sheet->activeIndex(), 0);
    rig.hear(99); // the engine's position means nothing on a live station
    rig.pass(4s);
    QCOMPARE(sheet->activeIndex(), 0);
    rig.pass(400ms);
    QCOMPARE(sheet->activeIndex(), 1);
    sheet->seekTo(0);
    QVERIFY(!rig.engine.calls.join(u' ').contains(u"seek"_s));

    rig.change(live(u"a - c"_s));
    rig.pass(3s);
    rig.answerLyrics(threeLines()); // does not say how far: counted from when it was asked
    rig.pass(6s);
    QCOMPARE(sheet->activeIndex(), -1);
    rig.pass(1200ms);
    QCOMPARE(sheet->activeIndex(), 0);
}

void tst_LyricsSheet::holdsALiveProgrammeOnPause()
{
    Rig rig;
    rig.select(live(u"a - b"_s));
    rig.hear(0);
    auto sheet = rig.sheet();
    sheet->appear();
    rig.answerLyrics(threeLines(R"(,"elapsed_seconds":15)"));
    rig.pass(6s);
    QCOMPARE(sheet->activeIndex(), 1);
    rig.player->togglePlayPause();
    rig.pass(30s);
    QCOMPARE(sheet->activeIndex(), 1);
    rig.player->togglePlayPause();
    rig.hear(0);
    rig.pass(400ms);
    QCOMPARE(sheet->activeIndex(), 0); // back to the backend's last word
}

void tst_LyricsSheet::fetchesAnewForEachTrack()
{
    Rig rig;
    rig.select(list());
    auto sheet = rig.sheet();
    sheet->appear();
    rig.answerLyrics(threeLines());
    rig.hear(21);
    rig.pass(400ms);
    QCOMPARE(sheet->activeIndex(), 1);
    QCOMPARE(sheet->title(), u"یک"_s);

    rig.change(list()); // the same track once more
    QCOMPARE(rig.requests(), 0);
    QCOMPARE(sheet->content(), LyricsSheet::Lines);
    rig.player->nextTrack();
    rig.settle();
    QCOMPARE(sheet->title(), u"دو"_s);
    QCOMPARE(sheet->content(), LyricsSheet::Loading);
    QCOMPARE(sheet->activeIndex(), -1);
    rig.takeRequest().fail();
    rig.settle();
    QCOMPARE(sheet->content(), LyricsSheet::Failed);
    rig.player->nextTrack();
    rig.settle();
    QCOMPARE(sheet->content(), LyricsSheet::Loading);
    rig.answerLyrics(threeLines());
    QCOMPARE(sheet->content(), LyricsSheet::Lines);
}

void tst_LyricsSheet::lastAnswerStays()
{
    Rig rig;
    rig.select(list());
    auto sheet = rig.sheet();
    sheet->appear();
    auto first = rig.takeRequest();
    rig.player->nextTrack();
    rig.settle();
    rig.answerLyrics(threeLines());
    QCOMPARE(sheet->lines()->rowCount(), 3);
    first.answer(R"({"data":{"found":true,"lines":[{"time":0,"text":"late"}]}})");
    rig.settle();
    QCOMPARE(sheet->lines()->rowCount(), 1);
}

void tst_LyricsSheet::restsWhileNobodyLooks()
{
    Rig rig;
    rig.select(list());
    const auto timers = rig.queue.timerCount();
    auto sheet = rig.sheet();
    sheet->appear();
    QCOMPARE(rig.queue.timerCount(), timers);
    rig.answerLyrics(threeLines());
    QCOMPARE(rig.queue.timerCount(), timers + 1);
    sheet->setSeen(false);
    QCOMPARE(rig.queue.timerCount(), timers);
    rig.hear(12);
    sheet->setSeen(true);
    QCOMPARE(sheet->activeIndex(), 0); // at once
    const auto ticking = rig.queue.timerCount();
    sheet.reset();
    QCOMPARE(rig.queue.timerCount(), ticking - 1);
}

void tst_LyricsSheet::closedDuringAFetch()
{
    Rig rig;
    auto sheet = rig.sheet(); // nothing is selected
    sheet->appear();
    rig.select(list());
    rig.player->nextTrack();
    rig.settle();
    QCOMPARE(rig.requests(), 2);
    sheet.reset();
    rig.answerLyrics(threeLines());
    rig.answerLyrics(threeLines());
}

QTEST_MAIN(tst_LyricsSheet)
#include "tst_LyricsSheet.moc"
