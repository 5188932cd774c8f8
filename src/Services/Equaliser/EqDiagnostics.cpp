#include "Services/Equaliser/EqDiagnostics.h"

#include "Services/Equaliser/Ctx.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace navorin::EqTap {
namespace {

std::string fixed(double value, int decimals)
{
    char text[400];
    const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals).ptr;
    return {text, end};
}

/// As many decimals as the number needs, at least one.
std::string plain(double value)
{
    char text[400];
    const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed).ptr;
    std::string result(text, end);
    if (std::isfinite(value) && result.find('.') == std::string::npos)
        result += ".0";
    return result;
}

std::string joined(const EqGains &gains)
{
    std::string result;
    for (const float gain : gains) {
        if (!result.empty())
            result += ',';
        result += fixed(gain, 0);
    }
    return result;
}

} // namespace

float rootMeanSquare(std::span<const float> samples)
{
    float sum = 0;
    for (const float sample : samples)
        sum += sample * sample;
    return samples.empty() ? 0.0F : std::sqrt(sum / float(samples.size()));
}

std::string createFailedLine(int status)
{
    return "[EqTap] create failed " + std::to_string(status);
}

std::string prepareLine(const AudioStreamDescription &format)
{
    const bool isFloat = format.formatFlags & AudioStreamDescription::flagIsFloat;
    const bool interleaved = !(format.formatFlags & AudioStreamDescription::flagIsNonInterleaved);
    return "[EqTap] prepare: sr=" + plain(format.sampleRate) +
           " ch=" + std::to_string(format.channelsPerFrame) +
           " bits=" + std::to_string(format.bitsPerChannel) + " fmt=" + (isFloat ? "float" : "int") +
           " interleaved=" + (interleaved ? "true" : "false");
}

std::string processLine(const ProcessReport &report)
{
    return "[EqTap] process #" + std::to_string(report.number) + " bufs=" + std::to_string(report.buffers) +
           " ch/buf=" + std::to_string(channelsOf(report.first)) +
           " bytes=" + std::to_string(report.first.dataByteSize) +
           " rms_in=" + fixed(report.loudnessBefore, 3) +
           " rms_out=" + (report.loudnessAfter ? fixed(*report.loudnessAfter, 3) : "-") +
           " enabled=" + (report.enabled ? "1" : "0") + " gains=[" + joined(report.gains) + "]";
}

void print(std::string line)
{
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fflush(stdout);
}

} // namespace navorin::EqTap
