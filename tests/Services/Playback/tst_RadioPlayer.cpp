#include "RadioPlayerRig.h"

#include <QSignalSpy>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto connecting = u"در حال اتصال…"_s;
const auto fetchingTracks = u"در حال دریافت لیست آهنگها…"_s;
const auto noAddress = u"آدرس پخش نامعتبر"_s;

QStringList loading(const QString &path)
{
    return {u"replace https://a.example"_s + path, u"play"_s};
}

Station bareSongsara(const QString &id)
{
    auto station = liveStation(u"songsara-"_s + id);
    station.source = u"songsara"_s;
    return station;
}

} // namespace

class tst_RadioPlayer : public QObject, protected RadioPlayerRig
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_rig.emplace(); }
    void cleanup() { m_rig.reset(); }

    void selectingALiveStation();
    void withoutAnAddressNothingElseChanges();
    void hydration();
    void secondSelectionDuringHydration();
    void theLastTrackListTakesOver();
    void offlineFirst();
    void bindsATapToEachItem();
    void pauseAndResume();
    void playWithoutAnItemSelectsAgain();
    void seeking();
    void followsTheEngine();
    void pollsOnlyWhilePlaying();
    void liveUpdateLeavesTheSoundAlone();
    void serverRotationRestarts();
    void walksTheRing();
    void endOfItem();
};

void tst_RadioPlayer::selectingALiveStation()
{
    select(liveStation(u"a"_s));
    QCOMPARE(m_rig->player->currentStation()->genre, u"a"_s);
    QCOMPARE(m_rig->player->statusText(), connecting);
    QVERIFY(m_rig->player->isBuffering() && !m_rig->player->isPlaying() && m_rig->player->isLive());
    QCOMPARE(m_rig->engine.takeCalls(), loading(u"/stream/a"_s));
    QVERIFY(m_rig->playersHttp.exchanges.empty());

    select(listStation(0));
    QVERIFY(m_rig->player->isLive());
    select(listStation(2));
    QVERIFY(!m_rig->player->isLive());
}

void tst_RadioPlayer::withoutAnAddressNothingElseChanges()
{
    listenTo(liveStation(u"a"_s), 3);
    auto station = liveStation(u"b"_s);
    station.streamURL = u"http://[bad"_s;
    select(station);
    QCOMPARE(m_rig->player->statusText(), noAddress);
    QCOMPARE(m_rig->player->currentStation()->genre, u"b"_s);
    QVERIFY(m_rig->player->isPlaying() && !m_rig->player->isBuffering() &&
            m_rig->engine.takeCalls().isEmpty());
}

void tst_RadioPlayer::hydration()
{
    select(bareSongsara(u"7"_s));
    QCOMPARE(m_rig->player->statusText(), fetchingTracks);
    QVERIFY(m_rig->engine.takeCalls().isEmpty());
    QCOMPARE(m_rig->playersHttp.exchanges.front().request.url.path(), u"/api/songsara/playlist/7"_s);
    answerStations(R"({"genre":"other","tracks":[{"id":1},{"id":2}]})");
    QCOMPARE(m_rig->player->currentStation()->genre, u"songsara-7"_s);
    QCOMPARE(m_rig->engine.takeCalls(), loading(u"/stream/songsara-7?track=0"_s));
    QVERIFY(!m_rig->player->isLive() && !TestAccess::localTrackOverride(*m_rig->player));

    select(bareSongsara(u"8"_s));
    m_rig->playersHttp.take().fail();
    m_rig->settle();
    QCOMPARE(m_rig->engine.takeCalls(), loading(u"/stream/songsara-8"_s));
    QVERIFY(m_rig->player->isLive());
    select(bareSongsara(u"8"_s));
    QCOMPARE(m_rig->playersHttp.exchanges.size(), std::size_t(1)); // the next selection is the retry
}

