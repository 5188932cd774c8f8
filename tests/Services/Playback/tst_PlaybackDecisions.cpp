#include "Services/Playback/PlaybackDecisions.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

using Status = MediaPlayer::TimeControlStatus;
constexpr auto notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr auto infinity = std::numeric_limits<double>::infinity();

Station live(const QString &title)
{
    Station station;
    station.genre = u"g"_s;
    station.title = title;
    return station;
}

Station listOf(int count, std::optional<qint64> index)
{
    Station station;
    station.genre = u"g"_s;
    station.trackIndex = index;
    station.tracks.emplace();
    for (int i = 0; i < count; ++i) {
        PlaylistTrack track;
        track.title = QString::number(i);
        station.tracks->append(track);
    }
    return station;
}

} // namespace

class tst_PlaybackDecisions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tick_data();
    void tick();
    void positions();
    void metadata_data();
    void metadata();
    void liveUpdateKeepsTheTrackList();
    void ring_data();
    void ring();
    void ringCarriesTheTracksText();
    void nowPlaying();
};

void tst_PlaybackDecisions::tick_data()
{
    QTest::addColumn<Status>("status");
    QTest::addColumn<bool>("isPlaying");
    QTest::addColumn<bool>("isBuffering");
    QTest::addColumn<bool>("wantsPlayback");
    QTest::addColumn<int>("outcome");
    const auto row = [](const char *name, Status status, bool playing, bool buffering, bool wants,
                        TickOutcome out) {
        QTest::newRow(name) << status << playing << buffering << wants << int(out);
    };
    row("pause arrives", Status::Paused, true, false, false, TickOutcome::UserPaused);
    row("stopped by itself", Status::Paused, true, false, true, TickOutcome::Nothing);
    row("paused already", Status::Paused, false, false, false, TickOutcome::Nothing);
    row("waiting at start", Status::WaitingToPlay, false, true, true, TickOutcome::Buffering);
    row("stall", Status::WaitingToPlay, true, false, true, TickOutcome::Buffering);
    row("waiting after a pause", Status::WaitingToPlay, false, false, false, TickOutcome::Nothing);
    row("waiting, pause not yet seen", Status::WaitingToPlay, true, false, false, TickOutcome::Buffering);
    row("first sound", Status::Playing, false, true, true, TickOutcome::ArrivedAtPlaying);
    row("sound again", Status::Playing, true, true, true, TickOutcome::ArrivedAtPlaying);
    row("goes on", Status::Playing, true, false, true, TickOutcome::Nothing);
    row("sound after an interruption", Status::Playing, false, false, true, TickOutcome::ArrivedAtPlaying);
}

void tst_PlaybackDecisions::tick()
{
    QFETCH(Status, status);
    QFETCH(bool, isPlaying);
    QFETCH(bool, isBuffering);
    QFETCH(bool, wantsPlayback);
    QTEST(int(tickOutcome(status, isPlaying, isBuffering, wantsPlayback)), "outcome");
}

void tst_PlaybackDecisions::positions()
{
    QCOMPARE(seekTarget(310, 300), 300.0);
    QCOMPARE(seekTarget(-1, 300), 0.0);
    QCOMPARE(seekTarget(42.5, 0), 42.5);
    QCOMPARE(seekTarget(notANumber, 300), 0.0);
    QCOMPARE(seekTarget(notANumber, 0), 0.0);
    QCOMPARE(seekTarget(infinity, 300), 300.0);
    for (const auto hidden : {0.0, -1.0, notANumber, infinity}) {
        QCOMPARE(publishedPosition(hidden), std::nullopt);
        QCOMPARE(publishedDuration(hidden), 0.0);
    }
    QCOMPARE(publishedPosition(0.5), 0.5);
    QCOMPARE(publishedDuration(180.25), 180.25);

    QVERIFY(!isJump(10, 10) && !isJump(10, 10.5) && !isJump(10, 12));
    QVERIFY(isJump(10, 9.9) && isJump(10, 12.1));
}

void tst_PlaybackDecisions::metadata_data()
{
    QTest::addColumn<Station>("old");
    QTest::addColumn<Station>("fresh");
    QTest::addColumn<bool>("override");
    QTest::addColumn<int>("outcome");
    const auto row = [](const char *name, const Station &old, const Station &fresh, bool override,
                        MetadataOutcome out) { QTest::newRow(name) << old << fresh << override << int(out); };
    auto otherAddress = live(u"a"_s);
    otherAddress.streamURL = u"/new"_s;
    auto otherArtist = live(u"a"_s);
    otherArtist.artist = u""_s;
    auto otherTitle = listOf(3, 1);
    otherTitle.title = u"new"_s;
    row("same live", live(u"a"_s), live(u"a"_s), false, MetadataOutcome::Nothing);
    row("new title", live(u"a"_s), live(u"b"_s), false, MetadataOutcome::LiveUpdate);
    row("absent is not empty", live(u"a"_s), otherArtist, false, MetadataOutcome::LiveUpdate);
    row("address is not compared", live(u"a"_s), otherAddress, false, MetadataOutcome::Nothing);
    row("server moved", listOf(3, 0), listOf(3, 1), false, MetadataOutcome::ServerRotation);
    row("user chose", listOf(3, 0), listOf(3, 1), true, MetadataOutcome::Nothing);
    row("absent moved to 0", listOf(3, {}), listOf(3, 0), false, MetadataOutcome::ServerRotation);
    row("list title is not compared", listOf(3, 1), otherTitle, false, MetadataOutcome::Nothing);
    row("no fresh tracks", listOf(3, 0), listOf(0, 1), false, MetadataOutcome::Nothing);
    row("live got tracks", live(u"a"_s), listOf(3, 1), false, MetadataOutcome::LiveUpdate);
}

