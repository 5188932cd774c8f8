#include "Platform/Audio/TestMedia.h"
#include "Platform/Media/GstMediaExporter.h"
#include "Platform/Media/GstVideoWriter.h"
#include "Platform/Storage/QtFileStore.h"
#include "Services/Story/StoryVideoRenderer.h"
#include "StorySamples.h"
#include "Support/Columns.h"
#include "Support/ManualMainQueue.h"

#include <QFile>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <atomic>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

void touch(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("no file to be made");
}

struct WriterScript
{
    bool starts = true;
    int roomFor = 10000; ///< frames
    int failsAt = 10000;
    QString error;
};

/// Counts what it is given, and fails as it is told.
class FakeWriter final : public VideoWriter
{
public:
    FakeWriter(QString path, const WriterScript &script, std::atomic_int &frames, std::stop_token stop)
        : m_path(std::move(path))
        , m_script(script)
        , m_frames(frames)
        , m_stop(std::move(stop))
    {
        if (++alive > 1)
            qFatal("two videos are written at once");
    }
    ~FakeWriter() override { --alive; }

    bool start() override
    {
        if (m_script.starts)
            touch(m_path);
        return m_script.starts;
    }
    std::optional<VideoFrame> nextFrame() override
    {
        if (m_count >= m_script.roomFor)
            return {};
        return VideoFrame{m_bytes.data(), m_bytes.data() + 720 * 1280, m_bytes.data() + 720 * 1280 * 5 / 4};
    }
    bool append() override
    {
        ++m_frames;
        return ++m_count < m_script.failsAt && !m_stop.stop_requested();
    }
    WriteResult finish() override
    {
        return {m_count < m_script.failsAt && !m_stop.stop_requested(), m_script.error};
    }

private:
    static inline std::atomic_int alive = 0;
    const QString m_path;
    const WriterScript m_script;
    std::atomic_int &m_frames;
    const std::stop_token m_stop;
    int m_count = 0;
    std::vector<quint8> m_bytes = std::vector<quint8>(720 * 1280 * 3 / 2);
};

class FakeExporter final : public MediaExporter
{
public:
    ExportOutcome join(const QString &video, const AudioRange &sound, const QString &output,
                       const Progress &progress, const std::stop_token &) override
    {
        asked = sound;
        sawVideo = QFile::exists(video);
        progress(0.5);
        if (writes)
            touch(output);
        return outcome;
    }

    ExportOutcome outcome = ExportOutcome::Completed;
    bool writes = true;
    AudioRange asked;
    bool sawVideo = false;
};

/// Names of the boxes at the top of an MPEG-4 file, in order.
QByteArrayList boxes(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArrayList names;
    while (!file.atEnd()) {
        const auto head = file.read(8);
        if (head.size() < 8)
            break;
        names.append(head.sliced(4));
        const auto size = qFromBigEndian<quint32>(head.constData());
        if (size < 8 || !file.seek(file.pos() - 8 + size))
            break;
    }
    return names;
}

} // namespace

namespace navorin {

struct TestAccess
{
    StoryVideoRenderer &made(VideoWriterFactory makeWriter, MediaExporter &with)
    {
        renderer.reset(new StoryVideoRenderer({queue, files, std::move(makeWriter), with, folder.path()}));
        return *renderer;
    }
    StoryVideoRenderer &fake()
    {
        return made(
            [this](const QString &path, const VideoFormat &, const std::stop_token &stop) {
                return std::make_unique<FakeWriter>(path, script, frames, stop);
            },
            exporter);
    }
    StoryVideoRenderer &real() { return made(makeVideoWriter, realExporter); }
    StoryVideoRenderer::Progress noting()
    {
        return [this](double value) { progress.append(value); };
    }
    /// The name of the file that comes of it, or the error's code and text.
    QString outcome(QFuture<QUrl> future)
    {
        while (!future.isFinished()) {
            queue.drain();
            QTest::qWait(1);
        }
        try {
            return QFileInfo(future.result().toLocalFile()).fileName();
        } catch (const StoryError &error) {
            return QString::number(int(error.code())) + u' ' + error.description();
        }
    }
    bool has(const QString &name) const { return QFile::exists(folder.filePath(name)); }

    QTemporaryDir folder;
    QtFileStore files;
    ManualMainQueue queue;
    WriterScript script;
    std::atomic_int frames = 0;
    FakeExporter exporter;
    GstMediaExporter realExporter;
    QList<double> progress;
    std::unique_ptr<StoryVideoRenderer> renderer;
};

} // namespace navorin

