#include "PlayerRig.h"

#include <QHash>
#include <QMutex>

#include <cmath>
#include <span>

namespace navorin {
namespace {

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

} // namespace

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

} // namespace navorin
