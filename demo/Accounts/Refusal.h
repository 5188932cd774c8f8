#pragma once

#include <stdexcept>
#include <string>

namespace navorin::demo {

/// A request that cannot be granted: the status to answer with, and words for the user.
class Refusal : public std::runtime_error
{
public:
    Refusal(int status, const std::string &message)
        : std::runtime_error(message)
        , m_status(status)
    {
    }

    [[nodiscard]] int status() const { return m_status; }

private:
    int m_status;
};

} // namespace navorin::demo