void tst_RadioPlayer::secondSelectionDuringHydration()
{
    select(bareSongsara(u"7"_s));
    select(bareSongsara(u"7"_s));
    QCOMPARE(m_rig->playersHttp.exchanges.size(), std::size_t(1));
    QCOMPARE(m_rig->engine.takeCalls(), loading(u"/stream/songsara-7"_s));
    answerStations(R"({"genre":"x","tracks":[{"id":1}]})");
    QCOMPARE(m_rig->engine.takeCalls(), loading(u"/stream/songsara-7?track=0"_s));
}

void tst_RadioPlayer::theLastTrackListTakesOver()
{
    select(bareSongsara(u"1"_s));
    select(bareSongsara(u"2"_s));
    select(liveStation(u"c"_s));
    auto first = m_rig->playersHttp.take();
    answerStations(R"({"genre":"x","tracks":[{"id":2}]})");
    first.answer(R"({"data":[{"genre":"x","tracks":[{"id":1}]}]})");
    m_rig->settle();
    QCOMPARE(m_rig->player->currentStation()->genre, u"songsara-1"_s);
    QCOMPARE(m_rig->engine.item->url.path(), u"/stream/songsara-1"_s);
}

void tst_RadioPlayer::offlineFirst()
{
    const auto folder = QString(m_rig->files.applicationSupportFolder() + u"/OfflineTracks"_s);
    QVERIFY(m_rig->files.writeAtomically(folder + u"/A.mp3"_s, "sound"));
    QVERIFY(m_rig->files.writeAtomically(
        m_rig->files.applicationSupportFolder() + u"/offline_index.json"_s,
        R"([{"key":"track|1","title":"t","artist":"","audioFileName":"A.mp3","sizeBytes":5,"downloadedAt":1.5}])"));
    m_rig->makePlayer();

    select(listStation(2, 1));
    QVERIFY(m_rig->engine.item->url.isLocalFile());
    QVERIFY(m_rig->engine.item->url.path().endsWith(u"/OfflineTracks/A.mp3"_s));
    QVERIFY(m_rig->files.remove(folder + u"/A.mp3"_s));
    select(listStation(2, 1));
    QCOMPARE(m_rig->engine.item->url.toString(), u"https://a.example/stream/list?track=1"_s);
}

void tst_RadioPlayer::bindsATapToEachItem()
{
    select(liveStation(u"a"_s));
    const auto replaced = m_rig->engine.item;
    m_rig->queue.drain();
    select(liveStation(u"b"_s));
    m_rig->queue.drain();
    const auto current = m_rig->engine.item;
    replaced->finishTracks({{4}});
    current->finishTracks({{1}, {2}});
    m_rig->queue.drain();
    QVERIFY(replaced->tap && current->tap && replaced->tap != current->tap);

    select(liveStation(u"silent"_s));
    m_rig->queue.drain();
    m_rig->engine.item->finishTracks({});
    m_rig->queue.drain();
    QVERIFY(!m_rig->engine.item->tap);
    select(liveStation(u"broken"_s)); // cleanup() fails its tracks
}

void tst_RadioPlayer::pauseAndResume()
{
    select(liveStation(u"a"_s));
    m_rig->engine.takeCalls();
    m_rig->player->togglePlayPause(); // still connecting: a further request to play, not a cancel
    QCOMPARE(m_rig->engine.takeCalls(), QStringList({u"play"_s}));
    tick(Status::Playing, 1);
    m_rig->player->togglePlayPause();
    QCOMPARE(m_rig->engine.takeCalls(), QStringList({u"pause"_s}));
    QVERIFY(!m_rig->player->isPlaying() && !m_rig->player->isBuffering() &&
            !TestAccess::wantsPlayback(*m_rig->player));
    m_rig->player->togglePlayPause();
    QCOMPARE(m_rig->engine.takeCalls(), QStringList({u"play"_s}));
    QVERIFY(m_rig->player->isBuffering() && TestAccess::wantsPlayback(*m_rig->player));
}

