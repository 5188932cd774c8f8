#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace navorin::demo {

enum class FaultKind {
    Status,   ///< answer with this status instead
    Cut,      ///< close the connection after so many bytes of the body
    Stall,    ///< fall silent after so many bytes, the connection open
    Slow,     ///< send the body at so many bytes per second
    Delay,    ///< wait so many seconds before the head
    Garbage,  ///< random bytes with status 200
    Html,     ///< a web page with status 200
    Truncate, ///< half the body under the length of the whole
};

struct Fault
{
    std::string prefix; ///< of the request's path and query, as sent
    FaultKind kind = FaultKind::Status;
    double argument = 0; ///< bytes, bytes per second, seconds or the status
    int times = -1;      ///< how many more requests it strikes; negative for all

    /// "/stream/persian=cut:20000"; absent when it cannot be read.
    static std::optional<Fault> parse(std::string_view text);
    [[nodiscard]] std::string toString() const;
};

/// The faults in force. Any thread.
class Faults
{
public:
    /// Replaces a fault of the same prefix.
    void add(const Fault &fault);
    /// Removes the fault of this prefix, or all for an empty prefix.
    void remove(std::string_view prefix);
    [[nodiscard]] std::vector<Fault> list() const;

    /// The fault for a request, the one with the longest prefix, and counts it as struck.
    std::optional<Fault> strike(std::string_view target);

private:
    mutable std::mutex m_mutex;
    std::vector<Fault> m_faults;
};

} // namespace navorin::demo
