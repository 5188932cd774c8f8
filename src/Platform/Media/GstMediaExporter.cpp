#include "Platform/Media/GstMediaExporter.h"

#include "Platform/Media/AudioRangeReading.h"
#include "Platform/Media/GstWatch.h"

#include <QFile>

#include <algorithm>
#include <chrono>

namespace navorin {
namespace {

using namespace std::chrono_literals;

constexpr auto reportInterval = 50ms;
constexpr int chunkFrames = audioRangeRate / 10;
/// Of the whole progress.
constexpr double readingShare = 0.5;

/// Passes on at most one report for each interval.
class ReportGate
{
public:
    explicit ReportGate(const MediaExporter::Progress &report)
        : m_report(report)
    {
    }
    void operator()(double progress)
    {
        const auto now = std::chrono::steady_clock::now();
        if (now - m_last < reportInterval)
            return;
        m_last = now;
        m_report(std::clamp(progress, 0.0, 1.0));
    }

private:
    const MediaExporter::Progress &m_report;
    std::chrono::steady_clock::time_point m_last;
};

void push(GstElement *entry, const QByteArray &sound)
{
    constexpr auto chunkBytes = qsizetype(chunkFrames) * audioRangeFrameBytes;
    GstFlowReturn result = GST_FLOW_OK;
    for (qsizetype at = 0; at < sound.size(); at += chunkBytes) {
        const auto bytes = std::min(chunkBytes, sound.size() - at);
        auto *buffer = gst_buffer_new_memdup(sound.constData() + at, gsize(bytes));
        const auto time = [](qsizetype byte) {
            return gst_util_uint64_scale(guint64(byte / audioRangeFrameBytes), GST_SECOND, audioRangeRate);
        };
        GST_BUFFER_PTS(buffer) = time(at);
        GST_BUFFER_DURATION(buffer) = time(at + bytes) - time(at);
        g_signal_emit_by_name(entry, "push-buffer", buffer, &result);
        gst_buffer_unref(buffer);
    }
    g_signal_emit_by_name(entry, "end-of-stream", &result);
}

double positionOf(GstElement *pipeline)
{
    gint64 position = 0;
    gst_element_query_position(pipeline, GST_FORMAT_TIME, &position);
    return double(position) / double(GST_SECOND);
}

bool joined(const QString &video, const QByteArray &sound, const QString &output,
            const MediaExporter::Progress &progress, const std::stop_token &stop)
{
    GstWatch watch("filesrc name=video ! qtdemux ! h264parse ! mp4mux name=mux faststart=true "
                   "! filesink name=file "
                   "appsrc name=sound format=time max-bytes=0 "
                   "caps=audio/x-raw,format=S16LE,rate=44100,channels=2,layout=interleaved "
                   "! audioconvert ! avenc_aac bitrate=160000 ! aacparse ! mux.",
                   stop);
    if (!watch.pipeline())
        return false;
    const auto setLocation = [&watch](const char *name, const QString &path) {
        g_object_set(watch.element(name).get(), "location", QFile::encodeName(path).constData(), nullptr);
    };
    setLocation("video", video);
    setLocation("file", output);
    if (!watch.setState(GST_STATE_PLAYING))
        return false;
    push(watch.element("sound").get(), sound);
    const auto length = double(sound.size()) / (audioRangeRate * audioRangeFrameBytes);
    while (!watch.waitForEnd(reportInterval))
        progress(positionOf(watch.pipeline()) / length);
    return watch.hasEnded() && !watch.isOver();
}

} // namespace

ExportOutcome GstMediaExporter::join(const QString &video, const AudioRange &sound, const QString &output,
                                     const Progress &progress, const std::stop_token &stop)
{
    ReportGate gate(progress);
    const auto reading = readAudioRange(
        sound, [&](double share) { gate(readingShare * share); }, stop);
    if (!reading.foundTrack)
        return ExportOutcome::NoAudioTrack;
    if (!reading.sound || reading.sound->isEmpty())
        return ExportOutcome::Failed;
    if (joined(
            video, *reading.sound, output,
            [&](double share) { gate(readingShare + (1 - readingShare) * share); }, stop))
        return ExportOutcome::Completed;
    QFile::remove(output);
    return ExportOutcome::Failed;
}

} // namespace navorin