void tst_RadioPlayer::playWithoutAnItemSelectsAgain()
{
    m_rig->player->play();
    QVERIFY(m_rig->player->isBuffering()); // with neither item nor station nothing clears it
    auto station = liveStation(u"a"_s);
    station.streamURL.reset();
    select(station);
    QVERIFY(!m_rig->engine.item);
    m_rig->engine.takeCalls();
    m_rig->player->play();
    QVERIFY(m_rig->engine.takeCalls().isEmpty());
    m_rig->queue.drain();
    QCOMPARE(m_rig->player->statusText(), noAddress);
}

void tst_RadioPlayer::seeking()
{
    select(listStation(2, 0));
    m_rig->engine.item->length = 300;
    tick(Status::Playing, 10);
    m_rig->engine.takeCalls();
    m_rig->player->skip(10);
    QCOMPARE(m_rig->player->currentTime(), 20.0);
    m_rig->player->seek(999);
    m_rig->player->seek(-4);
    QCOMPARE(m_rig->engine.takeCalls(), QStringList({u"seek 20"_s, u"seek 300"_s, u"seek 0"_s}));

    listenTo(liveStation(u"a"_s), 5);
    m_rig->player->skip(10);
    QVERIFY(m_rig->engine.takeCalls().isEmpty());
    m_rig->player->seek(50);
    QCOMPARE(m_rig->engine.takeCalls(), QStringList({u"seek 50"_s}));
}

void tst_RadioPlayer::followsTheEngine()
{
    const QSignalSpy played(m_rig->player.get(), &RadioPlayer::isPlayingChanged);
    tick(Status::Playing, 9); // no item: nothing to tell of
    QCOMPARE(m_rig->player->currentTime(), 0.0);

    select(listStation(2, 0));
    m_rig->engine.item->length = 180;
    tick(Status::WaitingToPlay, 0);
    QVERIFY(m_rig->player->isBuffering() && !m_rig->player->isPlaying());
    m_rig->engine.item->failure = u"404"_s;
    tick(Status::WaitingToPlay);
    QVERIFY(m_rig->player->isBuffering() && !m_rig->player->isPlaying());
    QCOMPARE(m_rig->player->statusText(), connecting);
    m_rig->engine.item->failure.reset();
    tick(Status::Playing, 2.5);
    QVERIFY(!m_rig->player->isBuffering() && m_rig->player->isPlaying());
    QCOMPARE(m_rig->player->statusText(), u""_s);
    QCOMPARE(m_rig->player->currentTime(), 2.5);
    QCOMPARE(m_rig->player->duration(), 180.0);
    tick(Status::WaitingToPlay, 3);
    QVERIFY(m_rig->player->isBuffering() && m_rig->player->isPlaying());
    tick(Status::Playing, 3.5);
    QCOMPARE(played.count(), 1);

    select(liveStation(u"a"_s));
    tick(Status::WaitingToPlay, 0);
    QVERIFY(m_rig->player->isPlaying()); // the button stays a pause button while the next one connects
    QCOMPARE(m_rig->player->currentTime(), 3.5);
    QCOMPARE(m_rig->player->duration(), 0.0);
}

void tst_RadioPlayer::pollsOnlyWhilePlaying()
{
    select(liveStation(u"a"_s));
    m_rig->queue.advance(60s);
    QVERIFY(m_rig->playersHttp.exchanges.empty());
    tick(Status::Playing, 1); // each arrival asks once
    QCOMPARE(m_rig->playersHttp.exchanges.size(), std::size_t(1));
    tick(Status::WaitingToPlay, 2);
    tick(Status::Playing, 3);
    QCOMPARE(m_rig->playersHttp.exchanges.size(), std::size_t(2));
    QCOMPARE(m_rig->queue.timerCount(), 1);
    m_rig->queue.advance(15s);
    QCOMPARE(m_rig->playersHttp.exchanges.size(), std::size_t(3));
    m_rig->player->togglePlayPause();
    m_rig->queue.advance(60s);
    QCOMPARE(m_rig->playersHttp.exchanges.size(), std::size_t(3));
}

