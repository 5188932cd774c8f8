#include "PlayerRig.h"
#include "Support/Columns.h"
#include "Support/StreamServer.h"
#include "TestMedia.h"

#include <QProcess>
#include <QTest>

#include <cmath>
#include <csignal>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using Status = MediaPlayer::TimeControlStatus;

class tst_AudioPath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void playsFormats_data();
    void playsFormats();
    void samples_data();
    void samples();
    void handsOverTheTap();
    void songAfterSong();
    void titlesInTheStream();
    void withoutSound();
    void soundServerWithoutOutput();
    void soundServer();

private:
    MediaFolder m_folder;
};

void tst_AudioPath::initTestCase()
{
    for (const auto name : {"short.wav", "short.mp3", "short.aac", "short.ogg", "short.m4a"})
        QCOMPARE(m_folder.writeTone(name, 0.6), QString());
    QCOMPARE(m_folder.writeTone("long.wav", 8), QString());
}

void tst_AudioPath::playsFormats_data()
{
    addColumns<QString, bool>("suffix", "remote");
    for (const auto suffix : {"wav", "mp3", "aac", "ogg", "m4a"})
        QTest::addRow("%s", suffix) << QString::fromLatin1(suffix) << false;
    for (const auto suffix : {"mp3", "aac", "ogg"})
        QTest::addRow("%s stream", suffix) << QString::fromLatin1(suffix) << true;
}

void tst_AudioPath::playsFormats()
{
    const auto [suffix, remote] = fetched<QString, bool>("suffix", "remote");
    StreamServer server;
    TapLog log;
    Rig rig;
    const QByteArray name = "short."_ba + suffix.toLatin1();
    const auto item =
        rig.player.makeItem(remote ? server.serve(u"live"_s, {.body = m_folder.contents(name.constData())})
                                   : m_folder.file(name.constData()));
    item->setAudioTap({1}, makeTap(log));
    rig.player.replaceCurrentItem(item);
    QVERIFY(rig.is(Status::Paused));
    QCOMPARE(item->status(), MediaItem::Status::Unknown);
    rig.player.play();
    QVERIFY(rig.is(Status::WaitingToPlay));

    QTRY_COMPARE(rig.ended.size(), 1);
    QTRY_COMPARE(rig.statuses, (QList{Status::WaitingToPlay, Status::Playing, Status::Paused}));
    QCOMPARE(item->status(), MediaItem::Status::ReadyToPlay);
    QCOMPARE(item->loadAudioTracks().result().size(), 1);
    QCOMPARE(item->loadAudioTracks().result().first().trackId, 1);
    if (remote)
        QVERIFY(std::isnan(item->duration()));
    else if (suffix != u"aac"_s) // bare AAC tells only after some seconds
        QVERIFY2(std::abs(item->duration() - 0.6) < 0.15, qPrintable(QString::number(item->duration())));
    QVERIFY(std::isnan(rig.positions.first()) && rig.positions.last() > 0.4 && rig.positions.last() < 0.8);

    QCOMPARE(log.prepared, 1);
    QCOMPARE(log.sampleRate, 44100.0);
    QCOMPARE(log.channels, 2U);
    QCOMPARE(log.flags, AudioStreamDescription::flagIsFloat);
    QVERIFY(!log.unpreparedSound);
    QCOMPARE(log.starts, 1);
    QVERIFY(std::abs(double(log.frames) / 44100 - 0.6) < 0.15 && log.loudest > 0.4 && log.loudest < 0.8);
}

void tst_AudioPath::samples_data()
{
    addColumns<bool, float, bool, float>("tapped", "tapGain", "deaf", "volume");
    QTest::addRow("no tap") << false << 1.0F << false << 1.0F;
    QTest::addRow("a tap that does nothing") << true << 1.0F << false << 1.0F;
    QTest::addRow("a tap that turns down") << true << 0.25F << false << 1.0F;
    QTest::addRow("a tap that delivers nothing") << true << 1.0F << true << 1.0F;
    QTest::addRow("volume is linear") << false << 1.0F << false << 0.5F;
    QTest::addRow("volume and tap") << true << 0.5F << false << 0.5F;
    QTest::addRow("volume zero") << false << 1.0F << false << 0.0F;
}

