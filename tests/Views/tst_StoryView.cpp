#include "Platform/Desktop/MediaLibrary.h"
#include "Platform/Desktop/ShareSheet.h"
#include "Platform/Media/MediaExporter.h"
#include "Platform/Media/VideoWriter.h"
#include "Platform/Storage/QtFileStore.h"
#include "Platform/Tasks/Detached.h"
#include "Services/Backend/APIClient.h"
#include "Services/Offline/OfflineStore.h"
#include "Services/Playback/RadioPlayer.h"
#include "Services/Story/StoryVideoRenderer.h"
#include "Support/FakeDesktop.h"
#include "Support/FakeHttpSession.h"
#include "Support/FakeMediaPlayer.h"
#include "Support/ManualMainQueue.h"
#include "Views/Story/StoryView.h"

#include <QBuffer>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <atomic>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

/// Counts its frames, and waits at each while it is held.
class FakeWriter final : public VideoWriter
{
public:
    FakeWriter(QString path, std::atomic_int &frames, const std::atomic_bool &isHeld, bool fails,
               std::stop_token stop)
        : m_path(std::move(path))
        , m_frames(frames)
        , m_isHeld(isHeld)
        , m_fails(fails)
        , m_stop(std::move(stop))
    {
    }
    bool start() override
    {
        QFile file(m_path);
        return !m_fails && file.open(QIODevice::WriteOnly);
    }
    std::optional<VideoFrame> nextFrame() override
    {
        return VideoFrame{m_bytes.data(), m_bytes.data() + 720 * 1280, m_bytes.data() + 720 * 1280 * 5 / 4};
    }
    bool append() override
    {
        ++m_frames;
        while (m_isHeld && !m_stop.stop_requested())
            QThread::yieldCurrentThread();
        return !m_stop.stop_requested();
    }
    WriteResult finish() override { return {!m_stop.stop_requested(), {}}; }

private:
    const QString m_path;
    std::atomic_int &m_frames;
    const std::atomic_bool &m_isHeld;
    const bool m_fails;
    const std::stop_token m_stop;
    std::vector<quint8> m_bytes = std::vector<quint8>(720 * 1280 * 3 / 2);
};

class FakeExporter final : public MediaExporter
{
public:
    ExportOutcome join(const QString &, const AudioRange &sound, const QString &output, const Progress &,
                       const std::stop_token &) override
    {
        asked = sound;
        QFile file(output);
        return file.open(QIODevice::WriteOnly) ? ExportOutcome::Completed : ExportOutcome::Failed;
    }
    std::optional<AudioRange> asked;
};

class FakeShareSheet final : public ShareSheet
{
public:
    void openWith(const QString &file) override { handed.append(u"open "_s + file); }
    void showInFileManager(const QString &file) override { handed.append(u"show "_s + file); }
    void copy(const QString &file) override { handed.append(u"copy "_s + file); }

    QStringList handed;
};

class FakeMediaLibrary final : public MediaLibrary
{
public:
    QFuture<QString> keepVideo(const QString &, const QString &title) override
    {
        titles.append(title);
        return QtFuture::makeReadyFuture(failure);
    }

    QString failure;
    QStringList titles;
};

} // namespace

namespace navorin {

struct TestAccess
{
    TestAccess()
    {
        client.reset(new APIClient(QUrl(u"https://a.example"_s), http));
        offline.reset(new OfflineStore({files, queue, http, *client}));
        player.reset(new RadioPlayer({engine, desktop.audioSession, desktop.nowPlaying,
                                      desktop.remoteCommands, queue, *client, *offline}));
        renderer.reset(new StoryVideoRenderer(
            {queue, files,
             [this](const QString &path, const VideoFormat &, const std::stop_token &stop) {
                 return std::make_unique<FakeWriter>(path, frames, isHeld, writerFails, stop);
             },
             exporter, folder.path()}));
    }
    ~TestAccess()
    {
        renderer.reset();
        settle();
        engine.failPendingTracks();
        while (!http.exchanges.empty()) {
            http.take().fail();
            settle();
        }
        player.reset();
    }

