#pragma once

#include <QByteArray>
#include <QFuture>
#include <QList>
#include <QString>
#include <QUrl>

#include <chrono>
#include <exception>
#include <optional>
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

/// Sends requests and reads whole answers. Usable from any thread; the returned future may be awaited on the
/// UI thread or waited for on any other. It fails with TransportError; a bad HTTP status is an answer, not a
/// failure. Cancelling the future ends the request.
class HttpSession
{
public:
    virtual ~HttpSession() = default;

    [[nodiscard]] virtual QFuture<HttpResponse> send(HttpRequest request) = 0;
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