void tst_AudioPath::samples()
{
    const auto [tapped, tapGain, deaf, volume] =
        fetched<bool, float, bool, float>("tapped", "tapGain", "deaf", "volume");
    const auto capture = u"audioconvert ! audio/x-raw,format=F32LE,layout=interleaved ! filesink location="_s;
    const auto reference = m_folder.path("reference.raw");
    QCOMPARE(runPipeline(u"filesrc location=%1 ! decodebin ! %2%3"_s.arg(m_folder.path("short.mp3"), capture,
                                                                         reference)),
             QString());

    const auto played = m_folder.path("played.raw");
    TapLog log;
    log.gain = tapGain;
    log.deaf = deaf;
    {
        Rig rig(QString(capture + played).toUtf8());
        rig.player.setVolume(volume);
        const auto item = rig.player.makeItem(m_folder.file("short.mp3"));
        if (tapped)
            item->setAudioTap({1}, makeTap(log));
        rig.player.replaceCurrentItem(item);
        rig.player.play();
        QTRY_COMPARE(rig.ended.size(), 1);
    }
    const auto expected = m_folder.contents("reference.raw");
    const auto heard = m_folder.contents("played.raw");
    QCOMPARE(heard.size(), expected.size());
    const auto factor = deaf ? 0.0F : tapGain * volume;
    const auto wanted = floats(expected);
    const auto got = floats(heard);
    for (size_t i = 0; i < wanted.size(); ++i)
        QVERIFY2(got[i] == wanted[i] * factor, qPrintable(QString::number(i)));
}

void tst_AudioPath::handsOverTheTap()
{
    Rig rig;
    const auto item = rig.start(m_folder.file("long.wav"));
    QTRY_VERIFY(rig.is(Status::Playing));
    TapLog first;
    TapLog second;
    item->setAudioTap({1}, makeTap(first));
    QTRY_VERIFY(first.frames > 0);
    QCOMPARE(first.starts, 1);
    item->setAudioTap({1}, makeTap(second));
    QTRY_VERIFY(second.frames > 0);
    QCOMPARE(first.unprepared, 1);
    QCOMPARE(first.finalized, 1);
    rig.player.pause();
    item->setAudioTap({1}, nullptr);
    rig.player.play();
    QTRY_COMPARE(second.finalized, 1);
    QVERIFY(!first.unpreparedSound && !second.unpreparedSound);
}

/// Radio in Ogg begins a new stream, perhaps in another format, with each song.
void tst_AudioPath::songAfterSong()
{
    QCOMPARE(runPipeline(u"audiotestsrc num-buffers=30 ! audio/x-raw,rate=48000,channels=1 ! audioconvert ! "
                         "vorbisenc ! oggmux ! filesink location="_s +
                         m_folder.path("mono.ogg")),
             QString());
    StreamServer server;
    TapLog log;
    Rig rig;
    const auto item = rig.start(
        server.serve(u"live"_s, {.body = m_folder.contents("short.ogg") + m_folder.contents("mono.ogg")}));
    item->setAudioTap({1}, makeTap(log));
    QTRY_COMPARE(rig.ended.size(), 1);
    QCOMPARE(log.prepared, 2);
    QCOMPARE(log.sampleRate, 48000.0);
    QCOMPARE(log.channels, 1U);
    QVERIFY(std::abs(rig.positions.last() - 1.24) < 0.15);
}

