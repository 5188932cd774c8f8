#include "Services/Backend/RequestRules.h"

#include "Services/Backend/APIError.h"

#include <QHostAddress>
#include <QJsonDocument>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto timeoutOfGenericCalls = std::chrono::seconds(60);

bool isThisMachine(const QString &host)
{
    return host == u"localhost"_s || QHostAddress(host).isLoopback();
}

QByteArray nameOf(HttpVerb verb)
{
    switch (verb) {
    case HttpVerb::Get:
        return "GET"_ba;
    case HttpVerb::Post:
        return "POST"_ba;
    case HttpVerb::Put:
        return "PUT"_ba;
    case HttpVerb::Delete:
        return "DELETE"_ba;
    }
    Q_UNREACHABLE();
}

HttpRequest genericRequest(HttpVerb verb, const QUrl &url, const std::optional<QString> &token)
{
    HttpRequest request;
    request.url = url;
    request.method = nameOf(verb);
    request.timeout = timeoutOfGenericCalls;
    if (token)
        request.headers.append({"Authorization"_ba, "Bearer "_ba + token->toUtf8()});
    return request;
}

QUrl withQuery(QUrl url, const QueryItems &items)
{
    QByteArrayList encoded;
    for (const auto &[name, value] : items)
        encoded.append(QUrl::toPercentEncoding(name) + '=' + QUrl::toPercentEncoding(value));
    if (!encoded.isEmpty())
        url.setQuery(QString::fromLatin1(encoded.join('&')), QUrl::StrictMode);
    if (!url.isValid())
        qFatal("an address could not be formed: %s", qPrintable(url.errorString()));
    return url;
}

} // namespace

bool isUsableBase(const QUrl &url)
{
    if (!url.isValid() || url.host().isEmpty())
        return false;
    return url.scheme() == u"https"_s || (url.scheme() == u"http"_s && isThisMachine(url.host()));
}

QUrl withPath(const QUrl &base, const QString &path)
{
    auto joined = base.path(QUrl::FullyDecoded);
    if (!joined.endsWith(u'/'))
        joined += u'/';
    joined += path.startsWith(u'/') ? path.sliced(1) : path;
    auto url = base;
    url.setPath(joined, QUrl::DecodedMode);
    return url;
}

HttpRequest catalogueRequest(const QUrl &base, const QString &path)
{
    HttpRequest request;
    request.url = withPath(base, path);
    return request;
}

HttpRequest getRequest(const QUrl &base, const QString &path, const QueryItems &query,
                       const std::optional<QString> &token)
{
    return genericRequest(HttpVerb::Get, withQuery(withPath(base, path), query), token);
}

HttpRequest bodyRequest(const QUrl &base, HttpVerb verb, const QString &path, const QJsonObject &body,
                        const std::optional<QString> &token)
{
    auto request = genericRequest(verb, withPath(base, path), token);
    request.headers.prepend({"Content-Type"_ba, "application/json"_ba});
    request.body = QJsonDocument(body).toJson(QJsonDocument::Compact);
    return request;
}

HttpRequest deleteRequest(const QUrl &base, const QString &path, const std::optional<QString> &token)
{
    return genericRequest(HttpVerb::Delete, withPath(base, path), token);
}

QByteArray judged(HttpVerb verb, const HttpResponse &response)
{
    const auto status = response.status.value_or(-1);
    if (status >= 200 && status <= 299)
        return response.body;
    const auto staysSilent = verb == HttpVerb::Get || (verb == HttpVerb::Post && !response.status);
    if (staysSilent)
        throw APIError::http(status);
    std::rethrow_exception(refusal<SimpleMessage>(response));
}

} // namespace navorin