    void settle()
    {
        for (int round = 0; round < 3; ++round) {
            QThreadPool::globalInstance()->waitForDone();
            QCoreApplication::processEvents();
            queue.drain();
        }
    }
    void select(const Station &station)
    {
        detach(player->selectStation(station), "selecting in a test");
        settle();
        while (!http.exchanges.empty()) { // the player's own wish for artwork
            http.take().fail();
            settle();
        }
    }
    std::unique_ptr<StoryView> open(const QByteArray &lyrics)
    {
        auto view = std::make_unique<StoryView>(
            player->currentStation(),
            StoryView::Sources{*player, *offline, *client, *renderer, sharing, library});
        if (!http.exchanges.empty())
            asked = http.exchanges.front().request.url.toString();
        answer(lyrics);
        return view;
    }
    void answer(const QByteArray &body, int status = 200)
    {
        if (http.exchanges.empty())
            return;
        http.take().answer(body, status);
        settle();
    }
    void finish(const StoryView &view)
    {
        while (view.isRendering()) {
            settle();
            QTest::qWait(1);
        }
    }

    FakeHttpSession http;
    ManualMainQueue queue;
    QtFileStore files;
    FakeDesktop desktop;
    FakeMediaPlayer engine;
    FakeExporter exporter;
    FakeShareSheet sharing;
    FakeMediaLibrary library;
    QTemporaryDir folder;
    std::atomic_int frames = 0;
    std::atomic_bool isHeld = false;
    bool writerFails = false;
    QString asked;
    std::unique_ptr<APIClient> client;
    std::unique_ptr<OfflineStore> offline;
    std::unique_ptr<RadioPlayer> player;
    std::unique_ptr<StoryVideoRenderer> renderer;
};

} // namespace navorin

namespace {

const auto song = R"({"data":{"found":true,"elapsed_seconds":77,"lines":[
    {"time":30,"text":"سه"},{"time":20,"text":"دو"},{"text":"یک"},{"time":20,"text":"دو دوم"}]}})"_ba;

LyricsLine line(std::optional<double> time, const QString &text = {})
{
    LyricsLine made;
    made.time = time;
    made.text = text;
    return made;
}

Station track(bool isLive = false)
{
    Station station;
    station.genre = u"archive"_s;
    station.serverName = u"بایگانی"_s;
    station.streamURL = u"/stream/live"_s;
    station.title = u"برنامه"_s;
    if (isLive)
        return station;
    PlaylistTrack one;
    one.trackID = u"7"_s;
    one.title = u"چتری نداشتیم"_s;
    one.streamURL = u"/stream/7"_s;
    one.duration = 215;
    station.tracks = {one};
    return station;
}

} // namespace

class tst_StoryView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void durations_data();
    void durations();
    void picks_data();
    void picks();
    void labels_data();
    void labels();
    void audioStarts_data();
    void audioStarts();
    void contents_data();
    void contents();
    void makesAndHandsOver();
    void liveStationIsSilent();
    void failures();
    void closedDuringARender();
};

void tst_StoryView::durations_data()
{
    QTest::addColumn<QList<LyricsLine>>("lines");
    QTest::addColumn<LineRange>("range");
    QTest::addColumn<double>("seconds");
    const auto timed = [](double from, double to) { return QList{line(from), line(to)}; };
    QTest::newRow("a second for the last line") << timed(10, 22.5) << LineRange{0, 1} << 13.5;
    QTest::newRow("either way round") << timed(10, 22.5) << LineRange{1, 0} << 13.5;
    QTest::newRow("shortest") << timed(10, 11) << LineRange{0, 1} << 3.0;
    QTest::newRow("longest") << timed(10, 100) << LineRange{0, 1} << 60.0;
    QTest::newRow("at one time") << timed(10, 10) << LineRange{0, 1} << 15.0;
    QTest::newRow("a single line") << timed(10, 20) << LineRange{1, 1} << 15.0;
    QTest::newRow("without times") << QList{line({}), line(4.0)} << LineRange{0, 1} << 15.0;
    QTest::newRow("backwards") << timed(20, 10) << LineRange{0, 1} << 15.0;
    QTest::newRow("beyond") << timed(10, 20) << LineRange{0, 2} << 15.0;
    QTest::newRow("negative") << timed(10, 20) << LineRange{-1, 1} << 15.0;
    QTest::newRow("empty") << QList<LyricsLine>() << LineRange{0, 0} << 15.0;
}