void tst_RadioPlayer::liveUpdateLeavesTheSoundAlone()
{
    listenTo(liveStation(u"a"_s));
    answerStations(
        R"({"genre":"b","title":"no"},{"genre":"a","title":"new","artist":"x","artwork_url":"/w"})");
    QCOMPARE(m_rig->player->currentStation()->title, u"new"_s);
    QCOMPARE(m_rig->player->currentStation()->artist, u"x"_s);
    QVERIFY(m_rig->engine.takeCalls().isEmpty());
    m_rig->playersHttp.take().fail(); // the artwork
    m_rig->settle();

    m_rig->queue.advance(15s);
    answerStations(R"({"genre":"b"})"); // gone from the catalogue: stays as it is
    QCOMPARE(m_rig->player->currentStation()->title, u"new"_s);
}

void tst_RadioPlayer::serverRotationRestarts()
{
    select(listStation(3)); // no index of the user's own
    tick(Status::Playing, 1);
    m_rig->engine.takeCalls();
    answerStations(R"({"genre":"list","track_index":2,"tracks":[{"id":1},{"id":2},{"id":3}]})");
    QCOMPARE(m_rig->engine.takeCalls(), loading(u"/stream/list?track=2"_s));

    m_rig->player->nextTrack(); // from here on the user owns the position
    tick(Status::Playing, 1);
    m_rig->engine.takeCalls();
    while (m_rig->playersHttp.exchanges.size() > 1)
        m_rig->playersHttp.take().fail();
    answerStations(R"({"genre":"list","track_index":1,"tracks":[{"id":1},{"id":2},{"id":3}]})");
    QVERIFY(m_rig->engine.takeCalls().isEmpty());
}

void tst_RadioPlayer::walksTheRing()
{
    select(listStation(3, 2));
    m_rig->player->nextTrack();
    QCOMPARE(m_rig->player->currentStation()->trackIndex, 0);
    tick(Status::Playing, 5);
    m_rig->player->previousTrack(); // exactly 5 s still steps back
    QCOMPARE(m_rig->player->currentStation()->trackIndex, 2);
    tick(Status::Playing, 8);
    m_rig->engine.takeCalls();
    m_rig->player->previousTrack();
    QCOMPARE(m_rig->engine.takeCalls(), QStringList({u"seek 0"_s}));
    QCOMPARE(m_rig->player->currentStation()->trackIndex, 2);

    listenTo(listStation(1, 0), 8);
    m_rig->player->nextTrack();
    m_rig->player->previousTrack();
    QVERIFY(m_rig->engine.takeCalls().isEmpty());
}

void tst_RadioPlayer::endOfItem()
{
    select(listStation(2, 1));
    tick(Status::Playing, 1);
    const auto finished = m_rig->engine.item;
    Q_EMIT m_rig->engine.itemDidPlayToEnd(finished.get());
    m_rig->queue.drain();
    QCOMPARE(m_rig->player->currentStation()->trackIndex, 0);
    QVERIFY(m_rig->player->isPlaying());
    Q_EMIT m_rig->engine.itemDidPlayToEnd(finished.get()); // a late word of a replaced item
    m_rig->queue.drain();
    QCOMPARE(m_rig->player->currentStation()->trackIndex, 0);

    select(liveStation(u"a"_s));
    tick(Status::Playing, 1);
    Q_EMIT m_rig->engine.itemDidPlayToEnd(m_rig->engine.item.get());
    m_rig->queue.drain();
    QVERIFY(!m_rig->player->isPlaying() && TestAccess::wantsPlayback(*m_rig->player));
}

QTEST_GUILESS_MAIN(tst_RadioPlayer)
#include "tst_RadioPlayer.moc"
