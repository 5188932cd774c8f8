#include "Platform/Http/HttpExchange.h"

#include "Platform/Http/HttpRules.h"

#include <QNetworkAccessManager>
#include <QNetworkRequest>

#include <algorithm>
#include <cstring>
#include <utility>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

/// A body that cannot be rewound. Qt silently sends a request again when the connection dies before the
/// answer; what may have taken effect already must not be sent twice.
class OneShotBody final : public QIODevice
{
public:
    explicit OneShotBody(QByteArray bytes)
        : m_bytes(std::move(bytes))
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    [[nodiscard]] bool isSequential() const override { return true; }
    bool reset() override { return false; }
    [[nodiscard]] qint64 bytesAvailable() const override { return m_bytes.size() - m_position; }

protected:
    qint64 readData(char *data, qint64 maximum) override
    {
        const auto count = std::min(maximum, m_bytes.size() - m_position);
        if (count == 0)
            return -1;
        std::memcpy(data, m_bytes.constData() + m_position, std::size_t(count));
        m_position += count;
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_bytes;
    qint64 m_position = 0;
};

QNetworkRequest qtRequest(const HttpRequest &request, const HttpSessionConfiguration &configuration)
{
    QNetworkRequest result(request.url);
    result.setRawHeader("User-Agent"_ba, "navorin"_ba);
    for (const auto &[name, value] : request.headers)
        result.setRawHeader(name, value);
    const auto cached = configuration.diskCache.has_value();
    result.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                        cached ? QNetworkRequest::PreferNetwork : QNetworkRequest::AlwaysNetwork);
    result.setAttribute(QNetworkRequest::CacheSaveControlAttribute, cached);
    result.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    result.setAttribute(QNetworkRequest::Http2AllowedAttribute,
                        false); // of HTTP/1.1 it is known what is sent again
    result.setTransferTimeout(int(request.timeout.value_or(configuration.timeoutForRequest).count()));
    return result;
}

QNetworkReply *sendOnce(QNetworkAccessManager &network, QNetworkRequest request, const QByteArray &body)
{
    auto device = std::make_unique<OneShotBody>(body);
    request.setHeader(QNetworkRequest::ContentLengthHeader, body.size());
    request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    auto *reply = network.post(request, device.get());
    device.release()->setParent(reply);
    return reply;
}

QNetworkReply *sendOver(QNetworkAccessManager &network, const HttpRequest &request,
                        const QNetworkRequest &translated)
{
    if (request.method == "GET"_ba)
        return network.get(translated);
    if (request.method == "POST"_ba)
        return sendOnce(network, translated, request.body);
    if (request.method == "PUT"_ba)
        return network.put(translated, request.body);
    return network.sendCustomRequest(translated, request.method, request.body);
}

} // namespace

void HttpExchange::abandonReply()
{
    if (!m_reply)
        return;
    auto *reply = std::exchange(m_reply, nullptr);
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
}

HttpExchange::HttpExchange(HttpRequest request, QPromise<HttpResponse> promise,
                           QNetworkAccessManager &network, const HttpSessionConfiguration &configuration,
                           QObject *parent)
    : QObject(parent)
    , m_request(std::move(request))
    , m_promise(std::move(promise))
    , m_network(network)
    , m_configuration(configuration)
{
    connect(&m_watcher, &QFutureWatcherBase::canceled, this,
            [this] { fail(TransportError::Kind::Cancelled, u"cancelled by the caller"_s); });
    connect(&m_resourceTimer, &QTimer::timeout, this,
            [this] { fail(TransportError::Kind::TimedOut, u"the whole took too long"_s); });
    m_resourceTimer.setSingleShot(true);
}

HttpExchange::~HttpExchange()
{
    fail(TransportError::Kind::Cancelled, u"the session ended"_s);
}

void HttpExchange::start()
{
    if (!m_resourceTimer.isActive()) {
        m_resourceTimer.start(m_configuration.timeoutForResource);
        m_watcher.setFuture(QFuture<void>(m_promise.future()));
    }
    abandonReply();
    m_reply = sendOver(m_network, m_request, qtRequest(m_request, m_configuration));
    connect(m_reply, &QNetworkReply::downloadProgress, this, &HttpExchange::handleProgress);
    connect(m_reply, &QNetworkReply::finished, this, &HttpExchange::handleFinished);
}

void HttpExchange::handleProgress()
{
    const auto limit = m_request.largestBody ? m_request.largestBody : m_configuration.largestBody;
    if (limit && m_reply->bytesAvailable() > *limit)
        fail(TransportError::Kind::Other, u"the body is too large"_s);
}

void HttpExchange::handleFinished()
{
    const auto status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    // At a 307 or 308 Qt wants to rewind the body although the redirect is ours to follow.
    const auto onlyMissesRewind = m_reply->error() == QNetworkReply::ContentReSendError && status.isValid();
    const auto kind = onlyMissesRewind ? std::nullopt : transportFailure(m_reply->error());
    if (kind)
        fail(*kind, m_reply->errorString());
    else if (!status.isValid())
        settle({});
    else
        handleAnswer(status.toInt());
}

void HttpExchange::handleAnswer(int status)
{
    auto next = redirection(m_request, status, m_reply->rawHeader("Location"_ba));
    if (next.verdict == Redirection::Verdict::Insecure)
        return fail(TransportError::Kind::Insecure, u"redirected from https to http"_s);
    if (next.verdict == Redirection::Verdict::None) {
        HttpResponse response{status, m_reply->rawHeaderPairs(), m_reply->readAll()};
        if (isCutShort(m_reply->rawHeader("Content-Length"_ba), m_request, response))
            return fail(TransportError::Kind::ConnectionLost, u"the body was cut short"_s);
        return settle(std::move(response));
    }
    if (m_redirectsLeft-- == 0)
        return fail(TransportError::Kind::Other, u"too many redirects"_s);
    m_request = std::move(next.request);
    start();
}

void HttpExchange::settle(HttpResponse response)
{
    m_isSettled = true;
    abandonReply();
    m_promise.addResult(std::move(response));
    m_promise.finish();
    deleteLater();
}

void HttpExchange::fail(TransportError::Kind kind, const QString &detail)
{
    if (m_isSettled)
        return;
    m_isSettled = true;
    abandonReply();
    fail(m_promise, kind, detail);
    deleteLater();
}

void HttpExchange::fail(QPromise<HttpResponse> &promise, TransportError::Kind kind, const QString &detail)
{
    if (!promise.isCanceled())
        promise.setException(std::make_exception_ptr(TransportError(kind, detail)));
    promise.finish();
}

} // namespace navorin
