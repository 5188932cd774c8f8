#include "Platform/Audio/GstMediaPlayer.h"
#include "Platform/Tasks/QtMainQueue.h"
#include "Support/StreamServer.h"
#include "TestMedia.h"

#include <QDeadlineTimer>
#include <QHash>
#include <QMutex>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <atomic>
#include <cmath>
#include <csignal>
#include <span>
#include <stdexcept>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using Status = MediaPlayer::TimeControlStatus;

namespace {

/// What a tap was told. The test reads it while the sound runs.
struct TapLog
{
    std::atomic_int prepared = 0;
    std::atomic_int unprepared = 0;
    std::atomic_int finalized = 0;
    std::atomic_int starts = 0;
    std::atomic<qint64> frames = 0;
    std::atomic<double> sampleRate = 0;
    std::atomic<quint32> channels = 0;
    std::atomic<quint32> flags = 0;
    std::atomic<double> loudest = 0;
    std::atomic_bool unpreparedSound = false; // sound without a format
    std::atomic<float> gain = 1;
    std::atomic_bool deaf = false;
};

TapLog *newTapLog = nullptr; // for the next tap

QHash<AudioTap *, TapLog *> &tapLogs()
{
    static QHash<AudioTap *, TapLog *> logs;
    return logs;
}

QMutex tapMutex;

TapLog &logOf(AudioTap &tap)
{
    const QMutexLocker lock(&tapMutex);
    return *tapLogs().value(&tap);
}

AudioTap::ProcessResult process(AudioTap &tap, qint64 frames, quint32 flags, AudioBufferList buffers)
{
    auto &log = logOf(tap);
    if (log.prepared == log.unprepared)
        log.unpreparedSound = true;
    if (log.deaf)
        return {0, flags};
    const auto source = tap.sourceAudio(frames, buffers);
    if (source.flags & AudioTap::flagStartOfStream)
        ++log.starts;
    log.frames += source.frames;
    const std::span samples(static_cast<float *>(buffers[0].data), buffers[0].dataByteSize / sizeof(float));
    for (auto &sample : samples) {
        log.loudest = std::max(log.loudest.load(), double(std::abs(sample)));
        sample *= log.gain;
    }
    return {source.frames, flags | source.flags};
}

std::shared_ptr<AudioTap> makeTap(TapLog &log)
{
    newTapLog = &log;
    AudioTap::Callbacks callbacks;
    callbacks.init = [](AudioTap &tap) {
        const QMutexLocker lock(&tapMutex);
        tapLogs().insert(&tap, newTapLog);
    };
    callbacks.prepare = [](AudioTap &tap, const AudioStreamDescription &format) {
        auto &log = logOf(tap);
        log.sampleRate = format.sampleRate;
        log.channels = format.channelsPerFrame;
        log.flags = format.formatFlags;
        ++log.prepared;
    };
    callbacks.process = process;
    callbacks.unprepare = [](AudioTap &tap) { ++logOf(tap).unprepared; };
    callbacks.finalize = [](AudioTap &tap) {
        ++logOf(tap).finalized;
        const QMutexLocker lock(&tapMutex);
        tapLogs().remove(&tap);
    };
    std::shared_ptr<AudioTap> tap;
    if (AudioTap::create(callbacks, tap) != AudioTap::statusOk)
        qFatal("no tap");
    return tap;
}

/// The real queue, which knows whether anything is ticking or was posted.
class CountingQueue final : public MainQueue
{
public:
    void post(Work work) override
    {
        m_queue.post(std::move(work));
        ++posted;
    }
    std::unique_ptr<Timer> after(std::chrono::milliseconds delay, Work work) override
    {
        return m_queue.after(delay, std::move(work));
    }
    std::unique_ptr<Timer> every(std::chrono::milliseconds interval, Work work) override
    {
        struct Counted final : Timer
        {
            Counted(int &count, std::unique_ptr<Timer> timer)
                : count(count)
                , timer(std::move(timer))
            {
                ++count;
            }
            ~Counted() override { --count; }
            int &count;
            std::unique_ptr<Timer> timer;
        };
        return std::make_unique<Counted>(tickers, m_queue.every(interval, std::move(work)));
    }
    QFuture<void> sleep(std::chrono::milliseconds delay) override { return m_queue.sleep(delay); }

