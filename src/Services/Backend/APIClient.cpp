#include "Services/Backend/APIClient.h"

#include <QFile>
#include <QFileInfo>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

QList<Station> stationsIn(const QFuture<HttpResponse> &answer)
{
    auto response = json::decode<StationsResponse>(judged(HttpVerb::Get, answer.result()));
    if (!response.data)
        throw APIError::decoding();
    return *std::move(response.data);
}

Station hydratedStationIn(const QFuture<HttpResponse> &answer, const QString &genre)
{
    auto stations = stationsIn(answer);
    if (stations.isEmpty())
        throw APIError::decoding();
    auto station = stations.takeFirst();
    station.genre = genre;
    return station;
}

std::optional<QUrl> parsed(const QString &text)
{
    QUrl url(text, QUrl::StrictMode);
    return url.isValid() ? std::optional(std::move(url)) : std::nullopt;
}

QByteArray fileData(const QString &path, qint64 largest)
{
    QFile file(path);
    // a pipe or a device would never end
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly) || file.size() > largest)
        throw TransportError(TransportError::Kind::Other, u"not a file that can be read"_s);
    return file.readAll();
}

} // namespace

APIClient::APIClient(const QUrl &baseUrl, HttpSession &session)
    : m_baseUrl(baseUrl)
    , m_session(session)
{
    if (!isUsableBase(baseUrl))
        qFatal("the backend's address must be https, or http to this machine: %s",
               qPrintable(baseUrl.toDisplayString()));
}

SharedInstance<APIClient> &APIClient::instance()
{
    static SharedInstance<APIClient> instance;
    return instance;
}

APIClient &APIClient::shared()
{
    return instance().get();
}

std::optional<QUrl> APIClient::absolute(const std::optional<QString> &text) const
{
    if (!text || text->isEmpty())
        return {};
    if (text->startsWith(u"http"_s))
        return parsed(*text);
    auto url = parsed(*text);
    if (!url || text->startsWith(u"file://"_s))
        return url;
    const auto resolved = m_baseUrl.resolved(*url);
    return resolved.isValid() ? std::optional(resolved) : std::nullopt;
}

QFuture<QByteArray> APIClient::data(const QUrl &address, qint64 largest) const
{
    if (address.isLocalFile())
        return QtFuture::makeReadyFuture(address.toLocalFile())
            .then(QThreadPool::globalInstance(),
                  [largest](const QString &path) { return fileData(path, largest); });
    HttpRequest request;
    request.url = address;
    request.largestBody = largest;
    return m_session.send(std::move(request))
        .then(QThreadPool::globalInstance(),
              [](const QFuture<HttpResponse> &answer) { return answer.result().body; });
}

QFuture<QList<Station>> APIClient::fetchStations() const
{
    return m_session.send(catalogueRequest(m_baseUrl, u"api/stations"_s))
        .then(QThreadPool::globalInstance(),
              [](const QFuture<HttpResponse> &answer) { return stationsIn(answer); });
}

QFuture<Station> APIClient::hydrateSongsara(const QString &genre) const
{
    auto id = genre;
    id.remove(u"songsara-"_s);
    return m_session.send(catalogueRequest(m_baseUrl, u"api/songsara/playlist/"_s + id))
        .then(QThreadPool::globalInstance(),
              [genre](const QFuture<HttpResponse> &answer) { return hydratedStationIn(answer, genre); });
}

} // namespace navorin
