#include "Views/Library/SoundCloudSearchView.h"

#include "Models/Text.h"
#include "Platform/Tasks/Detached.h"
#include "Services/Backend/APIClient.h"
#include "Services/Playback/RadioPlayer.h"
#include "Views/Library/LibraryDecisions.h"

#include <QCoro/QCoroFuture>

namespace navorin {

SoundCloudSearchView::SoundCloudSearchView(QObject *parent)
    : SoundCloudSearchView(APIClient::shared(), RadioPlayer::shared(), WhileLoading::Refused, parent)
{
}

SoundCloudSearchView::SoundCloudSearchView(APIClient &client, RadioPlayer &player, WhileLoading whileLoading,
                                           QObject *parent)
    : QObject(parent)
    , m_client(client)
    , m_player(player)
    , m_whileLoading(whileLoading)
{
    connect(&m_player, &RadioPlayer::currentStationChanged, this, &SoundCloudSearchView::showSelection);
    connect(&m_player, &RadioPlayer::isPlayingChanged, this, &SoundCloudSearchView::isPlayingChanged);
    showSelection();
}

void SoundCloudSearchView::setQuery(const QString &query)
{
    if (query == m_query)
        return;
    m_query = query;
    Q_EMIT queryChanged();
    Q_EMIT changed();
}

bool SoundCloudSearchView::foundNothing() const
{
    return m_searched && !m_isLoading && m_errorMessage.isEmpty() && m_stations.isEmpty();
}

bool SoundCloudSearchView::foundNothingForQuery() const
{
    return foundNothing() && trimmedBlanks(m_query) == m_lastQuery;
}

bool SoundCloudSearchView::hasStation() const
{
    return m_player.hasStation();
}

bool SoundCloudSearchView::isPlaying() const
{
    return m_player.isPlaying();
}

void SoundCloudSearchView::search()
{
    const auto query = trimmedBlanks(m_query).toString();
    if (query.isEmpty() || (m_isLoading && m_whileLoading == WhileLoading::Refused))
        return;
    m_isLoading = true;
    m_searched = true;
    m_errorMessage.clear();
    m_lastQuery = query;
    Q_EMIT changed();
    detach(carryOut(this, query, ++m_number), "searching SoundCloud");
}

QCoro::Task<void> SoundCloudSearchView::carryOut(QPointer<SoundCloudSearchView> view, QString query,
                                                 quint64 number)
{
    QList<Station> stations;
    QString failure;
    try {
        stations = co_await view->m_client.soundcloudSearch(query);
    } catch (const std::exception &error) {
        failure = errorDescription(error);
    }
    if (view)
        view->finish(number, stations, failure);
}

void SoundCloudSearchView::finish(quint64 number, const QList<Station> &stations, const QString &failure)
{
    if (number != m_number)
        return;
    m_stations = stations;
    m_errorMessage = failure;
    m_isLoading = false;
    QList<ListRow> rows;
    rows.reserve(stations.size());
    for (const auto &station : stations)
        rows.append(stationRow(station));
    m_results.setRows(rows);
    Q_EMIT changed();
}

void SoundCloudSearchView::play(int row)
{
    if (row >= 0 && row < m_stations.size())
        playInFullPlayer(m_player, m_stations.at(row));
}

void SoundCloudSearchView::showSelection()
{
    const auto &current = m_player.currentStation();
    m_results.setSelectedKey(current ? std::optional(current->genre) : std::nullopt);
    Q_EMIT stationChanged();
}

} // namespace navorin
