#include "RadioPlayerRig.h"
#include "Support/Columns.h"

#include <QBuffer>
#include <QImage>
#include <QSignalSpy>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

QByteArray picture(QColor colour)
{
    QImage image(QSize(4, 3), QImage::Format_RGB32);
    image.fill(colour);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "png");
    return buffer.data();
}

Station programme(const QString &genre, const QString &title)
{
    auto station = liveStation(genre);
    station.title = title;
    station.artworkURL = u"/cover"_s;
    return station;
}

} // namespace

/// How the player meets the desktop: media controls, interruptions, and the artwork that both show.
class tst_RadioPlayerSession : public QObject, protected RadioPlayerRig
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void tellsTheDesktop();
    void commands();
    void seekingCommandsNeedAPosition();
    void interruptions_data();
    void interruptions();
    void goesOnWithoutTheDevice();
    void artworkArrives();
    void failedArtworkIsTriedAnew();
    void lastArtworkGivesTheColour();
    void programmesKeepTheirPicturesOnly();

private:
    [[nodiscard]] const NowPlayingInfo &lastInfo() const { return m_desktop->nowPlaying.infos.constLast(); }
    RemoteCommands &remote() { return m_desktop->remoteCommands.commands; }
    void answerArtwork(const QByteArray &bytes)
    {
        m_http->take().answer(bytes);
        settle();
    }
};

void tst_RadioPlayerSession::tellsTheDesktop()
{
    auto &desktop = m_desktop->nowPlaying;
    QCOMPARE(desktop.state, PlaybackState({PlaybackState::Status::Stopped, double(0.85F), false}));
    select(listStation(2, 0));
    QCOMPARE(desktop.infos.size(), 1); // on the load
    QCOMPARE(lastInfo().playbackRate, 0.0);
    QCOMPARE(desktop.state.status, PlaybackState::Status::Paused);
    m_engine->item->length = 180;
    tick(Status::Playing, 3);
    QCOMPARE(desktop.infos.size(), 2); // on the arrival at playing
    QCOMPARE(lastInfo().playbackRate, 1.0);
    QCOMPARE(lastInfo().duration, 180.0);
    QCOMPARE(lastInfo().elapsedTime, 3.0);
    QCOMPARE(desktop.state, PlaybackState({PlaybackState::Status::Playing, double(0.85F), true}));
    desktop.jumps.clear();
    tick(Status::Playing, 3.5);
    QCOMPARE(desktop.infos.size(), 2); // a tick says nothing
    QCOMPARE(desktop.position(), 3.5);
    QCOMPARE(desktop.jumps, QList<double>());
    m_player->seek(90);
    QCOMPARE(desktop.infos.size(), 3);
    QCOMPARE(lastInfo().elapsedTime, 90.0);
    QCOMPARE(desktop.jumps, QList<double>({90}));
    m_player->nextTrack();
    tick(Status::Playing, 0.4);
    QCOMPARE(desktop.jumps, QList<double>({90, 0.4}));
    m_player->togglePlayPause();
    QCOMPARE(lastInfo().playbackRate, 0.0);
}

void tst_RadioPlayerSession::commands()
{
    listenTo(listStation(2, 0));
    QCOMPARE(remote().pause(), RemoteCommandResult::Success);
    QCOMPARE(m_engine->takeCalls(), QStringList()); // carried out when the event loop turns
    m_queue->drain();
    QCOMPARE(m_engine->takeCalls(), QStringList({u"pause"_s}));
    QVERIFY(!m_player->isPlaying() && !TestAccess::wantsPlayback(*m_player));
    const auto updates = m_desktop->nowPlaying.infos.size();
    QCOMPARE(remote().pause(), RemoteCommandResult::Success); // paused already: all the same
    m_queue->drain();
    QCOMPARE(m_desktop->nowPlaying.infos.size(), updates + 1);
    m_engine->takeCalls();

    for (const auto command : {&RemoteCommands::play, &RemoteCommands::togglePlayPause}) {
        QCOMPARE((remote().*command)(), RemoteCommandResult::Success);
        m_queue->drain();
        QCOMPARE(m_engine->takeCalls(), QStringList({u"play"_s}));
    }
    remote().nextTrack();
    m_queue->drain();
    QCOMPARE(m_player->currentStation()->trackIndex, 1);
    remote().previousTrack();
    m_queue->drain();
    QCOMPARE(m_player->currentStation()->trackIndex, 0);
    remote().changeVolume(0.25);
    QCOMPARE(m_player->volume(), 0.25F);
    QCOMPARE(m_desktop->nowPlaying.state.volume, 0.25);

    select(liveStation(u"a"_s)); // nowhere to go, and still no failure
    QCOMPARE(remote().nextTrack(), RemoteCommandResult::Success);
    m_player.reset();
    QCOMPARE(remote().play(), RemoteCommandResult::Success);
    QCOMPARE(remote().skipForward({}), RemoteCommandResult::CommandFailed);
}

