#include "Platform/Http/HttpRules.h"

#include <algorithm>
#include <array>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

bool isSameServer(const QUrl &a, const QUrl &b)
{
    const auto portOf = [](const QUrl &url) { return url.port(url.scheme() == u"https"_s ? 443 : 80); };
    return a.scheme() == b.scheme() && a.host() == b.host() && portOf(a) == portOf(b);
}

void dropHeader(HttpRequest &request, const char *name)
{
    request.headers.removeIf(
        [name](const auto &header) { return header.first.compare(name, Qt::CaseInsensitive) == 0; });
}

void turnIntoGet(HttpRequest &request)
{
    request.method = "GET"_ba;
    request.body.clear();
    dropHeader(request, "Content-Type");
}

} // namespace

std::optional<TransportError::Kind> transportFailure(QNetworkReply::NetworkError error)
{
    using Kind = TransportError::Kind;
    switch (error) {
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::HostNotFoundError:
    case QNetworkReply::UnknownNetworkError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::ProxyConnectionRefusedError:
    case QNetworkReply::ProxyNotFoundError:
    case QNetworkReply::UnknownProxyError:
        return Kind::CannotConnect;
    case QNetworkReply::TimeoutError:
    case QNetworkReply::ProxyTimeoutError:
    case QNetworkReply::OperationCanceledError: // how Qt reports that no data came
        return Kind::TimedOut;
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::ProxyConnectionClosedError:
    case QNetworkReply::ContentReSendError: // the connection died under a body that is sent only once
        return Kind::ConnectionLost;
    case QNetworkReply::SslHandshakeFailedError:
    case QNetworkReply::InsecureRedirectError:
        return Kind::Insecure;
    default:
        break;
    }
    const auto repeatsStatus =
        error == QNetworkReply::NoError || error == QNetworkReply::ProxyAuthenticationRequiredError ||
        error == QNetworkReply::ProtocolInvalidOperationError || // 400
        (error >= QNetworkReply::ContentAccessDenied && error <= QNetworkReply::UnknownContentError) ||
        error >= QNetworkReply::InternalServerError;
    return repeatsStatus ? std::nullopt : std::optional(Kind::Other);
}

bool isCutShort(const QByteArray &promisedLength, const HttpRequest &request, const HttpResponse &response)
{
    bool isNumber = false;
    const auto promised = promisedLength.toLongLong(&isNumber);
    const auto bringsNone = request.method == "HEAD"_ba || response.status == 204 || response.status == 304;
    return isNumber && !bringsNone && response.body.size() < promised;
}

Redirection redirection(const HttpRequest &request, int status, const QByteArray &location)
{
    constexpr std::array statuses{301, 302, 303, 307, 308};
    if (std::ranges::find(statuses, status) == statuses.end() || location.isEmpty())
        return {};
    auto next = request;
    next.url = request.url.resolved(QUrl::fromEncoded(location));
    if (!next.url.hasFragment())
        next.url.setFragment(request.url.fragment());
    const auto scheme = next.url.scheme();
    if (!next.url.isValid() || (scheme != u"http"_s && scheme != u"https"_s))
        return {};
    if (request.url.scheme() == u"https"_s && scheme == u"http"_s)
        return {Redirection::Verdict::Insecure, {}};
    const auto isPost = request.method == "POST"_ba;
    if (status == 303 || (isPost && (status == 301 || status == 302)))
        turnIntoGet(next);
    if (!isSameServer(request.url, next.url))
        dropHeader(next, "Authorization");
    return {Redirection::Verdict::Follow, std::move(next)};
}

} // namespace navorin