class tst_StoryVideoRenderer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { loadAppFonts(); }
    void outcomes_data();
    void outcomes();
    void reportsOnTheMainQueueOnly();
    void replacesAndWaits();
    void stops();
    void file_data();
    void file();
    void folderThatIsNotThere();
};

namespace {

constexpr double third = 0.8 * 24 / 72;
const QString silent = u"story-silent.mp4"_s;
const QString joined = u"story-final.mp4"_s;

} // namespace

void tst_StoryVideoRenderer::outcomes_data()
{
    // exported: -1 without a source of sound
    addColumns<WriterScript, int, bool, QString, QList<double>>("script", "exported", "writes", "outcome",
                                                                "progress");
    const QList drawn{0.0, third, 2 * third};
    const auto with = [](QList<double> list, const QList<double> &more) { return list << more; };
    QTest::newRow("no sound asked for") << WriterScript{} << -1 << false << silent << with(drawn, {0.85});
    QTest::newRow("sound") << WriterScript{} << int(ExportOutcome::Completed) << true << joined
                           << with(drawn, {0.85, 0.925, 1});
    QTest::newRow("no track") << WriterScript{} << int(ExportOutcome::NoAudioTrack) << false << silent
                              << with(drawn, {0.85, 0.925});
    QTest::newRow("failed export") << WriterScript{} << int(ExportOutcome::Failed) << true << silent
                                   << with(drawn, {0.85, 0.925});
    QTest::newRow("an export without a file")
        << WriterScript{} << int(ExportOutcome::Completed) << false << silent << with(drawn, {0.85, 0.925});
    QTest::newRow("no writer") << WriterScript{.starts = false} << -1 << false
                               << u"-1 AVAssetWriter آماده نشد"_s << QList<double>{};
    QTest::newRow("no memory") << WriterScript{.roomFor = 30} << -1 << false << u"-3 منابع ناکافی برای رندر"_s
                               << QList{0.0, third};
    QTest::newRow("a writer that fails")
        << WriterScript{.failsAt = 30} << -1 << false << u"-4 خطا در رندر ویدیو"_s << QList{0.0, third, 0.0};
    QTest::newRow("in its own words")
        << WriterScript{.failsAt = 1, .error = u"پر"_s} << -1 << false << u"-4 پر"_s << QList{0.0};
}

void tst_StoryVideoRenderer::outcomes()
{
    const auto [script, exported, writes] = fetched<WriterScript, int, bool>("script", "exported", "writes");
    TestAccess rig;
    rig.script = script;
    auto config = sampleStory({});
    config.duration = 2;
    config.audioStart = -7;
    if (exported >= 0) {
        config.audioURL = QUrl(u"https://a.example/x.mp3"_s);
        rig.exporter.outcome = ExportOutcome(exported);
        rig.exporter.writes = writes;
    }
    touch(rig.folder.filePath(joined)); // of an earlier render
    const auto outcome = rig.outcome(rig.fake().render(config, rig.noting()));
    QTEST(outcome, "outcome");
    QTEST(rig.progress, "progress");
    if (exported >= 0) {
        QCOMPARE(rig.exporter.asked.start, 0.0);
        QCOMPARE(rig.exporter.asked.length, 3.0);
        QVERIFY(rig.exporter.sawVideo);
    }
    QCOMPARE(rig.has(silent), outcome == silent || outcome.startsWith(u"-3"));
    if (outcome == joined || outcome.startsWith(u"story") || exported < 0)
        QCOMPARE(rig.frames == 72, outcome.startsWith(u"story"));
}

void tst_StoryVideoRenderer::reportsOnTheMainQueueOnly()
{
    TestAccess rig;
    auto config = sampleStory({});
    config.duration = 3;
    const auto future = rig.fake().render(config, rig.noting());
    QTRY_COMPARE_WITH_TIMEOUT(rig.frames.load(), 72, 60000);
    QVERIFY(rig.progress.isEmpty());
    QVERIFY(!future.isFinished());
    QCOMPARE(rig.outcome(future), silent);
    QCOMPARE(rig.progress.size(), 4);
}