void tst_PlaybackDecisions::metadata()
{
    QFETCH(Station, old);
    QFETCH(Station, fresh);
    QFETCH(bool, override);
    QTEST(int(metadataOutcome(old, fresh, override)), "outcome");
}

void tst_PlaybackDecisions::liveUpdateKeepsTheTrackList()
{
    const auto merged = withFreshMetadata(live(u"new"_s), listOf(3, 2));
    QCOMPARE(merged.title, u"new"_s);
    QCOMPARE(merged.tracks->size(), 3);
    QCOMPARE(merged.trackIndex, 2);
    const auto alone = withFreshMetadata(listOf(3, 2), {});
    QVERIFY(!alone.tracks && !alone.trackIndex);
}

void tst_PlaybackDecisions::ring_data()
{
    QTest::addColumn<QString>("index");
    QTest::addColumn<int>("delta");
    QTest::addColumn<int>("next");
    QTest::newRow("wraps forward") << u"2"_s << 1 << 0;
    QTest::newRow("wraps back") << u"0"_s << -1 << 2;
    QTest::newRow("absent counts as 0") << u""_s << 1 << 1;
    QTest::newRow("beyond the end") << u"7"_s << 1 << 2;
    QTest::newRow("just below zero") << u"-1"_s << -1 << 1;
}

void tst_PlaybackDecisions::ring()
{
    QFETCH(QString, index);
    QFETCH(int, delta);
    const auto station = listOf(3, index.isEmpty() ? std::nullopt : std::optional<qint64>(index.toInt()));
    QTEST(int(*shiftedTrack(station, delta).trackIndex), "next");
}

void tst_PlaybackDecisions::ringCarriesTheTracksText()
{
    auto station = listOf(2, 0);
    station.artist = u"old artist"_s;
    station.artworkURL = u"old art"_s;
    station.elapsedSeconds = 9;
    (*station.tracks)[1].title.reset();
    const auto next = shiftedTrack(station, 1);
    QVERIFY(!next.title && !next.artist && !next.elapsedSeconds);
    QCOMPARE(next.artworkURL, u"old art"_s);
    (*station.tracks)[1].artworkURL = u"new art"_s;
    QCOMPARE(shiftedTrack(station, 1).artworkURL, u"new art"_s);
}

void tst_PlaybackDecisions::nowPlaying()
{
    const auto nothing = nowPlayingInfo({}, {}, {});
    QCOMPARE(nothing.title, u"ناورین رادیو"_s);
    QCOMPARE(nothing.playbackRate, 0.0);
    QVERIFY(!nothing.artist && !nothing.albumTitle && nothing.identity.isEmpty());

    auto station = live(u"Googoosh - Pol"_s);
    station.serverName = u"رادیو"_s;
    auto info = nowPlayingInfo(station, {true, true, 300, 20}, {});
    QCOMPARE(info.title, u"Pol"_s);
    QCOMPARE(info.artist, u"Googoosh"_s);
    QCOMPARE(info.albumTitle, u"رادیو"_s);
    QVERIFY(info.isLiveStream && !info.duration && !info.elapsedTime);

    station.title = u"Pol"_s; // nobody's name: the station's stands in
    QCOMPARE(nowPlayingInfo(station, {}, {}).artist, u"رادیو"_s);

    const auto list = listOf(2, 1);
    QVERIFY(!nowPlayingInfo(list, {true, false, 0, 20}, {}).duration);
    info = nowPlayingInfo(list, {true, false, 300, 20}, {});
    QCOMPARE(info.duration, 300.0);
    QCOMPARE(info.elapsedTime, 20.0);
    QVERIFY(info.identity != nowPlayingInfo(listOf(2, 0), {}, {}).identity);

    QCOMPARE(artworkKey(list), u"g"_s);
    station.artworkURL = u"/c"_s;
    QCOMPARE(artworkKey(station), u"/c?v=Pol"_s);
}

QTEST_GUILESS_MAIN(tst_PlaybackDecisions)
#include "tst_PlaybackDecisions.moc"
