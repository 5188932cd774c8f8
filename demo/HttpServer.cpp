#include "HttpServer.h"

#include "Connection.h"
#include "Faults.h"
#include "StopToken.h"
#include "Transmission.h"

#include <cstdio>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace navorin::demo {

namespace {

constexpr int idleConnectionMs = 30'000;
constexpr int listenBacklog = 256;
constexpr int maxConnections = 512;
constexpr auto maxRequestBody = std::size_t{16} * 1024 * 1024;

/// A thread for each connection: an endless stream holds its own for hours, so a fixed pool would run dry.
class ConnectionThreads : public httplib::TaskQueue
{
public:
    void enqueue(std::function<void()> work) override
    {
        std::unique_lock lock(m_mutex);
        m_ended.wait(lock, [this] { return m_running < maxConnections; });
        ++m_running;
        std::thread([this, work = std::move(work)] {
            work();
            const std::lock_guard guard(m_mutex);
            --m_running;
            m_ended.notify_all();
        }).detach();
    }

    void shutdown() override
    {
        std::unique_lock lock(m_mutex);
        m_ended.wait(lock, [this] { return m_running == 0; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_ended;
    int m_running = 0;
};

QByteArray randomBytes(std::string_view seed, int count)
{
    QByteArray bytes(count, Qt::Uninitialized);
    auto state = static_cast<std::uint64_t>(std::hash<std::string_view>{}(seed)) | 1U;
    for (char &byte : bytes) {
        state = state * 6364136223846793005U + 1442695040888963407U;
        byte = static_cast<char>(state >> 56U);
    }
    return bytes;
}

/// What a fault makes of the reply as a whole; those that bend only the sending change nothing here.
Reply distort(Reply reply, const Fault &fault, std::string_view target)
{
    switch (fault.kind) {
    case FaultKind::Status:
        return Reply::error(static_cast<int>(fault.argument), "fault on demand");
    case FaultKind::Garbage: {
        Reply garbage;
        garbage.contentType = reply.contentType;
        garbage.body = randomBytes(target, 32 * 1024);
        return garbage;
    }
    case FaultKind::Html: {
        Reply page;
        page.contentType = "text/html; charset=utf-8";
        page.body = "<!DOCTYPE html><html><head><title>Sign in</title></head>"
                    "<body><h1>Welcome to the guest network</h1></body></html>";
        return page;
    }
    default:
        return reply;
    }
}

/// The part of the body that the client asks for; the status and the headers say so.
ByteRange chooseRange(const httplib::Request &request, httplib::Response &response, std::int64_t size)
{
    const ByteRange whole{0, size - 1};
    if (response.status != 200)
        return whole;
    response.set_header("Accept-Ranges", "bytes");
    const auto [kind, part] = parseRange(request.get_header_value("Range"), size);
    if (kind == RangeKind::Whole)
        return whole;
    const std::string total = "/" + std::to_string(size);
    if (kind == RangeKind::Unsatisfiable) {
        response.status = 416;
        response.set_header("Content-Range", "bytes *" + total);
        return {0, -1};
    }
    response.status = 206;
    response.set_header("Content-Range",
                        "bytes " + std::to_string(part.first) + "-" + std::to_string(part.last) + total);
    return part;
}

} // namespace

HttpServer::HttpServer(const StopToken &stop, Faults &faults, Handler handler)
    : m_stop(stop)
    , m_faults(faults)
    , m_handler(std::move(handler))
{
    new_task_queue = [] { return new ConnectionThreads; };
    set_keep_alive_max_count(100'000);
    set_keep_alive_timeout(idleConnectionMs / 1000);
    set_payload_max_length(maxRequestBody);
    const auto answerAll = [this](const httplib::Request &request, httplib::Response &response) {
        answer(request, response);
    };
    const std::string any = R"([\s\S]*)";
    Get(any, answerAll);
    Post(any, answerAll);
    Put(any, answerAll);
    Delete(any, answerAll);
}

HttpServer::~HttpServer() = default;

int HttpServer::bindTo(const std::string &address, int port)
{
    const int bound = port == 0 ? bind_to_any_port(address) : (bind_to_port(address, port) ? port : -1);
    if (bound > 0)
        ::listen(svr_sock_, listenBacklog);
    return bound;
}

void HttpServer::run()
{
    listen_after_bind();
}

void HttpServer::interrupt()
{
    while (!is_running())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    stop();
    const std::lock_guard lock(m_socketsMutex);
    for (const int socket : m_sockets)
        ::shutdown(socket, SHUT_RDWR);
}

bool HttpServer::process_and_close_socket(socket_t socket)
{
    {
        const std::lock_guard lock(m_socketsMutex);
        m_sockets.insert(socket);
    }
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    Connection connection(socket);
    bool ended = false;
    // ranges are ours: the library's own arithmetic trusts the client
    const auto prepare = [](httplib::Request &request) { request.ranges.clear(); };
    while (!ended && !m_stop.isStopped() && connection.waitForRequest(idleConnectionMs)) {
        if (!process_request(connection, false, ended, prepare))
            break;
    }
    const std::lock_guard lock(m_socketsMutex);
    m_sockets.erase(socket);
    ::shutdown(socket, SHUT_RDWR);
    ::close(socket);
    return true;
}

void HttpServer::answer(const httplib::Request &request, httplib::Response &response)
{
    const auto fault = request.path.starts_with("/demo/") ? std::nullopt : m_faults.strike(request.target);
    if (fault && fault->kind == FaultKind::Delay)
        m_stop.sleep(std::chrono::duration<double>(fault->argument));
    Reply reply;
    try {
        reply = m_handler(request);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s %s: %s\n", request.method.c_str(), request.target.c_str(), error.what());
        reply = Reply::error(500, "internal error");
    }
    if (fault)
        reply = distort(std::move(reply), *fault, request.target);
    send(request, response, std::move(reply), fault);
}

void HttpServer::send(const httplib::Request &request, httplib::Response &response, Reply reply,
                      const std::optional<Fault> &fault)
{
    response.status = reply.status;
    for (const auto &[name, value] : reply.headers)
        response.set_header(name, value);
    std::optional<std::int64_t> length;
    if (reply.endless) {
        response.set_header("Connection", "close");
        response.set_header("Accept-Ranges", "none");
    } else {
        const ByteRange range = chooseRange(request, response, reply.body.size());
        length = range.last - range.first + 1;
        response.set_header("Content-Length", std::to_string(*length));
        reply.stream = std::make_unique<MemorySource>(reply.body, range.first, *length);
    }
    const std::string line = request.method + " " + request.target + " " + std::to_string(response.status);
    auto transmission = std::make_shared<Transmission>(
        m_stop, std::move(reply.stream), sendingPlan(fault, length),
        [logs = m_logs, line](std::int64_t sent) {
            if (logs)
                std::fprintf(stderr, "%s %lld\n", line.c_str(), static_cast<long long>(sent));
        });
    response.set_content_provider(reply.contentType, [transmission](std::size_t, httplib::DataSink &sink) {
        return transmission->sendSome(sink);
    });
}

} // namespace navorin::demo
