#include "Transmission.h"

#include "Faults.h"
#include "StopToken.h"

#include <algorithm>

namespace navorin::demo {

namespace {

constexpr std::chrono::milliseconds slowStep{50};
constexpr std::int64_t truncatedStream = std::int64_t{64} * 1024;

} // namespace

SendingPlan sendingPlan(const std::optional<Fault> &fault, std::optional<std::int64_t> length)
{
    SendingPlan plan;
    if (!fault)
        return plan;
    const auto argument = static_cast<std::int64_t>(fault->argument);
    if (fault->kind == FaultKind::Cut || fault->kind == FaultKind::Stall)
        plan.limit = argument;
    if (fault->kind == FaultKind::Truncate)
        plan.limit = length.value_or(2 * truncatedStream) / 2;
    if (fault->kind == FaultKind::Slow)
        plan.bytesPerSecond = argument;
    plan.stallsAtLimit = fault->kind == FaultKind::Stall;
    return plan;
}

Transmission::Transmission(const StopToken &stop, std::unique_ptr<ByteSource> source, SendingPlan plan,
                           Finished finished)
    : m_stop(stop)
    , m_source(std::move(source))
    , m_plan(plan)
    , m_finished(std::move(finished))
{
}

Transmission::~Transmission()
{
    m_finished(m_sent);
}

bool Transmission::sendSome(httplib::DataSink &sink)
{
    const std::int64_t room = m_plan.limit - m_sent;
    if (room <= 0)
        return m_plan.stallsAtLimit && stall(sink);
    const std::string_view chunk = m_source->next();
    if (chunk.empty()) {
        sink.done();
        return true;
    }
    return write(sink, chunk.substr(0, static_cast<std::size_t>(std::min<std::int64_t>(
                                           room, static_cast<std::int64_t>(chunk.size())))));
}

bool Transmission::stall(const httplib::DataSink &sink) const
{
    while (sink.is_writable()) {
        if (!m_stop.sleep(std::chrono::milliseconds(50)))
            return false;
    }
    return false;
}

bool Transmission::write(httplib::DataSink &sink, std::string_view bytes)
{
    const std::int64_t perStep = m_plan.bytesPerSecond * slowStep.count() / 1000;
    const std::size_t step = m_plan.bytesPerSecond == 0
                                 ? bytes.size()
                                 : static_cast<std::size_t>(std::max<std::int64_t>(perStep, 1));
    while (!bytes.empty()) {
        const std::string_view part = bytes.substr(0, step);
        if (!sink.write(part.data(), part.size()))
            return false;
        m_sent += static_cast<std::int64_t>(part.size());
        bytes.remove_prefix(part.size());
        if (m_plan.bytesPerSecond == 0)
            continue;
        const double seconds = static_cast<double>(part.size()) / static_cast<double>(m_plan.bytesPerSecond);
        if (!m_stop.sleep(std::chrono::duration<double>(seconds)))
            return false;
    }
    return true;
}

} // namespace navorin::demo
