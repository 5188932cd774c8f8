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
    return {u"replace https://backend.test"_s + path, u"play"_s};
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
    void init() { setUp(); }
    void cleanup() { tearDown(); }

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
    QCOMPARE(m_player->currentStation()->genre, u"a"_s);
    QCOMPARE(m_player->statusText(), connecting);
    QVERIFY(m_player->isBuffering() && !m_player->isPlaying() && m_player->isLive());
    QCOMPARE(m_engine->takeCalls(), loading(u"/stream/a"_s));
    QVERIFY(m_http->exchanges.empty());

    select(listStation(0));
    QVERIFY(m_player->isLive());
    select(listStation(2));
    QVERIFY(!m_player->isLive());
}

void tst_RadioPlayer::withoutAnAddressNothingElseChanges()
{
    listenTo(liveStation(u"a"_s), 3);
    auto station = liveStation(u"b"_s);
    station.streamURL = u"http://[bad"_s;
    select(station);
    QCOMPARE(m_player->statusText(), noAddress);
    QCOMPARE(m_player->currentStation()->genre, u"b"_s);
    QVERIFY(m_player->isPlaying() && !m_player->isBuffering() && m_engine->takeCalls().isEmpty());
}

void tst_RadioPlayer::hydration()
{
    select(bareSongsara(u"7"_s));
    QCOMPARE(m_player->statusText(), fetchingTracks);
    QVERIFY(m_engine->takeCalls().isEmpty());
    QCOMPARE(m_http->exchanges.front().request.url.path(), u"/api/songsara/playlist/7"_s);
    answerStations(R"({"genre":"other","tracks":[{"id":1},{"id":2}]})");
    QCOMPARE(m_player->currentStation()->genre, u"songsara-7"_s);
    QCOMPARE(m_engine->takeCalls(), loading(u"/stream/songsara-7?track=0"_s));
    QVERIFY(!m_player->isLive() && !TestAccess::localTrackOverride(*m_player));

    select(bareSongsara(u"8"_s));
    m_http->take().fail();
    settle();
    QCOMPARE(m_engine->takeCalls(), loading(u"/stream/songsara-8"_s));
    QVERIFY(m_player->isLive());
    select(bareSongsara(u"8"_s));
    QCOMPARE(m_http->exchanges.size(), std::size_t(1)); // the next selection is the retry
}

void tst_RadioPlayer::secondSelectionDuringHydration()
{
    select(bareSongsara(u"7"_s));
    select(bareSongsara(u"7"_s));
    QCOMPARE(m_http->exchanges.size(), std::size_t(1));
    QCOMPARE(m_engine->takeCalls(), loading(u"/stream/songsara-7"_s));
    answerStations(R"({"genre":"x","tracks":[{"id":1}]})");
    QCOMPARE(m_engine->takeCalls(), loading(u"/stream/songsara-7?track=0"_s));
}

void tst_RadioPlayer::theLastTrackListTakesOver()
{
    select(bareSongsara(u"1"_s));
    select(bareSongsara(u"2"_s));
    select(liveStation(u"c"_s));
    auto first = m_http->take();
    answerStations(R"({"genre":"x","tracks":[{"id":2}]})");
    first.answer(R"({"data":[{"genre":"x","tracks":[{"id":1}]}]})");
    settle();
    QCOMPARE(m_player->currentStation()->genre, u"songsara-1"_s);
    QCOMPARE(m_engine->item->url.path(), u"/stream/songsara-1"_s);
}

void tst_RadioPlayer::offlineFirst()
{
    const auto folder = QString(m_files->applicationSupportFolder() + u"/OfflineTracks"_s);
    QVERIFY(m_files->writeAtomically(folder + u"/A.mp3"_s, "sound"));
    QVERIFY(m_files->writeAtomically(
        m_files->applicationSupportFolder() + u"/offline_index.json"_s,
        R"([{"key":"track|1","title":"t","artist":"","audioFileName":"A.mp3","sizeBytes":5,"downloadedAt":1.5}])"));
    makePlayer();

    select(listStation(2, 1));
    QVERIFY(m_engine->item->url.isLocalFile());
    QVERIFY(m_engine->item->url.path().endsWith(u"/OfflineTracks/A.mp3"_s));
    QVERIFY(m_files->remove(folder + u"/A.mp3"_s));
    select(listStation(2, 1));
    QCOMPARE(m_engine->item->url.toString(), u"https://backend.test/stream/list?track=1"_s);
}