void tst_StoryVideoRenderer::replacesAndWaits()
{
    TestAccess rig;
    auto config = sampleStory({});
    config.duration = 3;
    config.audioURL = QUrl(u"https://a.example/x.mp3"_s);
    auto &renderer = rig.fake();
    auto first = renderer.render(config, rig.noting());
    config.audioURL.reset();
    auto second = renderer.render(config, rig.noting());
    QCOMPARE(rig.outcome(first), joined);
    QCOMPARE(rig.outcome(second), silent);
    QVERIFY(rig.has(silent) && !rig.has(joined));
}

void tst_StoryVideoRenderer::stops()
{
    TestAccess rig;
    auto config = sampleStory({});
    config.duration = 60;
    std::stop_source stop;
    auto &renderer = rig.fake();
    auto future = renderer.render(config, rig.noting(), stop.get_token());
    QTRY_VERIFY_WITH_TIMEOUT(rig.frames > 5, 60000);
    stop.request_stop();
    QVERIFY(rig.outcome(future).startsWith(u"-4"));
    QVERIFY(rig.frames < 1440 && !rig.has(silent));

    rig.frames = 0;
    auto last = renderer.render(config, rig.noting());
    QTRY_VERIFY_WITH_TIMEOUT(rig.frames > 5, 60000);
    rig.renderer.reset(); // the program ends
    QVERIFY(rig.outcome(last).startsWith(u"-4"));
}

void tst_StoryVideoRenderer::file_data()
{
    // seconds: of sound
    addColumns<QString, double, QString, double>("audio", "audioStart", "name", "seconds");
    QTest::newRow("silent") << QString() << 0.0 << silent << 0.0;
    QTest::newRow("whole") << u"tone.wav"_s << 2.0 << joined << 5.0;
    QTest::newRow("ends early") << u"tone.mp3"_s << 7.0 << joined << 3.0;
    QTest::newRow("not there") << u"nothing.mp3"_s << 0.0 << silent << 0.0;
}

void tst_StoryVideoRenderer::file()
{
    const auto [audio, audioStart, seconds] =
        fetched<QString, double, double>("audio", "audioStart", "seconds");
    MediaFolder media;
    TestAccess rig;
    auto config = sampleStory(sampleCover({400, 400}));
    if (!audio.isEmpty()) {
        if (!audio.startsWith(u"nothing"))
            QCOMPARE(media.writeTone(audio.toUtf8().constData(), 10), QString());
        config.audioURL = media.file(audio.toUtf8().constData());
        config.audioStart = audioStart;
    }
    const auto name = rig.outcome(rig.real().render(config, rig.noting()));
    QTEST(name, "name");
    const auto path = rig.folder.filePath(name);
    const auto order = boxes(path);
    QVERIFY2(order.contains("moov") && order.indexOf("moov") < order.indexOf("mdat"),
             order.join(' ').constData());

    const auto streams = probedStreams(path);
    QCOMPARE(streams.size(), seconds > 0 ? 2 : 1);
    const auto video = streams.at(0).toObject();
    QCOMPARE(video.value(u"codec_name"_s).toString(), u"h264"_s);
    QCOMPARE(video.value(u"width"_s).toInt(), 720);
    QCOMPARE(video.value(u"height"_s).toInt(), 1280);
    QCOMPARE(video.value(u"avg_frame_rate"_s).toString(), u"24/1"_s);
    QCOMPARE(video.value(u"nb_read_frames"_s).toString(), u"120"_s);
    QCOMPARE(video.value(u"color_space"_s).toString(), u"bt709"_s);
    if (seconds <= 0)
        return;
    const auto sound = streams.at(1).toObject();
    QCOMPARE(sound.value(u"codec_name"_s).toString(), u"aac"_s);
    QVERIFY2(std::abs(sound.value(u"duration"_s).toString().toDouble() - seconds) < 0.1,
             qPrintable(sound.value(u"duration"_s).toString()));
}

void tst_StoryVideoRenderer::folderThatIsNotThere()
{
    TestAccess rig;
    rig.folder.remove();
    QCOMPARE(rig.outcome(rig.real().render(sampleStory({}), rig.noting())), u"-1 AVAssetWriter آماده نشد"_s);
    GstVideoWriter full(u"/dev/full"_s, {{720, 1280}, 24}, {});
    QVERIFY(full.start());
    for (int n = 0; n < 30; ++n) {
        QVERIFY(full.nextFrame());
        full.append();
    }
    const auto result = full.finish();
    QVERIFY(!result);
    QCOMPARE(result.error, u"فضای دیسک کافی نیست."_s);
}

QTEST_MAIN(tst_StoryVideoRenderer)
#include "tst_StoryVideoRenderer.moc"
