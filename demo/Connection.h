#pragma once

#include <httplib.h>

#include <array>

namespace navorin::demo {

/// One client's socket, read through a small buffer. Knows when the peer has hung up, which an endless stream
/// asks before every wait.
class Connection : public httplib::Stream
{
public:
    explicit Connection(int socket)
        : m_socket(socket)
    {
    }

    [[nodiscard]] bool is_readable() const override;
    [[nodiscard]] bool is_writable() const override;
    ssize_t read(char *target, std::size_t size) override;
    ssize_t write(const char *source, std::size_t size) override;
    void get_remote_ip_and_port(std::string &ip, int &port) const override;
    void get_local_ip_and_port(std::string &ip, int &port) const override;
    [[nodiscard]] int socket() const override { return m_socket; }

    /// Waits for the head of another request; false on hang-up or after `milliseconds`.
    [[nodiscard]] bool waitForRequest(int milliseconds) const;

private:
    int m_socket;
    std::array<char, 4096> m_buffer{};
    std::size_t m_filled = 0;
    std::size_t m_taken = 0;
};

} // namespace navorin::demo