/// Radio servers put the title between the bytes of the sound for whoever asks for it.
void tst_AudioPath::titlesInTheStream()
{
    constexpr qsizetype interval = 4500;
    auto body = m_folder.contents("short.mp3");
    for (auto at = interval; at < body.size(); at += interval + 33)
        body.insert(at, char(2) + QByteArray("StreamTitle='سرود';").leftJustified(32, '\0'));
    StreamServer server;
    TapLog log;
    Rig rig;
    const auto item = rig.player.makeItem(
        server.serve(u"live"_s, {.body = body, .headers = "icy-name: Test\r\nicy-metaint: 4500\r\n"}));
    item->setAudioTap({1}, makeTap(log));
    rig.player.replaceCurrentItem(item);
    rig.player.play();
    QTRY_COMPARE(rig.ended.size(), 1);
    QVERIFY(std::abs(double(log.frames) / 44100 - 0.6) < 0.15);
    QCOMPARE(log.starts, 1); // no hole where a title was
}

void tst_AudioPath::withoutSound()
{
    QCOMPARE(
        runPipeline(u"videotestsrc num-buffers=5 ! video/x-raw,width=64,height=64 ! theoraenc ! oggmux ! "
                    "filesink location="_s +
                    m_folder.path("film.ogg")),
        QString());
    Rig rig;
    const auto film = rig.start(m_folder.file("film.ogg"));
    QTRY_COMPARE(film->status(), MediaItem::Status::Failed);
    QCOMPARE(film->loadAudioTracks().result().size(), 0);

    Rig soundless("nosuchelement");
    const auto item = soundless.start(m_folder.file("short.wav"));
    QTRY_COMPARE(item->status(), MediaItem::Status::Failed);
}

/// In a session with a sound server of its own, as it is while somebody logs in.
void tst_AudioPath::soundServerWithoutOutput()
{
    if (qEnvironmentVariableIsEmpty("SESSION_PULSE_PID"))
        QSKIP("needs a sound server of its own");
    QCOMPARE(QProcess::execute(u"pactl"_s, {u"unload-module"_s, u"module-null-sink"_s}), 0);
    QTest::ignoreMessage(QtWarningMsg, "[Audio] no sound output was found: playing to nobody");
    Rig rig("");
    rig.start(m_folder.file("short.wav"));
    QTRY_COMPARE(rig.ended.size(), 1);
    QCOMPARE(QProcess::execute(u"pactl"_s, {u"load-module"_s, u"module-null-sink"_s, u"sink_name=out"_s}), 0);
}

/// In such a session too; the sound server does not outlive this test.
void tst_AudioPath::soundServer()
{
    const auto server = qEnvironmentVariable("SESSION_PULSE_PID");
    if (server.isEmpty())
        QSKIP("needs a sound server of its own");
    QProcess recorder;
    recorder.start(u"parec"_s, {u"-d"_s, u"out.monitor"_s, u"--format=float32le"_s, u"--latency-msec=20"_s});
    QVERIFY(recorder.waitForStarted());
    Rig rig("");
    rig.start(m_folder.file("long.wav"));
    float loudest = 0;
    QTRY_VERIFY([&] {
        const auto recorded = recorder.read(recorder.bytesAvailable() / qint64(sizeof(float)) * 4);
        for (const auto sample : floats(recorded))
            loudest = std::max(loudest, std::abs(sample));
        return loudest > 0.4F;
    }());
    QVERIFY(loudest < 0.6F);
    recorder.kill();
    recorder.waitForFinished();

    QProcess list;
    list.start(u"pactl"_s, {u"list"_s, u"sink-inputs"_s});
    QVERIFY(list.waitForFinished());
    const auto inputs = list.readAllStandardOutput();
    QVERIFY(inputs.contains("application.name = \"Navorin\""));
    QVERIFY(inputs.contains("media.role = \"music\""));

    QCOMPARE(::kill(server.toInt(), SIGKILL), 0);
    QTRY_COMPARE(rig.player.currentItem()->status(), MediaItem::Status::Failed);
    QVERIFY(rig.is(Status::WaitingToPlay));
    rig.start(m_folder.file("short.wav"));
    QTRY_COMPARE(rig.ended.size(), 1);
}

QTEST_GUILESS_MAIN(tst_AudioPath)
#include "tst_AudioPath.moc"