void tst_RadioPlayerSession::seekingCommandsNeedAPosition()
{
    const auto failed = RemoteCommandResult::CommandFailed;
    const auto tryAll = [this] {
        return QList<RemoteCommandResult>(
            {remote().skipForward({}), remote().skipBackward(5), remote().changePlaybackPosition(30)});
    };
    QCOMPARE(tryAll(), QList<RemoteCommandResult>(3, failed));
    select(liveStation(u"a"_s));
    m_engine->item->length = 300;
    tick(Status::Playing, 60);
    QCOMPARE(tryAll(), QList<RemoteCommandResult>(3, failed)); // live, whatever its length
    select(listStation(2, 0));
    tick(Status::Playing, 60);
    QCOMPARE(tryAll(), QList<RemoteCommandResult>(3, failed)); // no length yet
    m_engine->item->length = 300;
    tick(Status::Playing, 60);
    QCOMPARE(remote().changePlaybackPosition({}), failed);
    m_queue->drain();
    m_engine->takeCalls();
    QCOMPARE(tryAll(), QList<RemoteCommandResult>(3, RemoteCommandResult::Success));
    m_queue->drain();
    QCOMPARE(m_engine->takeCalls(), QStringList({u"seek 70"_s, u"seek 65"_s, u"seek 30"_s}));
}

void tst_RadioPlayerSession::interruptions_data()
{
    addColumns<QString, QStringList, QStringList>("state", "atBegin", "atEnd");
    const QStringList none;
    const QStringList pause{u"pause"_s};
    const QStringList play{u"play"_s};
    QTest::newRow("empty") << u"empty"_s << none << none;
    QTest::newRow("connecting") << u"connecting"_s << none << play;
    QTest::newRow("playing") << u"playing"_s << pause << play;
    QTest::newRow("rebuffering") << u"rebuffering"_s << pause << play;
    QTest::newRow("paused") << u"paused"_s << none << none;
    QTest::newRow("finished") << u"finished"_s << none << play;
}

void tst_RadioPlayerSession::interruptions()
{
    QFETCH(QString, state);
    if (state != u"empty")
        select(liveStation(u"a"_s));
    if (state != u"empty" && state != u"connecting")
        tick(Status::Playing, 1);
    if (state == u"rebuffering")
        tick(Status::WaitingToPlay, 1);
    if (state == u"paused")
        m_player->togglePlayPause();
    if (state == u"finished")
        Q_EMIT m_engine->itemDidPlayToEnd(m_engine->item.get());
    m_queue->drain();
    const auto wanted = TestAccess::wantsPlayback(*m_player);
    const auto buffering = m_player->isBuffering();
    m_engine->takeCalls();

    Q_EMIT m_desktop->audioSession.interruptionBegan();
    m_queue->drain();
    QTEST(m_engine->takeCalls(), "atBegin");
    QVERIFY(!m_player->isPlaying());
    QCOMPARE(TestAccess::wantsPlayback(*m_player), wanted);
    QCOMPARE(m_player->isBuffering(), buffering);
    if (state == u"playing") {
        QCOMPARE(lastInfo().playbackRate, 0.0);
        QCOMPARE(m_queue->timerCount(), 0);
    }
    Q_EMIT m_desktop->audioSession.interruptionEnded(false);
    m_queue->drain();
    QCOMPARE(m_engine->takeCalls(), QStringList());
    Q_EMIT m_desktop->audioSession.interruptionEnded(true);
    m_queue->drain();
    QTEST(m_engine->takeCalls(), "atEnd");
    QCOMPARE(m_player->isBuffering(), wanted || buffering);
}

void tst_RadioPlayerSession::goesOnWithoutTheDevice()
{
    listenTo(liveStation(u"a"_s));
    Q_EMIT m_desktop->audioSession.outputDeviceGone();
    m_queue->drain();
    QCOMPARE(m_engine->takeCalls(), QStringList({u"play"_s}));
    m_player->togglePlayPause();
    m_engine->takeCalls();
    Q_EMIT m_desktop->audioSession.outputDeviceGone();
    m_queue->drain();
    QCOMPARE(m_engine->takeCalls(), QStringList());

    QCOMPARE(m_desktop->audioSession.configured, 1);
    m_desktop->audioSession.error = u"refused"_s;
    m_player->play();
    QCOMPARE(m_desktop->audioSession.configured, 2);
    QCOMPARE(m_engine->takeCalls(), QStringList({u"play"_s})); // refused or not
}