    int tickers = 0;
    std::atomic_int posted = 0;

private:
    QtMainQueue m_queue;
};

/// A player whose statuses are written down, in order and without repetitions.
struct Rig
{
    explicit Rig(const QByteArray &sink = "fakesink sync=true", std::chrono::seconds timeout = 15s)
        : player(queue, {sink, timeout})
    {
        player.setPeriodicTimeObserver(50ms, [this](double seconds) {
            positions << seconds;
            if (statuses.isEmpty() || statuses.last() != player.timeControlStatus())
                statuses << player.timeControlStatus();
        });
    }
    std::shared_ptr<MediaItem> start(const QUrl &url)
    {
        auto item = player.makeItem(url);
        player.replaceCurrentItem(item);
        player.play();
        return item;
    }
    bool is(Status status) const { return player.timeControlStatus() == status; }

    CountingQueue queue;
    GstMediaPlayer player;
    QSignalSpy ended{&player, &MediaPlayer::itemDidPlayToEnd};
    QList<Status> statuses;
    QList<double> positions;
};

bool failsWithRuntimeError(QFuture<QList<AudioTrack>> future)
{
    try {
        future.waitForFinished();
        return false;
    } catch (const std::runtime_error &) {
        return true;
    }
}

std::span<const float> floats(const QByteArray &bytes)
{
    return {reinterpret_cast<const float *>(bytes.constData()), size_t(bytes.size()) / sizeof(float)};
}

} // namespace

class tst_GstMediaPlayer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void playsFormats_data();
    void playsFormats();
    void samples_data();
    void samples();
    void faults_data();
    void faults();
    void startsOnLittle();
    void bridgesAHole();
    void seeks_data();
    void seeks();
    void restsAtTheEnd();
    void replaces();
    void lateNews();
    void handsOverTheTap();
    void songAfterSong();
    void titlesInTheStream();
    void withoutSound();
    void soundServer();

private:
    QString path(const char *name) const { return m_folder.filePath(QString::fromLatin1(name)); }
    QUrl file(const char *name) const { return QUrl::fromLocalFile(path(name)); }
    QByteArray tone(const char *name) const { return contentsOf(path(name)); }

    QTemporaryDir m_folder;
};

void tst_GstMediaPlayer::initTestCase()
{
    for (const auto name : {"short.wav", "short.mp3", "short.aac", "short.ogg", "short.m4a"})
        QCOMPARE(writeTone(path(name), 0.6), QString());
    for (const auto name : {"long.mp3", "long.wav"})
        QCOMPARE(writeTone(path(name), 8), QString());
}

void tst_GstMediaPlayer::playsFormats_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<bool>("remote");
    for (const auto suffix : {"wav", "mp3", "aac", "ogg", "m4a"})
        QTest::addRow("%s", suffix) << QString::fromLatin1(suffix) << false;
    for (const auto suffix : {"mp3", "aac", "ogg"})
        QTest::addRow("%s stream", suffix) << QString::fromLatin1(suffix) << true;
}

