#include "PlayerRig.h"
#include "Support/Columns.h"
#include "Support/StreamServer.h"
#include "TestMedia.h"

#include <QDeadlineTimer>
#include <QTest>
#include <QThread>

#include <cmath>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using Status = MediaPlayer::TimeControlStatus;

class tst_GstMediaPlayer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void faults_data();
    void faults();
    void startsOnLittle();
    void bridgesAHole();
    void seeks_data();
    void seeks();
    void restsAtTheEnd();
    void replaces();
    void lateNews();

private:
    MediaFolder m_folder;
};

void tst_GstMediaPlayer::initTestCase()
{
    for (const auto name : {"short.wav", "short.mp3"})
        QCOMPARE(m_folder.writeTone(name, 0.6), QString());
    for (const auto name : {"long.mp3", "long.wav"})
        QCOMPARE(m_folder.writeTone(name, 8), QString());
}

void tst_GstMediaPlayer::faults_data()
{
    using End = ServedStream::End;
    addColumns<ServedStream, bool, bool>("stream", "sounds", "fails");
    const auto some = [this](End end) {
        return ServedStream{.body = m_folder.contents("short.mp3"), .holdAfter = 9000, .end = end};
    };
    QByteArray noise(200000, Qt::Uninitialized);
    for (qsizetype i = 0; i < noise.size(); ++i)
        noise[i] = char((i * i * 31 + i / 7) % 127);
    QTest::addRow("not found") << ServedStream{.status = 404} << false << true;
    QTest::addRow("unavailable") << ServedStream{.status = 503} << false << true;
    QTest::addRow("nothing") << ServedStream{} << false << true;
    QTest::addRow("garbage") << ServedStream{.body = noise} << false << true;
    QTest::addRow("a page") << ServedStream{.body = "<html><body>"_ba + "<p>no</p>"_ba.repeated(9999)}
                            << false << true;
    QTest::addRow("closed") << some(End::Close) << true << false;
    QTest::addRow("reset") << some(End::Reset) << true << true;
    QTest::addRow("hung") << some(End::Hang) << true << true;
    QTest::addRow("hung at once") << ServedStream{.end = End::Hang} << false << true;
}

void tst_GstMediaPlayer::faults()
{
    const auto [stream, sounds, fails] = fetched<ServedStream, bool, bool>("stream", "sounds", "fails");
    StreamServer server;
    Rig rig("fakesink sync=true", 1s);
    const auto item = rig.start(server.serve(u"live"_s, stream));
    if (sounds)
        QTRY_VERIFY(rig.is(Status::Playing));
    Q_EMIT server.released();
    if (fails) {
        QTRY_COMPARE_WITH_TIMEOUT(item->status(), MediaItem::Status::Failed, 10000);
        QVERIFY(!item->error()->isEmpty() && rig.is(Status::WaitingToPlay));
        QCOMPARE(rig.ended.size(), 0);
    } else {
        QTRY_COMPARE(rig.ended.size(), 1);
        QVERIFY(rig.is(Status::Paused) && !item->error());
    }
    QCOMPARE(rig.statuses.contains(Status::Playing), sounds);
    if (sounds)
        QCOMPARE(item->loadAudioTracks().result().size(), 1);
    else
        QVERIFY_EXCEPTION_THROWN(item->loadAudioTracks().waitForFinished(), std::runtime_error);
    QVERIFY(server.requests(u"live"_s) <= 2);

    // The next item plays as if nothing had been.
    rig.statuses.clear();
    rig.start(m_folder.file("short.wav"));
    QTRY_VERIFY(rig.statuses.contains(Status::Playing));
}

void tst_GstMediaPlayer::startsOnLittle()
{
    constexpr qint64 bytesPerSecond = 16000;
    StreamServer server;
    Rig rig;
    rig.start(
        server.serve(u"live"_s, {.body = m_folder.contents("long.mp3"), .bytesPerSecond = bytesPerSecond}));
    QTRY_VERIFY(rig.is(Status::Playing));
    QVERIFY2(server.sent() < bytesPerSecond * 3 / 4, qPrintable(QString::number(server.sent())));
    QTRY_VERIFY(rig.positions.last() > 1.5);
    QCOMPARE(rig.statuses, (QList{Status::WaitingToPlay, Status::Playing}));
}

void tst_GstMediaPlayer::bridgesAHole()
{
    StreamServer server;
    TapLog log;
    Rig rig;
    const auto body = m_folder.contents("long.mp3").first(40000); // 2.5 s
    const auto item = rig.start(server.serve(u"live"_s, {.body = body, .holdAfter = 8000}));
    item->setAudioTap({1}, makeTap(log));
    QTRY_VERIFY(rig.is(Status::Playing));
    QTRY_VERIFY(rig.is(Status::WaitingToPlay));
    const auto before = rig.player.currentItem()->status();
    QCOMPARE(before, MediaItem::Status::ReadyToPlay);
    Q_EMIT server.released();
    QTRY_VERIFY(rig.is(Status::Playing));
    QTRY_COMPARE(rig.ended.size(), 1);
    QCOMPARE(rig.statuses, (QList{Status::WaitingToPlay, Status::Playing, Status::WaitingToPlay,
                                  Status::Playing, Status::Paused}));
    QVERIFY(std::abs(rig.positions.last() - 2.5) < 0.2);
}

