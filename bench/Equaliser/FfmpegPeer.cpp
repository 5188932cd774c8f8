#include "Peers.h"

#include <cstdlib>
#include <memory>
#include <string>

extern "C" {
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavutil/channel_layout.h>
#include <libavutil/frame.h>
}

namespace navorin::bench {
namespace {

struct Free
{
    void operator()(AVFilterGraph *graph) const { avfilter_graph_free(&graph); }
    void operator()(AVFrame *frame) const { av_frame_free(&frame); }
};
using Graph = std::unique_ptr<AVFilterGraph, Free>;
using Frame = std::unique_ptr<AVFrame, Free>;

Graph makeGraph(const std::string &filters)
{
    Graph graph(avfilter_graph_alloc());
    graph->nb_threads = 1;
    const std::string rate = std::to_string(sampleRate);
    const std::string description = "abuffer=sample_fmt=fltp:channel_layout=stereo:sample_rate=" + rate +
                                    ":time_base=1/" + rate + "," + filters + ",abuffersink";
    AVFilterInOut *inputs = nullptr;
    AVFilterInOut *outputs = nullptr;
    if (avfilter_graph_parse2(graph.get(), description.c_str(), &inputs, &outputs) < 0 ||
        avfilter_graph_config(graph.get(), nullptr) < 0)
        return nullptr;
    return graph;
}

Frame makeNoise()
{
    Frame frame(av_frame_alloc());
    frame->format = AV_SAMPLE_FMT_FLTP;
    frame->ch_layout = AV_CHANNEL_LAYOUT_STEREO;
    frame->sample_rate = sampleRate;
    frame->nb_samples = int(framesPerBlock);
    av_frame_get_buffer(frame.get(), 0);
    for (int channel = 0; channel < 2; ++channel) {
        auto *samples = reinterpret_cast<float *>(frame->data[channel]);
        for (std::size_t i = 0; i < framesPerBlock; ++i)
            samples[i] = float(std::rand()) / float(RAND_MAX) - 0.5F;
    }
    return frame;
}

AVFilterContext *find(const AVFilterGraph &graph, const std::string &filter)
{
    for (unsigned i = 0; i < graph.nb_filters; ++i) {
        if (graph.filters[i]->filter->name == filter)
            return graph.filters[i];
    }
    return nullptr;
}

Seconds run(const AVFilterGraph &graph)
{
    const Frame in = makeNoise();
    const Frame out(av_frame_alloc());
    AVFilterContext *source = find(graph, "abuffer");
    AVFilterContext *sink = find(graph, "abuffersink");
    const auto start = processorTime();
    for (std::size_t block = 0; block < blocksPerRun; ++block) {
        in->pts = int64_t(block * framesPerBlock);
        if (av_buffersrc_add_frame_flags(source, in.get(), AV_BUFFERSRC_FLAG_KEEP_REF) < 0 ||
            av_buffersink_get_frame(sink, out.get()) < 0)
            return Seconds(-1);
        av_frame_unref(out.get());
    }
    return processorTime() - start;
}

} // namespace

Seconds ffmpegEqualizer()
{
    std::string filters;
    for (std::size_t band = 0; band < eqBandCount; ++band) {
        filters += (band ? "," : "") + std::string("equalizer=t=q:w=") + std::to_string(quality) +
                   ":f=" + std::to_string(eqBandCentres[band]) + ":g=" + std::to_string(gains[band]);
    }
    const auto with = makeGraph(filters);
    const auto without = makeGraph("anull");
    if (!with || !without)
        return Seconds(-1);
    return run(*with) - run(*without);
}

} // namespace navorin::bench