void tst_RadioPlayerSession::artworkArrives()
{
    select(programme(u"a"_s, u"first song"_s));
    QCOMPARE(m_http->exchanges.size(), std::size_t(0)); // not before the event loop turns
    m_queue->drain();
    tick(Status::Playing, 1); // asks for the catalogue, and not again for the picture
    m_player->seek(2);
    m_queue->drain();
    QCOMPARE(m_http->exchanges.size(), std::size_t(2));
    QCOMPARE(m_http->exchanges.front().request.url.toString(QUrl::FullyEncoded),
             u"https://backend.test/cover?v=first%20song"_s);
    QVERIFY(!lastInfo().artwork);

    const QSignalSpy coloured(m_player.get(), &RadioPlayer::themeColorChanged);
    const auto bytes = picture(QColor(255, 0, 0));
    answerArtwork(bytes);
    QCOMPARE(lastInfo().artwork->bytes, bytes);
    QCOMPARE(lastInfo().artwork->format, u"png"_s);
    QCOMPARE(lastInfo().artwork->size, QSize(4, 3));
    QCOMPARE(m_player->themeColor().name(), QColor::fromHsvF(0, 0.85F, 0.95F).name());
    m_player->seek(3);
    m_queue->drain();
    QCOMPARE(m_http->exchanges.size(), std::size_t(1));
    QCOMPARE(coloured.count(), 1);
}

void tst_RadioPlayerSession::failedArtworkIsTriedAnew()
{
    const auto whole = picture(Qt::red);
    select(programme(u"a"_s, u"song"_s));
    m_queue->drain();
    QVERIFY(m_http->exchanges.front().request.largestBody); // a picture without an end is given up
    for (int i = 0; const auto &body : {"no picture"_ba, ""_ba, whole.first(whole.size() / 2),
                                        "<svg xmlns='http://www.w3.org/2000/svg'/>"_ba}) {
        answerArtwork(body);
        QVERIFY(m_http->exchanges.empty()); // by the next update, not by itself
        QCOMPARE(m_player->themeColor(), QColor::fromRgbF(0.39F, 0.40F, 0.95F));
        m_player->seek(++i);
        m_queue->drain();
    }
    m_http->take().fail();
    settle();
    m_player->seek(9);
    m_queue->drain();
    answerArtwork(picture(Qt::blue));
    QVERIFY(lastInfo().artwork);
}

void tst_RadioPlayerSession::lastArtworkGivesTheColour()
{
    select(programme(u"a"_s, u"1"_s));
    select(programme(u"b"_s, u"2"_s));
    m_queue->drain();
    auto early = m_http->take();
    answerArtwork(picture(Qt::blue));
    QCOMPARE(m_player->themeColor().hue(), 240);
    early.answer(picture(Qt::green));
    settle();
    QCOMPARE(m_player->themeColor().hue(), 120);
    QCOMPARE(lastInfo().artwork->bytes, picture(Qt::blue));
    auto bare = liveStation(u"c"_s);
    select(bare);
    m_queue->drain();
    QVERIFY(m_http->exchanges.empty() && !lastInfo().artwork);
    QCOMPARE(m_player->themeColor().hue(), 120);
}

void tst_RadioPlayerSession::programmesKeepTheirPicturesOnly()
{
    constexpr int programmes = 500;
    std::weak_ptr<const EncodedPicture> first;
    for (int i = 0; i < programmes; ++i) {
        select(programme(u"a"_s, QString::number(i)));
        m_queue->drain();
        answerArtwork(picture(QColor::fromHsv(i % 360, 200, 200)));
        m_engine->failPendingTracks();
        m_engine->made.clear();
        if (i == 0)
            first = lastInfo().artwork;
        m_desktop->nowPlaying.infos.remove(0, m_desktop->nowPlaying.infos.size() - 1);
    }
    QCOMPARE(first.use_count(), 1); // the cache's own, for the day the programme returns
    select(programme(u"a"_s, u"0"_s));
    m_queue->drain();
    QVERIFY(m_http->exchanges.empty() && lastInfo().artwork == first.lock());
}

QTEST_GUILESS_MAIN(tst_RadioPlayerSession)
#include "tst_RadioPlayerSession.moc"
