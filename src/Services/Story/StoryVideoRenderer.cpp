#include "Services/Story/StoryVideoRenderer.h"

#include "Platform/Desktop/DebugLine.h"
#include "Platform/Media/MediaExporter.h"
#include "Platform/Storage/FileStore.h"
#include "Services/Story/StoryGeometry.h"
#include "Services/Story/StoryPainter.h"
#include "Services/Story/StoryTimeline.h"

#include <QPromise>

#include <algorithm>
#include <memory>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Of the whole progress.
constexpr double silentShare = 0.8;
constexpr double attachingFrom = 0.85;

QString textOf(StoryError::Code code)
{
    switch (code) {
    case StoryError::Code::WriterNotReady:
        return u"AVAssetWriter آماده نشد"_s;
    case StoryError::Code::NoResources:
        return u"منابع ناکافی برای رندر"_s;
    case StoryError::Code::RenderFailed:
        return u"خطا در رندر ویدیو"_s;
    }
    Q_UNREACHABLE();
}

} // namespace

StoryError::StoryError(Code code, const QString &text)
    : m_code(code)
    , m_what((text.isEmpty() ? textOf(code) : text).toUtf8())
{
}

StoryVideoRenderer::StoryVideoRenderer(Surroundings surroundings)
    : m_surroundings(std::move(surroundings))
{
    m_worker.setMaxThreadCount(1);
}

StoryVideoRenderer::~StoryVideoRenderer()
{
    m_end.request_stop();
    m_worker.waitForDone();
}

SharedInstance<StoryVideoRenderer> &StoryVideoRenderer::instance()
{
    static SharedInstance<StoryVideoRenderer> instance;
    return instance;
}

StoryVideoRenderer &StoryVideoRenderer::shared()
{
    return instance().get();
}

QString StoryVideoRenderer::silentPath() const
{
    return m_surroundings.folder + u"/story-silent.mp4"_s;
}

QString StoryVideoRenderer::finalPath() const
{
    return m_surroundings.folder + u"/story-final.mp4"_s;
}

QFuture<QUrl> StoryVideoRenderer::render(StoryConfig config, Progress onProgress, std::stop_token stop)
{
    if (config.lines.isEmpty())
        qFatal("a story needs lines");
    auto promise = std::make_shared<QPromise<QUrl>>();
    promise->start();
    auto future = promise->future();
    m_worker.start([this, promise, config = std::move(config), onProgress = std::move(onProgress),
                    stop = std::move(stop)]() mutable {
        auto receiver = std::make_shared<Progress>(std::move(onProgress));
        const auto report = [this, receiver](double progress) {
            m_surroundings.queue.post([receiver, progress] { (*receiver)(progress); });
        };
        std::stop_source either;
        const std::stop_callback onStop(stop, [&either] { either.request_stop(); });
        const std::stop_callback onEnd(m_end.get_token(), [&either] { either.request_stop(); });
        try {
            promise->addResult(QUrl::fromLocalFile(rendered(std::move(config), report, either.get_token())));
        } catch (...) {
            promise->setException(std::current_exception());
        }
        // Behind the last report.
        m_surroundings.queue.post([promise] { promise->finish(); });
    });
    return future;
}

QString StoryVideoRenderer::rendered(StoryConfig config, const Progress &report, const std::stop_token &stop)
{
    const auto source = config.audioURL;
    const auto start = std::max(0.0, config.audioStart.value_or(0));
    const auto length = storyLength(config.duration);
    m_surroundings.files.remove(silentPath());
    m_surroundings.files.remove(finalPath());
    renderSilent(std::move(config), report, stop);
    report(attachingFrom);
    return source ? attachAudioIfPossible(*source, start, length, report, stop) : silentPath();
}

void StoryVideoRenderer::renderSilent(StoryConfig config, const Progress &report, const std::stop_token &stop)
{
    const auto writer = m_surroundings.makeWriter(silentPath(), {storySize, storyFrameRate}, stop);
    if (!writer->start())
        throw StoryError(StoryError::Code::WriterNotReady);
    writeFrames(*writer, config, report);
    const auto result = writer->finish();
    if (result)
        return;
    report(0);
    m_surroundings.files.remove(silentPath());
    throw StoryError(StoryError::Code::RenderFailed, result.error);
}

void StoryVideoRenderer::writeFrames(VideoWriter &writer, const StoryConfig &config,
                                     const Progress &report) const
{
    StoryPainter painter(config);
    const int count = storyFrameCount(config.duration);
    for (int n = 0; n < count; ++n) {
        const auto frame = writer.nextFrame();
        if (!frame)
            throw StoryError(StoryError::Code::NoResources);
        painter.drawFrame({frame->luma, frame->blue, frame->red, storySize.width()}, storyFrameTime(n));
        if (!writer.append())
            return; // what went wrong is told at the end
        if (n % storyFrameRate == 0)
            report(silentShare * n / count);
    }
}

QString StoryVideoRenderer::attachAudioIfPossible(const QUrl &source, double start, double length,
                                                  const Progress &report, const std::stop_token &stop)
{
    const auto outcome = m_surroundings.exporter.join(
        silentPath(), {source, start, length}, finalPath(),
        [&report](double share) { report(attachingFrom + (1 - attachingFrom) * share); }, stop);
    if (outcome == ExportOutcome::NoAudioTrack)
        printDebugLine(u"[Story] no audio track found at "_s + source.toString(QUrl::FullyEncoded));
    if (outcome != ExportOutcome::Completed || !m_surroundings.files.exists(finalPath()))
        return silentPath();
    report(1);
    m_surroundings.files.remove(silentPath());
    return finalPath();
}

} // namespace navorin
