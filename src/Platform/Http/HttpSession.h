#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QFuture>
#include <QList>
#include <QString>
#include <QUrl>

#include <chrono>
#include <exception>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>

namespace navorin {

struct HttpRequest
{
    QUrl url;
    QByteArray method = "GET";
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;
    /// Longest time without data; the session's own if absent.
    std::optional<std::chrono::milliseconds> timeout;
    /// A larger body is refused with TransportError::Kind::Other; the session's own limit if absent.
    std::optional<qint64> largestBody;
};

struct HttpResponse
{
    /// The status code; absent if what answered does not speak HTTP.
    std::optional<int> status;
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;
};

/// No answer came: the network, a time-out, a cancellation. `description()` is fit to be shown.
class TransportError : public std::exception
{
public:
    enum class Kind { CannotConnect, TimedOut, ConnectionLost, Insecure, Cancelled, Other };

    TransportError(Kind kind, const QString &detail);

    [[nodiscard]] Kind kind() const { return m_kind; }
    /// The Persian text for a person.
    [[nodiscard]] QString description() const;
    /// The platform's words, for a log.
    [[nodiscard]] const char *what() const noexcept override { return m_what.constData(); }

private:
    Kind m_kind;
    QByteArray m_what;
};

/// Takes a streamed answer. Its functions are called on the session's own thread, one at a time, and are
/// waited for: they do nothing slow. What they throw ends the request, and its future fails with that.
class HttpByteSink
{
public:
    virtual ~HttpByteSink() = default;

    /// Called once, with the head of the answer and before any of its bytes; redirects are over then.
    /// `expectedLength` is how many bytes the answer announces, -1 if it does not tell.
    virtual void begin(qint64 expectedLength) = 0;
    virtual void receive(QByteArrayView bytes) = 0;
};

/// Sends requests and reads whole answers, or passes them on as they come. Usable from any thread; the
/// returned future may be awaited on the UI thread or waited for on any other. It fails with TransportError;
/// a bad HTTP status is an answer, not a failure.
class HttpSession
{
public:
    virtual ~HttpSession() = default;

    /// Cancelling the future ends the request.
    [[nodiscard]] virtual QFuture<HttpResponse> send(HttpRequest request) = 0;

    /// Finishes when all of the answer has gone to `sink`; asks for it uncompressed, and sets no limit to its
    /// length. `stop` ends it at any time as TransportError::Kind::Cancelled; the future itself is not to be
    /// cancelled.
    ///
    /// A body that ends before its announced length is complete all the same; the sink knows both lengths. Of
    /// a long one the last megabyte before a break may be missing.
    [[nodiscard]] virtual QFuture<void> stream(HttpRequest request, std::shared_ptr<HttpByteSink> sink,
                                               std::stop_token stop) = 0;
};

/// Answers kept on disk for as long as their own headers allow.
struct HttpDiskCache
{
    QString folder;
    qint64 maximumSize = 0; ///< bytes
};

struct HttpSessionConfiguration
{
    /// Longest time without data, for requests that do not bring their own.
    std::chrono::milliseconds timeoutForRequest{std::chrono::seconds(30)};
    /// Longest time for the whole of a request and its answer.
    std::chrono::milliseconds timeoutForResource{std::chrono::seconds(120)};
    /// For requests that do not bring their own; no limit if absent.
    std::optional<qint64> largestBody;
    /// Without one every request goes to the network and nothing is kept.
    std::optional<HttpDiskCache> diskCache;
};

} // namespace navorin