void tst_StoryView::durations()
{
    QFETCH(QList<LyricsLine>, lines);
    QFETCH(LineRange, range);
    QTEST(smartDuration(lines, range), "seconds");
}

void tst_StoryView::picks_data()
{
    QTest::addColumn<LineRange>("result");
    QTest::addColumn<LineRange>("expected");
    QTest::newRow("start within") << withStart({0, 5}, 3) << LineRange{3, 5};
    QTest::newRow("start takes the end along") << withStart({0, 5}, 8) << LineRange{8, 8};
    QTest::newRow("end within") << withEnd({2, 5}, 9) << LineRange{2, 9};
    QTest::newRow("end takes the start along") << withEnd({4, 5}, 1) << LineRange{1, 1};
    QTest::newRow("six at first") << defaultRange(40) << LineRange{0, 5};
    QTest::newRow("or as many as there are") << defaultRange(2) << LineRange{0, 1};
}

void tst_StoryView::picks()
{
    QFETCH(LineRange, result);
    QTEST(result, "expected");
}

void tst_StoryView::labels_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const auto row = [](const QString &text) { return lineRowText({line({}), line({}, text)}, 1); };
    QTest::newRow("26 characters") << row(u"ا"_s.repeated(26)) << QString(u"2. "_s + u"ا"_s.repeated(26));
    QTest::newRow("27") << row(u"ا"_s.repeated(27)) << QString(u"2. "_s + u"ا"_s.repeated(26) + u"…"_s);
    QTest::newRow("27 emoji") << row(u"👋🏽"_s.repeated(27))
                              << QString(u"2. "_s + u"👋🏽"_s.repeated(26) + u"…"_s);
    QTest::newRow("no text") << row({}) << u"2. "_s;
    QTest::newRow("chosen") << numberText({line({}, u"دل"_s)}, 0) << u"#1 — دل"_s;
    QTest::newRow("chosen beyond") << numberText({line({}, u"دل"_s)}, 4) << u"#5 — "_s;
    QTest::newRow("chosen of none") << numberText({}, 0) << QString();
    QTest::newRow("length") << lengthText(24.4) << u"مدت ویدیو: 24 ثانیه"_s;
    QTest::newRow("percent") << percentText(0.469) << u"46٪"_s;
}

void tst_StoryView::labels()
{
    QFETCH(QString, text);
    QTEST(text, "expected");
}

void tst_StoryView::audioStarts_data()
{
    QTest::addColumn<std::optional<LyricsData>>("lyrics");
    QTest::addColumn<std::optional<double>>("start");
    LyricsData lyrics;
    lyrics.elapsedSeconds = 12;
    QTest::newRow("no lyrics") << std::optional<LyricsData>() << std::optional<double>();
    QTest::newRow("no lines") << std::optional(lyrics) << std::optional(12.0);
    lyrics.lines = {line(3.0), line({})};
    lyrics.elapsedSeconds = -4;
    QTest::newRow("no time, and before the song") << std::optional(lyrics) << std::optional(0.0);
    lyrics.elapsedSeconds.reset();
    QTest::newRow("nothing tells") << std::optional(lyrics) << std::optional<double>();
    lyrics.lines->last().time = 42.5;
    QTest::newRow("the line's time") << std::optional(lyrics) << std::optional(42.5);
}

void tst_StoryView::audioStarts()
{
    QFETCH(std::optional<LyricsData>, lyrics);
    QTEST(storyAudioStart(lyrics, 1), "start");
}

void tst_StoryView::contents_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("content");
    QTest::newRow("no answer that can be read") << "x"_ba << int(StoryView::LoadFailed);
    QTest::newRow("no data") << R"({"code":0})"_ba << int(StoryView::LoadFailed);
    QTest::newRow("nothing found") << R"({"data":{"found":false,"lines":[{"text":"a"}]}})"_ba
                                   << int(StoryView::NotFound);
    QTest::newRow("found is missing")
        << R"({"data":{"lines":[{"text":"a"}]}})"_ba << int(StoryView::NotFound);
    QTest::newRow("no lines") << R"({"data":{"found":true,"lines":[]}})"_ba << int(StoryView::NotFound);
    QTest::newRow("lines") << song << int(StoryView::Picker);
}