void tst_RadioPlayer::bindsATapToEachItem()
{
    select(liveStation(u"a"_s));
    const auto replaced = m_engine->item;
    m_queue->drain();
    select(liveStation(u"b"_s));
    m_queue->drain();
    const auto current = m_engine->item;
    replaced->finishTracks({{4}});
    current->finishTracks({{1}, {2}});
    m_queue->drain();
    QVERIFY(replaced->tap && current->tap && replaced->tap != current->tap);

    select(liveStation(u"silent"_s));
    m_queue->drain();
    m_engine->item->finishTracks({});
    m_queue->drain();
    QVERIFY(!m_engine->item->tap);
    select(liveStation(u"broken"_s)); // cleanup() fails its tracks
}

void tst_RadioPlayer::pauseAndResume()
{
    select(liveStation(u"a"_s));
    m_engine->takeCalls();
    m_player->togglePlayPause(); // still connecting: a further request to play, not a cancel
    QCOMPARE(m_engine->takeCalls(), QStringList({u"play"_s}));
    tick(Status::Playing, 1);
    m_player->togglePlayPause();
    QCOMPARE(m_engine->takeCalls(), QStringList({u"pause"_s}));
    QVERIFY(!m_player->isPlaying() && !m_player->isBuffering() && !TestAccess::wantsPlayback(*m_player));
    m_player->togglePlayPause();
    QCOMPARE(m_engine->takeCalls(), QStringList({u"play"_s}));
    QVERIFY(m_player->isBuffering() && TestAccess::wantsPlayback(*m_player));
}

void tst_RadioPlayer::playWithoutAnItemSelectsAgain()
{
    m_player->play();
    QVERIFY(m_player->isBuffering()); // with neither item nor station nothing clears it
    auto station = liveStation(u"a"_s);
    station.streamURL.reset();
    select(station);
    QVERIFY(!m_engine->item);
    m_engine->takeCalls();
    m_player->play();
    QVERIFY(m_engine->takeCalls().isEmpty());
    m_queue->drain();
    QCOMPARE(m_player->statusText(), noAddress);
}

void tst_RadioPlayer::seeking()
{
    select(listStation(2, 0));
    m_engine->item->length = 300;
    tick(Status::Playing, 10);
    m_engine->takeCalls();
    m_player->skip(10);
    QCOMPARE(m_player->currentTime(), 20.0);
    m_player->seek(999);
    m_player->seek(-4);
    QCOMPARE(m_engine->takeCalls(), QStringList({u"seek 20"_s, u"seek 300"_s, u"seek 0"_s}));

    listenTo(liveStation(u"a"_s), 5);
    m_player->skip(10);
    QVERIFY(m_engine->takeCalls().isEmpty());
    m_player->seek(50);
    QCOMPARE(m_engine->takeCalls(), QStringList({u"seek 50"_s}));
}

void tst_RadioPlayer::followsTheEngine()
{
    const QSignalSpy played(m_player.get(), &RadioPlayer::isPlayingChanged);
    tick(Status::Playing, 9); // no item: nothing to tell of
    QCOMPARE(m_player->currentTime(), 0.0);

    select(listStation(2, 0));
    m_engine->item->length = 180;
    tick(Status::WaitingToPlay, 0);
    QVERIFY(m_player->isBuffering() && !m_player->isPlaying());
    m_engine->item->failure = u"404"_s;
    tick(Status::WaitingToPlay);
    QVERIFY(m_player->isBuffering() && !m_player->isPlaying());
    QCOMPARE(m_player->statusText(), connecting);
    m_engine->item->failure.reset();
    tick(Status::Playing, 2.5);
    QVERIFY(!m_player->isBuffering() && m_player->isPlaying());
    QCOMPARE(m_player->statusText(), u""_s);
    QCOMPARE(m_player->currentTime(), 2.5);
    QCOMPARE(m_player->duration(), 180.0);
    tick(Status::WaitingToPlay, 3);
    QVERIFY(m_player->isBuffering() && m_player->isPlaying());
    tick(Status::Playing, 3.5);
    QCOMPARE(played.count(), 1);

    select(liveStation(u"a"_s));
    tick(Status::WaitingToPlay, 0);
    QVERIFY(m_player->isPlaying()); // the button stays a pause button while the next one connects
    QCOMPARE(m_player->currentTime(), 3.5);
    QCOMPARE(m_player->duration(), 0.0);
}

