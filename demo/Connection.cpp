#include "Connection.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>

namespace navorin::demo {

namespace {

constexpr int readTimeoutMs = 10'000;
// a paused player reads nothing for a long while and still wants its stream back
constexpr int writeTimeoutMs = 120'000;

short pollFor(int socket, short events, int milliseconds)
{
    pollfd entry{socket, events, 0};
    int ready = 0;
    do
        ready = ::poll(&entry, 1, milliseconds);
    while (ready < 0 && errno == EINTR);
    return ready > 0 ? entry.revents : short(0);
}

} // namespace

bool Connection::is_readable() const
{
    return m_taken < m_filled || (pollFor(m_socket, POLLIN, readTimeoutMs) & POLLIN) != 0;
}

bool Connection::is_writable() const
{
    const short events = pollFor(m_socket, POLLOUT, writeTimeoutMs);
    return (events & POLLOUT) != 0 && (events & (POLLHUP | POLLERR)) == 0 &&
           (pollFor(m_socket, POLLRDHUP, 0) & POLLRDHUP) == 0;
}

ssize_t Connection::read(char *target, std::size_t size)
{
    if (m_taken == m_filled) {
        if (!is_readable())
            return -1;
        const ssize_t got = ::recv(m_socket, m_buffer.data(), m_buffer.size(), 0);
        if (got <= 0)
            return got;
        m_taken = 0;
        m_filled = static_cast<std::size_t>(got);
    }
    const std::size_t count = std::min(size, m_filled - m_taken);
    std::copy_n(m_buffer.data() + m_taken, count, target);
    m_taken += count;
    return static_cast<ssize_t>(count);
}

ssize_t Connection::write(const char *source, std::size_t size)
{
    if ((pollFor(m_socket, POLLOUT, writeTimeoutMs) & POLLOUT) == 0)
        return -1;
    return ::send(m_socket, source, size, MSG_NOSIGNAL | MSG_DONTWAIT);
}

void Connection::get_remote_ip_and_port(std::string &, int &) const {}

void Connection::get_local_ip_and_port(std::string &, int &) const {}

bool Connection::waitForRequest(int milliseconds) const
{
    return m_taken < m_filled || (pollFor(m_socket, POLLIN, milliseconds) & POLLIN) != 0;
}

} // namespace navorin::demo