void tst_StoryView::contents()
{
    QFETCH(QByteArray, body);
    TestAccess rig;
    rig.select(track());
    const auto view = rig.open(body);
    QTEST(int(view->content()), "content");
    QVERIFY(rig.asked.contains(u"genre=archive"_s) && rig.asked.endsWith(u"duration=215"_s));
    if (view->content() == StoryView::Picker)
        QCOMPARE(view->rows(), QStringList({u"1. یک"_s, u"2. دو"_s, u"3. دو دوم"_s, u"4. سه"_s}));
    else
        view->generate();
    QVERIFY(!view->isRendering());
}

void tst_StoryView::makesAndHandsOver()
{
    TestAccess rig;
    rig.select(track());
    const auto view = rig.open(song);
    QCOMPARE(view->endLine(), 3);
    view->pickStart(1);
    QCOMPARE(view->lengthText(), u"مدت ویدیو: 11 ثانیه"_s);
    view->generate();
    view->generate(); // one at a time
    QVERIFY(view->isRendering());
    rig.finish(*view);
    QCOMPARE(rig.frames, 11 * 24);
    QCOMPARE(view->videoURL().fileName(), u"story-final.mp4"_s);
    QCOMPARE(view->renderProgress(), 1.0);
    QCOMPARE(rig.exporter.asked->source, QUrl(u"https://a.example/stream/7"_s));
    QCOMPARE(rig.exporter.asked->start, 20.0);
    QCOMPARE(rig.exporter.asked->length, 11.0);

    view->openWith();
    view->showInFileManager();
    view->copyVideo();
    QCOMPARE(rig.sharing.handed.size(), 3);
    rig.library.failure = u"پر"_s;
    view->saveToLibrary();
    rig.settle();
    QVERIFY(!view->savedToLibrary());
    QCOMPARE(view->errorText(), u"خطا در ذخیره: پر"_s);
    rig.library.failure.clear();
    view->saveToLibrary();
    rig.settle();
    QVERIFY(view->savedToLibrary());
    QCOMPARE(rig.library.titles.last(), u"چتری نداشتیم - بایگانی"_s);

    view->load(); // once more, from the beginning
    QVERIFY(view->videoURL().isEmpty() && !view->savedToLibrary());
    QCOMPARE(view->content(), StoryView::Loading);
    rig.answer(song);
    QCOMPARE(view->startLine(), 0);
    view->openWith();
    view->saveToLibrary();
    QCOMPARE(rig.sharing.handed.size(), 3);
    QCOMPARE(rig.library.titles.size(), 2);
}

void tst_StoryView::liveStationIsSilent()
{
    TestAccess rig;
    rig.select(track(true));
    const auto view = rig.open(song);
    view->generate();
    rig.finish(*view);
    QCOMPARE(view->videoURL().fileName(), u"story-silent.mp4"_s);
    QVERIFY(!rig.exporter.asked);
}

void tst_StoryView::failures()
{
    TestAccess rig;
    auto station = track();
    station.tracks->first().artworkURL = u"/artwork/none.jpg"_s;
    rig.select(station);
    const auto view = rig.open(song);
    rig.writerFails = true;
    view->generate();
    rig.answer("<html>not here</html>", 404);
    rig.finish(*view);
    QCOMPARE(view->errorText(), u"خطا در ساخت: AVAssetWriter آماده نشد"_s);
    QVERIFY(view->videoURL().isEmpty());
    rig.writerFails = false;
    view->generate();
    QVERIFY(view->errorText().isEmpty());
    rig.http.take().fail(); // without the cover, then
    rig.finish(*view);
    QVERIFY(!view->videoURL().isEmpty());
}

void tst_StoryView::closedDuringARender()
{
    TestAccess rig;
    rig.select(track());
    auto view = rig.open(song);
    rig.isHeld = true;
    view->generate();
    rig.settle();
    QTRY_VERIFY(rig.frames > 0);
    view.reset();
    auto next = rig.open(song); // and opened again: the first one makes room
    rig.isHeld = false;
    next->generate();
    rig.finish(*next);
    QVERIFY(next->errorText().isEmpty());
    QVERIFY(QFile::exists(next->videoURL().toLocalFile()));

    next->generate();
    rig.http.exchanges.clear();
    next.reset(); // before the renderer has begun
    rig.settle();
}

QTEST_MAIN(tst_StoryView)
#include "tst_StoryView.moc"