void tst_GstMediaPlayer::playsFormats()
{
    QFETCH(QString, suffix);
    QFETCH(bool, remote);
    StreamServer server;
    TapLog log;
    Rig rig;
    const QByteArray name = "short."_ba + suffix.toLatin1();
    const auto item = rig.player.makeItem(remote ? server.serve(u"live"_s, {.body = tone(name.constData())})
                                                 : file(name.constData()));
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
    QVERIFY(std::isnan(rig.positions.first()));
    QVERIFY(rig.positions.last() > 0.4 && rig.positions.last() < 0.8);

    QCOMPARE(log.prepared, 1);
    QCOMPARE(log.sampleRate, 44100.0);
    QCOMPARE(log.channels, 2U);
    QCOMPARE(log.flags, AudioStreamDescription::flagIsFloat);
    QVERIFY(!log.unpreparedSound);
    QCOMPARE(log.starts, 1);
    QVERIFY(std::abs(double(log.frames) / 44100 - 0.6) < 0.15);
    QVERIFY(log.loudest > 0.4 && log.loudest < 0.8);
}

void tst_GstMediaPlayer::samples_data()
{
    QTest::addColumn<bool>("tapped");
    QTest::addColumn<float>("tapGain");
    QTest::addColumn<bool>("deaf");
    QTest::addColumn<float>("volume");
    QTest::addRow("no tap") << false << 1.0F << false << 1.0F;
    QTest::addRow("a tap that does nothing") << true << 1.0F << false << 1.0F;
    QTest::addRow("a tap that turns down") << true << 0.25F << false << 1.0F;
    QTest::addRow("a tap that delivers nothing") << true << 1.0F << true << 1.0F;
    QTest::addRow("volume is linear") << false << 1.0F << false << 0.5F;
    QTest::addRow("volume and tap") << true << 0.5F << false << 0.5F;
    QTest::addRow("volume zero") << false << 1.0F << false << 0.0F;
}

void tst_GstMediaPlayer::samples()
{
    QFETCH(bool, tapped);
    QFETCH(float, tapGain);
    QFETCH(bool, deaf);
    QFETCH(float, volume);
    const auto capture = u"audioconvert ! audio/x-raw,format=F32LE,layout=interleaved ! filesink location="_s;
    const auto reference = path("reference.raw");
    QCOMPARE(
        runPipeline(u"filesrc location=%1 ! decodebin ! %2%3"_s.arg(path("short.mp3"), capture, reference)),
        QString());

    const auto played = path("played.raw");
    TapLog log;
    log.gain = tapGain;
    log.deaf = deaf;
    {
        Rig rig(QString(capture + played).toUtf8());
        rig.player.setVolume(volume);
        const auto item = rig.player.makeItem(file("short.mp3"));
        if (tapped)
            item->setAudioTap({1}, makeTap(log));
        rig.player.replaceCurrentItem(item);
        rig.player.play();
        QTRY_COMPARE(rig.ended.size(), 1);
    }
    const auto expected = contentsOf(reference);
    const auto heard = contentsOf(played);
    QCOMPARE(heard.size(), expected.size());
    const auto factor = deaf ? 0.0F : tapGain * volume;
    const auto wanted = floats(expected);
    const auto got = floats(heard);
    for (size_t i = 0; i < wanted.size(); ++i)
        QVERIFY2(got[i] == wanted[i] * factor, qPrintable(QString::number(i)));
}

