#include "Peers.h"
#include "Services/Equaliser/Ctx.h"
#include "Services/Equaliser/EqTap.h"

#include <benchmark/benchmark.h>
#include <gst/gst.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <map>
#include <random>
#include <string>

using namespace navorin;
using namespace navorin::EqTap;

namespace {

constexpr std::size_t frames = bench::framesPerBlock;
constexpr const char *shippedName = "ours";

using Block = std::vector<float>;

Block noise()
{
    std::mt19937 random(1);
    std::uniform_real_distribution<float> value(-0.5F, 0.5F);
    Block block(2 * frames);
    std::ranges::generate(block, [&] { return value(random); });
    return block;
}

void countFrames(benchmark::State &state, std::size_t perIteration)
{
    state.counters["s/frame"] = benchmark::Counter(
        double(perIteration), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

using Filter = void (*)(std::span<Cascade> cascades, const Frames &block);

/// A block is copied and filtered at each turn; the copy counts.
void filterBlocks(benchmark::State &state, Filter filterBlock, std::vector<Cascade> cascades, const Block &in)
{
    Block work(in.size());
    for (auto _ : state) {
        std::memcpy(work.data(), in.data(), in.size() * sizeof(float));
        filterBlock(cascades, {work.data(), 2, frames});
        benchmark::DoNotOptimize(work.data());
        benchmark::ClobberMemory();
    }
    countFrames(state, frames);
}

std::vector<Cascade> atRest()
{
    return std::vector<Cascade>(2, makeCascade(bench::gains, bench::sampleRate));
}

/// What is left a few seconds after loud sound has stopped: numbers too small to be normal.
std::vector<Cascade> afterSilence()
{
    auto cascades = atRest();
    Block loud = noise();
    filter(cascades, {loud.data(), 2, frames});
    for (int block = 0; block < 1000 && std::fpclassify(cascades[0][4].y1) != FP_SUBNORMAL; ++block) {
        Block silence(2 * frames);
        filter(cascades, {silence.data(), 2, frames});
    }
    return cascades;
}

void scalar(std::span<Cascade> cascades, const Frames &block)
{
    filter(FilterWay::Scalar, cascades, block);
}
void portable(std::span<Cascade> cascades, const Frames &block)
{
    filter(FilterWay::Portable, cascades, block);
}

struct Host final : AudioTap::SourceAudio
{
    const Block in = noise();
    Block work = in;
    AudioBuffer buffer{2, quint32(work.size() * sizeof(float)), work.data()};

    AudioTap::SourceResult pull(qint64 count, AudioBufferList) override
    {
        std::memcpy(work.data(), in.data(), in.size() * sizeof(float));
        return {AudioTap::statusOk, count, 0};
    }
};

/// All that happens on the audio thread. Its diagnostic lines go nowhere: figures are on standard error.
void wholeTap(benchmark::State &state)
{
    eqSnapshotStore().write(true, bench::gains);
    Host host;
    const auto tap = makeTap();
    tap->prepare({double(bench::sampleRate), AudioStreamDescription::flagIsFloat, 2, 32});
    for (auto _ : state)
        benchmark::DoNotOptimize(tap->process(frames, 0, {&host.buffer, 1}, host));
    countFrames(state, frames);
}

void peer(benchmark::State &state, bench::Seconds (*run)())
{
    for (auto _ : state) {
        const auto duration = run();
        if (duration.count() < 0) {
            state.SkipWithError("the peer is missing");
            return;
        }
        state.SetIterationTime(duration.count());
    }
    countFrames(state, frames * bench::blocksPerRun);
}

/// Prints, after the figures, how many times as long as ours the others took.
class RatioReporter final : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            if (run.aggregate_name == "median" && run.counters.contains("s/frame"))
                m_medians[run.run_name.function_name] = run.counters.at("s/frame").value * 1e9;
        }
    }
    void Finalize() override
    {
        ConsoleReporter::Finalize();
        const auto ours = m_medians.find(shippedName);
        if (ours == m_medians.end())
            return;
        std::fputs("\nmedians, ns per stereo frame, and as a multiple of ours\n", stderr);
        for (const auto &[name, median] : m_medians)
            std::fprintf(stderr, "%-28s %7.2f %7.2f\n", name.c_str(), median, median / ours->second);
    }

private:
    std::map<std::string, double> m_medians;
};

void addFilter(const char *name, Filter filterBlock, const std::vector<Cascade> &cascades, const Block &in)
{
    benchmark::RegisterBenchmark(name, filterBlocks, filterBlock, cascades, in)->Repetitions(7);
}

void addPeer(const char *name, bench::Seconds (*run)())
{
    benchmark::RegisterBenchmark(name, peer, run)->UseManualTime()->Iterations(1)->Repetitions(7);
}

} // namespace

int main(int argc, char **argv)
{
    gst_init(&argc, &argv);
    benchmark::Initialize(&argc, argv);
    const Block loud = noise(), silence(2 * frames);
    addFilter(shippedName, filter, atRest(), loud);
    addFilter("ours, silence after loud", filter, afterSilence(), silence);
    addFilter("ours, portable", portable, atRest(), loud);
    addFilter("plain loop", scalar, atRest(), loud);
    addFilter("plain loop, silence", scalar, afterSilence(), silence);
    benchmark::RegisterBenchmark("ours, whole tap", wholeTap)->Repetitions(7);
    addPeer("GStreamer equalizer-nbands", bench::gstreamerEqualizer);
#ifdef NAVORIN_HAS_LIBAVFILTER
    addPeer("FFmpeg equalizer x5", bench::ffmpegEqualizer);
#endif
    if (!std::freopen("/dev/null", "w", stdout))
        return 1;
    RatioReporter reporter;
    reporter.SetOutputStream(&std::cerr);
    reporter.SetErrorStream(&std::cerr);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
