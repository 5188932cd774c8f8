#include "Services/Equaliser/EqTap.h"

#include "Services/Equaliser/Ctx.h"
#include "Services/Equaliser/EqDiagnostics.h"

#include <algorithm>

namespace navorin::EqTap {
namespace {

constexpr qint64 reportEvery = 256;

std::span<const float> samplesOf(const AudioBuffer &buffer, std::size_t most)
{
    if (!buffer.data)
        return {};
    const std::size_t held = buffer.dataByteSize / sizeof(float);
    return {static_cast<const float *>(buffer.data), std::min(held, most)};
}

/// Gives whether the first buffer was filtered.
bool filterBuffers(Ctx &ctx, AudioBufferList buffers, qint64 frames)
{
    bool first = false;
    for (std::size_t index = 0; index < buffers.size(); ++index) {
        const bool filtered = ctx.filterBuffer(index, buffers[index], frames);
        if (index == 0)
            first = filtered;
    }
    return first;
}

void filterAndReport(Ctx &ctx, AudioBufferList buffers, qint64 frames)
{
    ProcessReport report{ctx.dbgCounter, buffers.size(), {}, 0, {}, ctx.enabled, *ctx.gains};
    if (!buffers.empty())
        report.first = buffers.front();
    report.loudnessBefore = rootMeanSquare(samplesOf(report.first, report.first.dataByteSize));
    if (filterBuffers(ctx, buffers, frames)) {
        const auto samples = std::size_t(std::max<qint64>(frames, 0)) * channelsOf(report.first);
        report.loudnessAfter = rootMeanSquare(samplesOf(report.first, samples));
    }
    print(processLine(report));
}

} // namespace

std::shared_ptr<AudioTap> makeTap(const AudioTap::Callbacks &callbacks)
{
    std::shared_ptr<AudioTap> tap;
    if (const int status = AudioTap::create(callbacks, tap); status != AudioTap::statusOk) {
        print(createFailedLine(status));
        return nullptr;
    }
    return tap;
}

void tapInit(AudioTap &tap)
{
    ctxStore().insert(tap);
}

void tapPrepare(AudioTap &tap, const AudioStreamDescription &format)
{
    const auto ctx = ctxStore().find(tap);
    if (!ctx)
        return;
    ctx->setup(format);
    print(prepareLine(format));
}

AudioTap::ProcessResult tapProcess(AudioTap &tap, qint64 frames, quint32 flags, AudioBufferList buffers)
{
    const auto ctx = ctxStore().find(tap);
    if (!ctx)
        return {0, flags};
    ctx->sync(eqSnapshotStore().read());

    const auto source = tap.sourceAudio(frames, buffers);
    if (source.status != AudioTap::statusOk)
        return {0, flags};
    constexpr quint32 passedOn = AudioTap::flagStartOfStream | AudioTap::flagEndOfStream;
    const AudioTap::ProcessResult result{source.frames, flags | (source.flags & passedOn)};
    if (source.flags & AudioTap::flagStartOfStream)
        ctx->resetCascadeState();
    if (!ctx->enabled || !ctx->floatFormat)
        return result;

    ++ctx->dbgCounter;
    if (ctx->dbgCounter == 1 || ctx->dbgCounter % reportEvery == 0)
        filterAndReport(*ctx, buffers, source.frames);
    else
        filterBuffers(*ctx, buffers, source.frames);
    return result;
}

void tapUnprepare(AudioTap &tap)
{
    if (const auto ctx = ctxStore().find(tap))
        ctx->cascades.clear();
}

void tapFinalize(AudioTap &tap)
{
    ctxStore().remove(tap);
}

} // namespace navorin::EqTap