void tst_GstMediaPlayer::seeks_data()
{
    addColumns<ServedStream, bool, bool>("stream", "early", "lands");
    const auto body = m_folder.contents("long.mp3");
    const ServedStream track{.body = body, .sized = true, .ranges = true};
    QTest::addRow("track") << track << false << true;
    QTest::addRow("track, before it is open") << track << true << true;
    QTest::addRow("live") << ServedStream{.body = body, .bytesPerSecond = 32000} << false << false;
    QTest::addRow("no ranges") << ServedStream{.body = body, .sized = true} << false << false;
    QTest::addRow("file") << ServedStream{} << false << true;
}

void tst_GstMediaPlayer::seeks()
{
    auto [stream, early, lands] = fetched<ServedStream, bool, bool>("stream", "early", "lands");
    StreamServer server;
    TapLog log;
    Rig rig;
    const auto item = rig.start(stream.body.isEmpty() ? m_folder.file("long.wav")
                                                      : server.serve(u"track"_s, std::move(stream)));
    item->setAudioTap({1}, makeTap(log));
    if (!early)
        QTRY_VERIFY(rig.is(Status::Playing));
    const auto startsBefore = log.starts.load();
    rig.player.seek(5);
    rig.positions.clear();
    QTRY_VERIFY(rig.is(Status::Playing));
    QTRY_VERIFY(rig.positions.size() > 5 && !std::isnan(rig.positions.last()));
    QTRY_VERIFY(!lands || rig.positions.last() > 5); // and plays on from there
    const auto last = rig.positions.last();
    QVERIFY2(lands ? last > 5 && last < 6.5 : last < 2, qPrintable(QString::number(last)));
    QVERIFY(item->status() == MediaItem::Status::ReadyToPlay);
    if (lands)
        QVERIFY(log.starts > startsBefore);
}

void tst_GstMediaPlayer::restsAtTheEnd()
{
    Rig rig;
    const auto item = rig.start(m_folder.file("short.wav"));
    QTRY_VERIFY(rig.is(Status::Playing));
    QCOMPARE(rig.queue.tickers, 1);
    QTRY_COMPARE(rig.ended.size(), 1);
    QCOMPARE(rig.ended.first().first().value<MediaItem *>(), item.get());
    QVERIFY(rig.is(Status::Paused));
    QCOMPARE(rig.queue.tickers, 0);

    rig.player.play();
    QVERIFY(rig.is(Status::Paused));
    rig.player.seek(0);
    QVERIFY(rig.is(Status::Paused));
    rig.player.play();
    QTRY_VERIFY(rig.is(Status::Playing));
    rig.player.pause();
    QVERIFY(rig.is(Status::Paused));
    QCOMPARE(rig.queue.tickers, 0);
    QCOMPARE(rig.ended.size(), 1);

    rig.player.replaceCurrentItem(nullptr);
    rig.player.play();
    QCOMPARE(rig.queue.tickers, 0);
}

void tst_GstMediaPlayer::replaces()
{
    StreamServer server;
    TapLog log;
    Rig rig;
    auto first = rig.player.makeItem(
        server.serve(u"first"_s, {.body = m_folder.contents("long.mp3"), .bytesPerSecond = 32000}));
    first->setAudioTap({1}, makeTap(log));
    rig.player.play();
    rig.player.replaceCurrentItem(first);
    QTRY_VERIFY(log.frames > 0);
    QTRY_VERIFY(rig.is(Status::Playing));

    auto second = rig.player.makeItem(server.serve(u"second"_s, {.holdAfter = 0}));
    auto tracks = second->loadAudioTracks();
    rig.player.replaceCurrentItem(second);
    QVERIFY(rig.is(Status::WaitingToPlay));
    QTRY_COMPARE(log.unprepared, 1);
    const auto heard = log.frames.load();
    first.reset();
    QTRY_COMPARE(log.finalized, 1);
    QCOMPARE(log.frames, heard);

    rig.player.replaceCurrentItem(rig.player.makeItem(m_folder.file("short.wav")));
    QVERIFY_EXCEPTION_THROWN(tracks.waitForFinished(), std::runtime_error);
    QTRY_VERIFY(rig.is(Status::Playing));
    QTRY_COMPARE(rig.ended.size(), 1);
    QCOMPARE(rig.ended.first().first().value<MediaItem *>(), rig.player.currentItem().get());
}

/// What a pipeline had told before its item was replaced, but what has not arrived yet, concerns nobody.
void tst_GstMediaPlayer::lateNews()
{
    Rig rig;
    const auto item = rig.start(m_folder.file("no such file"));
    const int before = rig.queue.posted;
    const QDeadlineTimer deadline(5000);
    while (rig.queue.posted == before && !deadline.hasExpired())
        QThread::yieldCurrentThread();
    QVERIFY(rig.queue.posted > before);
    rig.player.replaceCurrentItem(nullptr);
    QCoreApplication::processEvents();
    QCOMPARE(item->status(), MediaItem::Status::Unknown);
}

QTEST_GUILESS_MAIN(tst_GstMediaPlayer)
#include "tst_GstMediaPlayer.moc"