void tst_RadioPlayer::pollsOnlyWhilePlaying()
{
    select(liveStation(u"a"_s));
    m_queue->advance(60s);
    QVERIFY(m_http->exchanges.empty());
    tick(Status::Playing, 1); // each arrival asks once
    QCOMPARE(m_http->exchanges.size(), std::size_t(1));
    tick(Status::WaitingToPlay, 2);
    tick(Status::Playing, 3);
    QCOMPARE(m_http->exchanges.size(), std::size_t(2));
    QCOMPARE(m_queue->timerCount(), 1);
    m_queue->advance(15s);
    QCOMPARE(m_http->exchanges.size(), std::size_t(3));
    m_player->togglePlayPause();
    m_queue->advance(60s);
    QCOMPARE(m_http->exchanges.size(), std::size_t(3));
}

void tst_RadioPlayer::liveUpdateLeavesTheSoundAlone()
{
    listenTo(liveStation(u"a"_s));
    answerStations(
        R"({"genre":"b","title":"no"},{"genre":"a","title":"new","artist":"x","artwork_url":"/w"})");
    QCOMPARE(m_player->currentStation()->title, u"new"_s);
    QCOMPARE(m_player->currentStation()->artist, u"x"_s);
    QVERIFY(m_engine->takeCalls().isEmpty());
    m_http->take().fail(); // the artwork
    settle();

    m_queue->advance(15s);
    answerStations(R"({"genre":"b"})"); // gone from the catalogue: stays as it is
    QCOMPARE(m_player->currentStation()->title, u"new"_s);
}

void tst_RadioPlayer::serverRotationRestarts()
{
    select(listStation(3)); // no index of the user's own
    tick(Status::Playing, 1);
    m_engine->takeCalls();
    answerStations(R"({"genre":"list","track_index":2,"tracks":[{"id":1},{"id":2},{"id":3}]})");
    QCOMPARE(m_engine->takeCalls(), loading(u"/stream/list?track=2"_s));

    m_player->nextTrack(); // from here on the user owns the position
    tick(Status::Playing, 1);
    m_engine->takeCalls();
    while (m_http->exchanges.size() > 1)
        m_http->take().fail();
    answerStations(R"({"genre":"list","track_index":1,"tracks":[{"id":1},{"id":2},{"id":3}]})");
    QVERIFY(m_engine->takeCalls().isEmpty());
}

void tst_RadioPlayer::walksTheRing()
{
    select(listStation(3, 2));
    m_player->nextTrack();
    QCOMPARE(m_player->currentStation()->trackIndex, 0);
    tick(Status::Playing, 5);
    m_player->previousTrack(); // exactly 5 s still steps back
    QCOMPARE(m_player->currentStation()->trackIndex, 2);
    tick(Status::Playing, 8);
    m_engine->takeCalls();
    m_player->previousTrack();
    QCOMPARE(m_engine->takeCalls(), QStringList({u"seek 0"_s}));
    QCOMPARE(m_player->currentStation()->trackIndex, 2);

    listenTo(listStation(1, 0), 8);
    m_player->nextTrack();
    m_player->previousTrack();
    QVERIFY(m_engine->takeCalls().isEmpty());
}

void tst_RadioPlayer::endOfItem()
{
    select(listStation(2, 1));
    tick(Status::Playing, 1);
    const auto finished = m_engine->item;
    Q_EMIT m_engine->itemDidPlayToEnd(finished.get());
    m_queue->drain();
    QCOMPARE(m_player->currentStation()->trackIndex, 0);
    QVERIFY(m_player->isPlaying());
    Q_EMIT m_engine->itemDidPlayToEnd(finished.get()); // a late word of a replaced item
    m_queue->drain();
    QCOMPARE(m_player->currentStation()->trackIndex, 0);

    select(liveStation(u"a"_s));
    tick(Status::Playing, 1);
    Q_EMIT m_engine->itemDidPlayToEnd(m_engine->item.get());
    m_queue->drain();
    QVERIFY(!m_player->isPlaying() && TestAccess::wantsPlayback(*m_player));
}

QTEST_GUILESS_MAIN(tst_RadioPlayer)
#include "tst_RadioPlayer.moc"
