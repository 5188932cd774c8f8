#include "Platform/Http/HttpTransfer.h"

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

HttpTransfer::HttpTransfer(HttpRequest request, QNetworkAccessManager &network,
                           const HttpSessionConfiguration &configuration, QObject *parent)
    : QObject(parent)
    , m_request(std::move(request))
    , m_network(network)
    , m_configuration(configuration)
{
    connect(&m_resourceTimer, &QTimer::timeout, this,
            [this] { fail(TransportError::Kind::TimedOut, u"the whole took too long"_s); });
    m_resourceTimer.setSingleShot(true);
}

HttpTransfer::~HttpTransfer()
{
    abandonReply();
}

void HttpTransfer::start()
{
    if (!m_resourceTimer.isActive())
        m_resourceTimer.start(m_configuration.timeoutForResource);
    abandonReply();
    m_reply = sendOver(m_network, m_request, qtRequest(m_request, m_configuration));
    connect(m_reply, &QNetworkReply::finished, this, &HttpTransfer::handleFinished);
    prepareReply();
}

void HttpTransfer::abandonReply()
{
    if (!m_reply)
        return;
    auto *reply = std::exchange(m_reply, nullptr);
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
}

void HttpTransfer::handleFinished()
{
    const auto status = this->status();
    // At a 307 or 308 Qt wants to rewind the body although the redirect is ours to follow.
    const auto onlyMissesRewind = m_reply->error() == QNetworkReply::ContentReSendError && status;
    const auto kind = onlyMissesRewind ? std::nullopt : transportFailure(m_reply->error());
    if (kind == TransportError::Kind::ConnectionLost && isWholeWhenCut())
        completeAnswer();
    else if (kind)
        fail(*kind, m_reply->errorString());
    else
        handleAnswer();
}

void HttpTransfer::handleAnswer()
{
    auto next = nextRequest();
    if (next.verdict == Redirection::Verdict::Insecure)
        return fail(TransportError::Kind::Insecure, u"redirected from https to http"_s);
    if (next.verdict == Redirection::Verdict::None)
        return completeAnswer();
    if (m_redirectsLeft-- == 0)
        return fail(TransportError::Kind::Other, u"too many redirects"_s);
    m_request = std::move(next.request);
    start();
}

std::optional<int> HttpTransfer::status() const
{
    const auto status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    return status.isValid() ? std::optional(status.toInt()) : std::nullopt;
}

Redirection HttpTransfer::nextRequest() const
{
    const auto status = this->status();
    return status ? redirection(m_request, *status, m_reply->rawHeader("Location"_ba)) : Redirection();
}

bool HttpTransfer::markSettled()
{
    if (m_isSettled)
        return false;
    m_isSettled = true;
    abandonReply();
    deleteLater();
    return true;
}

void HttpTransfer::fail(TransportError::Kind kind, const QString &detail)
{
    fail(std::make_exception_ptr(TransportError(kind, detail)));
}

std::exception_ptr endedSession()
{
    return std::make_exception_ptr(TransportError(TransportError::Kind::Cancelled, u"the session ended"_s));
}

} // namespace navorin
