#include "Services/Playback/PlaybackDecisions.h"

#include <QTest>

#include <limits>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

using Status = MediaPlayer::TimeControlStatus;
constexpr auto notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr auto infinity = std::numeric_limits<double>::infinity();

Station live(const QString &title)
{
    return {.genre = u"g"_s, .title = title};
}

Station listOf(int count, std::optional<qint64> index)
{
    Station station{.genre = u"g"_s, .trackIndex = index, .tracks = QList<PlaylistTrack>()};
    for (int i = 0; i < count; ++i)
        station.tracks->append(PlaylistTrack{.title = QString::number(i)});
    return station;
}

} // namespace

class tst_PlaybackDecisions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tick();
    void positions();
    void metadata();
    void liveUpdateKeepsTheTrackList();
    void ringCarriesTheTracksText();
    void nowPlaying();
};

void tst_PlaybackDecisions::tick()
{
    using Outcome = TickOutcome;
    const struct
    {
        const char *name;
        Status status;
        bool isPlaying, isBuffering, wantsPlayback;
        Outcome outcome;
    } cases[]{
        {"pause arrives", Status::Paused, true, false, false, Outcome::UserPaused},
        {"stopped by itself", Status::Paused, true, false, true, Outcome::Nothing},
        {"paused already", Status::Paused, false, false, false, Outcome::Nothing},
        {"waiting at start", Status::WaitingToPlay, false, true, true, Outcome::Buffering},
        {"stall", Status::WaitingToPlay, true, false, true, Outcome::Buffering},
        {"waiting after a pause", Status::WaitingToPlay, false, false, false, Outcome::Nothing},
        {"waiting, pause not yet seen", Status::WaitingToPlay, true, false, false, Outcome::Buffering},
        {"first sound", Status::Playing, false, true, true, Outcome::ArrivedAtPlaying},
        {"sound again", Status::Playing, true, true, true, Outcome::ArrivedAtPlaying},
        {"goes on", Status::Playing, true, false, true, Outcome::Nothing},
        {"sound after an interruption", Status::Playing, false, false, true, Outcome::ArrivedAtPlaying},
    };
    for (const auto &each : cases)
        QVERIFY2(tickOutcome(each.status, each.isPlaying, each.isBuffering, each.wantsPlayback) ==
                     each.outcome,
                 each.name);
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

    QVERIFY(!isJump(10, 10) && !isJump(10, 10.5) && !isJump(10, 12) && isJump(10, 9.9) && isJump(10, 12.1));
}

void tst_PlaybackDecisions::metadata()
{
    using Outcome = MetadataOutcome;
    auto otherAddress = live(u"a"_s);
    otherAddress.streamURL = u"/new"_s;
    auto otherArtist = live(u"a"_s);
    otherArtist.artist = u""_s;
    auto otherTitle = listOf(3, 1);
    otherTitle.title = u"new"_s;
    const std::tuple<const char *, Station, Station, bool, Outcome> cases[]{
        {"same live", live(u"a"_s), live(u"a"_s), false, Outcome::Nothing},
        {"new title", live(u"a"_s), live(u"b"_s), false, Outcome::LiveUpdate},
        {"absent is not empty", live(u"a"_s), otherArtist, false, Outcome::LiveUpdate},
        {"address is not compared", live(u"a"_s), otherAddress, false, Outcome::Nothing},
        {"server moved", listOf(3, 0), listOf(3, 1), false, Outcome::ServerRotation},
        {"user chose", listOf(3, 0), listOf(3, 1), true, Outcome::Nothing},
        {"absent moved to 0", listOf(3, {}), listOf(3, 0), false, Outcome::ServerRotation},
        {"list title is not compared", listOf(3, 1), otherTitle, false, Outcome::Nothing},
        {"no fresh tracks", listOf(3, 0), listOf(0, 1), false, Outcome::Nothing},
        {"live got tracks", live(u"a"_s), listOf(3, 1), false, Outcome::LiveUpdate},
    };
    for (const auto &[name, old, fresh, override, outcome] : cases)
        QVERIFY2(metadataOutcome(old, fresh, override) == outcome, name);
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

void tst_PlaybackDecisions::ringCarriesTheTracksText()
{
    auto station = listOf(2, 0);
    station.artist = u"old artist"_s;
    station.artworkURL = u"old art"_s;
    station.elapsedSeconds = 9;
    (*station.tracks)[1].title.reset();
    QCOMPARE(shiftedTrack(listOf(3, {}), 1).trackIndex, 1); // absent counts as 0
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
