#pragma once

#include "Reply.h"

#include <httplib.h>

#include <functional>
#include <set>

namespace navorin::demo {

class Faults;
class StopToken;
struct Fault;

/// The HTTP side: takes connections, hands each request to the one handler, sends its reply with ranges and
/// faults applied, and writes the request log. A thread for each connection.
class HttpServer : private httplib::Server
{
public:
    using Handler = std::function<Reply(const httplib::Request &)>;

    HttpServer(const StopToken &stop, Faults &faults, Handler handler);
    ~HttpServer() override;

    void setLogging(bool on) { m_logs = on; }

    /// Binds and starts to listen; connections wait until run(). Port 0 takes a free one. The port, or -1.
    int bindTo(const std::string &address, int port);
    /// Serves until interrupt(), and returns when every connection has ended.
    void run();
    /// From any thread, after the stop token was set.
    void interrupt();

private:
    bool process_and_close_socket(socket_t socket) override;

    void answer(const httplib::Request &request, httplib::Response &response);
    void send(const httplib::Request &request, httplib::Response &response, Reply reply,
              const std::optional<Fault> &fault);

    const StopToken &m_stop;
    Faults &m_faults;
    Handler m_handler;
    bool m_logs = false;
    std::mutex m_socketsMutex;
    std::set<int> m_sockets;
};

} // namespace navorin::demo
