#include "Platform/Media/GstVideoWriter.h"
#include "Services/Story/StoryGeometry.h"
#include "Services/Story/StoryPainter.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int frameBytes = 720 * 1280 * 3 / 2;
constexpr int seconds = 60;

QImage cover(int side)
{
    QImage image(side, side, QImage::Format_RGB32);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const double wave = std::sin(x * 9.0 / side) * std::cos(y * 7.0 / side);
            image.setPixel(x, y,
                           qRgb(int(127 + 120 * wave), x * 255 / side, (x / 24 + y / 24) % 2 * 90 + 40));
        }
    }
    return image;
}

StoryConfig story(int coverSide)
{
    StoryConfig config;
    config.title = u"چتری نداشتیم"_s;
    config.artist = u"گروه باران 1402"_s;
    if (coverSide > 0)
        config.coverImage = cover(coverSide);
    config.themeColor = QColor(200, 70, 60);
    config.accentColor = QColor::fromRgbF(0.39F, 0.40F, 0.95F);
    for (int i = 0; i < 15; ++i) {
        LyricsLine line;
        line.time = 4.0 * i;
        line.text =
            u"باران گرفت و کوچه پر از بوی خاک شد، آهسته گفتی از همه دنیا بریدهام "_s + QString::number(i);
        line.translation = u"Rain came and the lane smelled of earth"_s;
        config.lines.append(line);
    }
    config.endLine = config.lines.size() - 1;
    config.duration = seconds;
    return config;
}

/// Resident memory, in MiB.
double residentMemory()
{
    QFile status(u"/proc/self/statm"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    return status.readAll().split(' ').value(1).toDouble() * 4096 / (1 << 20);
}

struct Run
{
    double framesPerSecond = 0;
    double early = 0; ///< memory after a tenth, and at the end
    double late = 0;
};

Run render(const StoryConfig &config, const QString &path)
{
    Run run;
    const int count = storyFrameCount(config.duration);
    QElapsedTimer timer;
    timer.start();
    GstVideoWriter writer(path, {storySize, storyFrameRate}, {});
    if (!writer.start())
        qFatal("no encoder");
    StoryPainter painter(config);
    for (int n = 0; n < count; ++n) {
        const auto frame = writer.nextFrame();
        painter.drawFrame({frame->luma, frame->blue, frame->red, storySize.width()}, storyFrameTime(n));
        writer.append();
        if (n == count / 10)
            run.early = residentMemory();
    }
    run.late = residentMemory();
    if (!writer.finish())
        qFatal("the encoder failed");
    run.framesPerSecond = count * 1e9 / double(timer.nsecsElapsed());
    return run;
}

QList<QByteArray> finishedFrames(const StoryConfig &config, int count)
{
    StoryPainter painter(config);
    QList<QByteArray> frames;
    for (int n = 0; n < count; ++n) {
        QByteArray frame(frameBytes, Qt::Uninitialized);
        auto *data = reinterpret_cast<std::uint8_t *>(frame.data());
        painter.drawFrame({data, data + 720 * 1280, data + 720 * 1280 * 5 / 4, 720}, storyFrameTime(n));
        frames.append(frame);
    }
    return frames;
}

/// The same pipeline, fed without a copy and without a pause; there and back over the frames, so that none of
/// them is a cut.
double encodeAlone(const QList<QByteArray> &frames, const QString &path)
{
    constexpr int count = seconds * storyFrameRate;
    const VideoFormat format{storySize, storyFrameRate};
    QElapsedTimer timer;
    timer.start();
    GstWatch watch(GstVideoWriter::pipeline(), {});
    const auto entry = watch.element("frames");
    g_object_set(entry.get(), "caps", GstVideoWriter::caps(format).get(), "block", TRUE, "max-bytes",
                 guint64(8 * frameBytes), nullptr);
    g_object_set(watch.element("file").get(), "location", path.toUtf8().constData(), nullptr);
    if (!watch.setState(GST_STATE_PLAYING))
        qFatal("no encoder");
    GstFlowReturn result = GST_FLOW_OK;
    for (int n = 0; n < count; ++n) {
        const auto period = 2 * (int(frames.size()) - 1);
        const auto place = n % period;
        const auto &frame = frames[place < frames.size() ? place : period - place];
        auto *buffer =
            gst_buffer_new_wrapped_full(GST_MEMORY_FLAG_READONLY, const_cast<char *>(frame.constData()),
                                        frameBytes, 0, frameBytes, nullptr, nullptr);
        GST_BUFFER_PTS(buffer) = gst_util_uint64_scale(guint64(n), GST_SECOND, storyFrameRate);
        GST_BUFFER_DURATION(buffer) = GST_SECOND / storyFrameRate;
        g_signal_emit_by_name(entry.get(), "push-buffer", buffer, &result);
        gst_buffer_unref(buffer);
    }
    g_signal_emit_by_name(entry.get(), "end-of-stream", &result);
    watch.wait([] { return false; });
    return count * 1e9 / double(timer.nsecsElapsed());
}

void againstTheEncoder(benchmark::State &state, int coverSide)
{
    const QTemporaryDir folder;
    const auto config = story(coverSide);
    const auto frames = finishedFrames(config, 240);
    const auto path = folder.filePath(u"story.mp4"_s);
    QList<double> ratios;
    Run ours;
    double alone = 0;
    for (auto _ : state) {
        alone = encodeAlone(frames, path);
        ours = render(config, path);
        ratios.append(ours.framesPerSecond / alone);
    }
    std::ranges::sort(ratios);
    state.counters["ours_fps"] = ours.framesPerSecond;
    state.counters["encoder_fps"] = alone;
    state.counters["ratio_median"] = ratios[ratios.size() / 2];
    state.counters["MiB_early"] = ours.early;
    state.counters["MiB_late"] = ours.late;
}
BENCHMARK_CAPTURE(againstTheEncoder, cover_600, 600)->Unit(benchmark::kSecond)->Iterations(3);
BENCHMARK_CAPTURE(againstTheEncoder, cover_3000, 3000)->Unit(benchmark::kSecond)->Iterations(1);
BENCHMARK_CAPTURE(againstTheEncoder, no_cover, 0)->Unit(benchmark::kSecond)->Iterations(1);

/// Drawing alone, which the encoder does not wait for as long as it is the faster of the two.
void drawing(benchmark::State &state, int coverSide)
{
    StoryPainter painter(story(coverSide));
    std::vector<std::uint8_t> frame(frameBytes);
    int n = 0;
    for (auto _ : state) {
        painter.drawFrame({frame.data(), frame.data() + 720 * 1280, frame.data() + 720 * 1280 * 5 / 4, 720},
                          storyFrameTime(n++ % 1440));
        benchmark::DoNotOptimize(frame.data());
    }
}
BENCHMARK_CAPTURE(drawing, cover_600, 600)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawing, cover_3000, 3000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawing, no_cover, 0)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace navorin

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    for (const auto &font : QDir(QStringLiteral(NAVORIN_FONTS)).entryInfoList({QStringLiteral("*.ttf")}))
        QFontDatabase::addApplicationFont(font.filePath());
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
