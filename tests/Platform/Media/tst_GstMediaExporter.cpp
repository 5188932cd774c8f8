#include "Platform/Audio/TestMedia.h"
#include "Platform/Media/AudioRangeReading.h"
#include "Platform/Media/GstMediaExporter.h"
#include "Support/Columns.h"
#include "Support/StreamServer.h"

#include <QFile>
#include <QTest>

#include <future>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int rate = audioRangeRate;

/// Seconds of the sound, and where in it the tone begins; negative if nowhere.
struct Heard
{
    double length = 0;
    double toneFrom = -1;
};

Heard heard(const QByteArray &bytes)
{
    Heard result;
    const auto *samples = reinterpret_cast<const qint16 *>(bytes.constData());
    const auto frames = bytes.size() / audioRangeFrameBytes;
    result.length = double(frames) / rate;
    for (qsizetype i = 0; i < frames; ++i) {
        if (std::abs(samples[2 * i]) > 3000) {
            result.toneFrom = double(i) / rate;
            break;
        }
    }
    return result;
}

/// Off this thread, where the server runs.
template <typename Work>
auto elsewhere(Work work)
{
    auto running = std::async(std::launch::async, std::move(work));
    while (running.wait_for(std::chrono::milliseconds(0)) != std::future_status::ready)
        QTest::qWait(2);
    return running.get();
}

Heard read(const AudioRange &range)
{
    const auto reading = elsewhere([&range] { return readAudioRange(range, [](double) {}, {}); });
    return reading.sound ? heard(*reading.sound) : Heard{-1, -1};
}

} // namespace

class tst_GstMediaExporter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ranges();
    void overHttp();
    void joins_data();
    void joins();
    void stopsWhileTheSourceHangs();
};

void tst_GstMediaExporter::ranges()
{
    const std::tuple<double, double, Heard> cases[]{
        // start, length, and what is heard
        {0, 3, {3, 2}},       // from the beginning
        {1.25, 3, {3, 0.75}}, // from the middle
        {4, 1, {1, 0}},       // within the tone
        {4, 30, {2, 0}},      // ends early
        {50, 3, {0, -1}},     // past its end
    };
    MediaFolder media;
    for (const auto *name : {"late.wav", "late.mp3", "late.m4a", "late.ogg"}) {
        QCOMPARE(media.writeTone(name, 4, 2), QString());
        for (const auto &[start, length, expected] : cases) {
            const auto got = read({media.file(name), start, length});
            const auto words = u"%1 from %2: %3 s, the tone from %4"_s.arg(QString::fromLatin1(name))
                                   .arg(start)
                                   .arg(got.length)
                                   .arg(got.toneFrom);
            QVERIFY2(std::abs(got.length - expected.length) < 0.12, qPrintable(words));
            QVERIFY2(std::abs(got.toneFrom - expected.toneFrom) < 0.06, qPrintable(words));
        }
    }
}

void tst_GstMediaExporter::overHttp()
{
    MediaFolder media;
    QCOMPARE(media.writeTone("late.mp3", 4, 2), QString());
    StreamServer server;
    const auto heardOf = [&](ServedStream stream) {
        stream.body = media.contents("late.mp3");
        return read({server.serve(u"late.mp3"_s, std::move(stream)), 1.25, 3});
    };
    for (const bool ranges : {true, false}) { // without ranges it is read from the beginning
        const auto got = heardOf({.sized = true, .ranges = ranges});
        QVERIFY2(std::abs(got.length - 3) < 0.01, qPrintable(QString::number(got.length)));
        QVERIFY2(std::abs(got.toneFrom - 0.75) < 0.06, qPrintable(QString::number(got.toneFrom)));
    }
    QCOMPARE(heardOf({.status = 404, .sized = true}).length, -1.0);
}

void tst_GstMediaExporter::joins_data()
{
    using Outcome = ExportOutcome;
    addColumns<QString, double, QString, Outcome>("source", "start", "video", "outcome");
    QTest::newRow("sound") << u"late.wav"_s << 1.0 << u"film.mp4"_s << Outcome::Completed;
    QTest::newRow("no such file") << u"none.mp3"_s << 0.0 << u"film.mp4"_s << Outcome::NoAudioTrack;
    QTest::newRow("no audio track") << u"film.mp4"_s << 0.0 << u"film.mp4"_s << Outcome::NoAudioTrack;
    QTest::newRow("no media at all") << u"words.mp3"_s << 0.0 << u"film.mp4"_s << Outcome::NoAudioTrack;
    QTest::newRow("nothing in that range") << u"late.wav"_s << 99.0 << u"film.mp4"_s << Outcome::Failed;
    QTest::newRow("no video") << u"late.wav"_s << 1.0 << u"none.mp4"_s << Outcome::Failed;
}

void tst_GstMediaExporter::joins()
{
    const auto [source, start, video] = fetched<QString, double, QString>("source", "start", "video");
    MediaFolder media;
    QCOMPARE(media.writeTone("late.wav", 4, 2), QString());
    QCOMPARE(
        runPipeline(QString(u"videotestsrc num-buffers=72 ! video/x-raw,width=72,height=128,framerate=24/1 ! "
                            "x264enc ! mp4mux ! filesink location=\""_s +
                            media.path("film.mp4") + u'"')),
        QString());
    QFile words(media.path("words.mp3"));
    QVERIFY(words.open(QIODevice::WriteOnly) && words.write("not a song at all\n") > 0);
    words.close();

    double last = -1;
    bool isRising = true;
    const auto output = media.path("out.mp4");
    const auto outcome = GstMediaExporter().join(media.path(video.toUtf8().constData()),
                                                 {media.file(source.toUtf8().constData()), start, 3}, output,
                                                 [&](double progress) {
                                                     isRising = isRising && progress >= last && progress <= 1;
                                                     last = progress;
                                                 },
                                                 {});
    QTEST(outcome, "outcome");
    QVERIFY(isRising);
    QCOMPARE(QFile::exists(output), outcome == ExportOutcome::Completed);
    if (outcome != ExportOutcome::Completed)
        return;
    const auto got = read({QUrl::fromLocalFile(output), 0, 10});
    QVERIFY(std::abs(got.length - 3) < 0.1);
    QVERIFY2(std::abs(got.toneFrom - 1) < 0.06, qPrintable(QString::number(got.toneFrom)));
}

void tst_GstMediaExporter::stopsWhileTheSourceHangs()
{
    StreamServer server;
    const auto address =
        server.serve(u"late.mp3"_s, {.body = QByteArray(4096, 'x'), .sized = true, .holdAfter = 100});
    std::stop_source stop;
    auto running = std::async(std::launch::async, [&] {
        return GstMediaExporter().join(
            {}, {address, 0, 3}, {}, [](double) {}, stop.get_token());
    });
    QTRY_VERIFY(server.sent() > 0);
    stop.request_stop();
    const auto isDone = [&running] {
        return running.wait_for(std::chrono::milliseconds(0)) == std::future_status::ready;
    };
    QTRY_VERIFY(isDone());
    QVERIFY(running.get() != ExportOutcome::Completed);
}

QTEST_GUILESS_MAIN(tst_GstMediaExporter)
#include "tst_GstMediaExporter.moc"