void tst_GstMediaPlayer::faults_data()
{
    using End = ServedStream::End;
    QTest::addColumn<ServedStream>("stream");
    QTest::addColumn<bool>("sounds");
    QTest::addColumn<bool>("fails");
    const auto some = [this](End end) {
        return ServedStream{.body = tone("short.mp3"), .holdAfter = 9000, .end = end};
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
    QFETCH(ServedStream, stream);
    QFETCH(bool, sounds);
    QFETCH(bool, fails);
    StreamServer server;
    Rig rig("fakesink sync=true", 1s);
    const auto item = rig.start(server.serve(u"live"_s, stream));
    if (sounds)
        QTRY_VERIFY(rig.is(Status::Playing));
    Q_EMIT server.released();
    if (fails) {
        QTRY_COMPARE_WITH_TIMEOUT(item->status(), MediaItem::Status::Failed, 10000);
        QVERIFY(!item->error()->isEmpty());
        QVERIFY(rig.is(Status::WaitingToPlay));
        QCOMPARE(rig.ended.size(), 0);
    } else {
        QTRY_COMPARE(rig.ended.size(), 1);
        QVERIFY(rig.is(Status::Paused));
        QVERIFY(!item->error());
    }
    QCOMPARE(rig.statuses.contains(Status::Playing), sounds);
    if (sounds)
        QCOMPARE(item->loadAudioTracks().result().size(), 1);
    else
        QVERIFY(failsWithRuntimeError(item->loadAudioTracks()));
    QVERIFY(server.requests(u"live"_s) <= 2);

    // The next item plays as if nothing had been.
    rig.statuses.clear();
    rig.start(file("short.wav"));
    QTRY_VERIFY(rig.statuses.contains(Status::Playing));
}

void tst_GstMediaPlayer::startsOnLittle()
{
    constexpr qint64 bytesPerSecond = 16000;
    StreamServer server;
    Rig rig;
    rig.start(server.serve(u"live"_s, {.body = tone("long.mp3"), .bytesPerSecond = bytesPerSecond}));
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
    const auto body = tone("long.mp3").first(40000); // 2.5 s
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
    QTest::addColumn<ServedStream>("stream");
    QTest::addColumn<bool>("early");
    QTest::addColumn<bool>("lands");
    const auto body = tone("long.mp3");
    const ServedStream track{.body = body, .sized = true, .ranges = true};
    QTest::addRow("track") << track << false << true;
    QTest::addRow("track, before it is open") << track << true << true;
    QTest::addRow("live") << ServedStream{.body = body, .bytesPerSecond = 32000} << false << false;
    QTest::addRow("no ranges") << ServedStream{.body = body, .sized = true} << false << false;
    QTest::addRow("file") << ServedStream{} << false << true;
}

void tst_GstMediaPlayer::seeks()
{
    QFETCH(ServedStream, stream);
    QFETCH(bool, early);
    QFETCH(bool, lands);
    StreamServer server;
    TapLog log;
    Rig rig;
    const auto item =
        rig.start(stream.body.isEmpty() ? file("long.wav") : server.serve(u"track"_s, std::move(stream)));
    item->setAudioTap({1}, makeTap(log));
    if (!early)
        QTRY_VERIFY(rig.is(Status::Playing));
    const auto startsBefore = log.starts.load();
    rig.player.seek(5);
    rig.positions.clear();
    QTRY_VERIFY(rig.is(Status::Playing));
    QTRY_VERIFY(rig.positions.size() > 5 && !std::isnan(rig.positions.last()));
    const auto last = rig.positions.last();
    QVERIFY2(lands ? last > 5 && last < 6.5 : last < 2, qPrintable(QString::number(last)));
    QVERIFY(item->status() == MediaItem::Status::ReadyToPlay);
    if (lands)
        QVERIFY(log.starts > startsBefore);
}

void tst_GstMediaPlayer::restsAtTheEnd()
{
    Rig rig;
    const auto item = rig.start(file("short.wav"));
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
    auto first =
        rig.player.makeItem(server.serve(u"first"_s, {.body = tone("long.mp3"), .bytesPerSecond = 32000}));
    first->setAudioTap({1}, makeTap(log));
    rig.player.play();
    rig.player.replaceCurrentItem(first);
    QTRY_VERIFY(log.frames > 0);
    QTRY_VERIFY(rig.is(Status::Playing));

    auto second = rig.player.makeItem(server.serve(u"second"_s, {.holdAfter = 0}));
    const auto tracks = second->loadAudioTracks();
    rig.player.replaceCurrentItem(second);
    QVERIFY(rig.is(Status::WaitingToPlay));
    QTRY_COMPARE(log.unprepared, 1);
    const auto heard = log.frames.load();
    first.reset();
    QTRY_COMPARE(log.finalized, 1);
    QCOMPARE(log.frames, heard);

    rig.player.replaceCurrentItem(rig.player.makeItem(file("short.wav")));
    QVERIFY(failsWithRuntimeError(tracks));
    QTRY_VERIFY(rig.is(Status::Playing));
    QTRY_COMPARE(rig.ended.size(), 1);
    QCOMPARE(rig.ended.first().first().value<MediaItem *>(), rig.player.currentItem().get());
}

/// What a pipeline had told before its item was replaced, but what has not arrived yet, concerns nobody.
void tst_GstMediaPlayer::lateNews()
{
    Rig rig;
    const auto item = rig.start(file("no such file"));
    const int before = rig.queue.posted;
    const QDeadlineTimer deadline(5000);
    while (rig.queue.posted == before && !deadline.hasExpired())
        QThread::yieldCurrentThread();
    QVERIFY(rig.queue.posted > before);
    rig.player.replaceCurrentItem(nullptr);
    QCoreApplication::processEvents();
    QCOMPARE(item->status(), MediaItem::Status::Unknown);
}

void tst_GstMediaPlayer::handsOverTheTap()
{
    Rig rig;
    const auto item = rig.start(file("long.wav"));
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
void tst_GstMediaPlayer::songAfterSong()
{
    QCOMPARE(runPipeline(u"audiotestsrc num-buffers=30 ! audio/x-raw,rate=48000,channels=1 ! audioconvert ! "
                         "vorbisenc ! oggmux ! filesink location="_s +
                         path("mono.ogg")),
             QString());
    StreamServer server;
    TapLog log;
    Rig rig;
    const auto item = rig.start(server.serve(u"live"_s, {.body = tone("short.ogg") + tone("mono.ogg")}));
    item->setAudioTap({1}, makeTap(log));
    QTRY_COMPARE(rig.ended.size(), 1);
    QCOMPARE(log.prepared, 2);
    QCOMPARE(log.sampleRate, 48000.0);
    QCOMPARE(log.channels, 1U);
    QVERIFY(std::abs(rig.positions.last() - 1.24) < 0.15);
}

/// Radio servers put the title between the bytes of the sound for whoever asks for it.
void tst_GstMediaPlayer::titlesInTheStream()
{
    constexpr qsizetype interval = 4500;
    auto body = tone("short.mp3");
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

void tst_GstMediaPlayer::withoutSound()
{
    QCOMPARE(
        runPipeline(u"videotestsrc num-buffers=5 ! video/x-raw,width=64,height=64 ! theoraenc ! oggmux ! "
                    "filesink location="_s +
                    path("film.ogg")),
        QString());
    Rig rig;
    const auto film = rig.start(file("film.ogg"));
    QTRY_COMPARE(film->status(), MediaItem::Status::Failed);
    QCOMPARE(film->loadAudioTracks().result().size(), 0);

    Rig soundless("nosuchelement");
    const auto item = soundless.start(file("short.wav"));
    QTRY_COMPARE(item->status(), MediaItem::Status::Failed);
}

/// In a session with a sound server of its own, which does not outlive this test.
void tst_GstMediaPlayer::soundServer()
{
    const auto server = qEnvironmentVariable("SESSION_PULSE_PID");
    if (server.isEmpty())
        QSKIP("needs a sound server of its own");
    QProcess recorder;
    recorder.start(u"parec"_s, {u"-d"_s, u"out.monitor"_s, u"--format=float32le"_s, u"--latency-msec=20"_s});
    QVERIFY(recorder.waitForStarted());
    Rig rig("");
    rig.start(file("long.wav"));
    float loudest = 0;
    QTRY_VERIFY([&] {
        const auto recorded = recorder.readAllStandardOutput();
        for (const auto sample : floats(recorded.first(recorded.size() / 4 * 4)))
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
    rig.start(file("short.wav"));
    QTRY_COMPARE(rig.ended.size(), 1);
}

QTEST_GUILESS_MAIN(tst_GstMediaPlayer)
#include "tst_GstMediaPlayer.moc"
