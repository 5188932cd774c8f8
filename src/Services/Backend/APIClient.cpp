#include "Services/Backend/APIClient.h"

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
