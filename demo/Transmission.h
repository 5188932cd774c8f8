#pragma once

#include "Reply.h"

#include <httplib.h>

#include <functional>
#include <limits>

namespace navorin::demo {

class StopToken;
struct Fault;

/// How one body goes out when a fault bends it.
struct SendingPlan
{
    std::int64_t limit = std::numeric_limits<std::int64_t>::max(); ///< bytes before the end set by a fault
    bool stallsAtLimit = false;                                    ///< stay silent there instead of closing
    std::int64_t bytesPerSecond = 0;                               ///< 0 for as fast as it goes
};

/// `length` is absent for an endless stream.
[[nodiscard]] SendingPlan sendingPlan(const std::optional<Fault> &fault, std::optional<std::int64_t> length);

/// The sending of one body, piece by piece as the connection asks for more. Tells at its end how much went
/// out.
class Transmission
{
public:
    using Finished = std::function<void(std::int64_t sent)>;

    Transmission(const StopToken &stop, std::unique_ptr<ByteSource> source, SendingPlan plan,
                 Finished finished);
    ~Transmission();
    Transmission(const Transmission &) = delete;
    Transmission &operator=(const Transmission &) = delete;

    /// False closes the connection.
    bool sendSome(httplib::DataSink &sink);

private:
    bool stall(const httplib::DataSink &sink) const;
    bool write(httplib::DataSink &sink, std::string_view bytes);

    const StopToken &m_stop;
    std::unique_ptr<ByteSource> m_source;
    SendingPlan m_plan;
    Finished m_finished;
    std::int64_t m_sent = 0;
};

} // namespace navorin::demo
