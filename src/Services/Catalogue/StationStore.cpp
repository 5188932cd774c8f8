#include "Services/Catalogue/StationStore.h"

#include "Services/Backend/APIClient.h"
#include "Services/Catalogue/TrackCarryOver.h"

#include <QCoro/QCoroFuture>
#include <QPointer>
#include <QThreadPool>

#include <exception>
#include <utility>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Freeing a large catalogue takes longer than a frame.
void disposeOfElsewhere(QList<Station> stations)
{
    if (!stations.isEmpty())
        QThreadPool::globalInstance()->start([old = std::move(stations)] {});
}

} // namespace

StationStore::StationStore(APIClient &client)
    : m_client(client)
{
}

SharedInstance<StationStore> &StationStore::instance()
{
    static SharedInstance<StationStore> instance;
    return instance;
}

StationStore &StationStore::shared()
{
    return instance().get();
}

QList<StationStore::Category> StationStore::categories()
{
    return {Category::All, Category::Iranian, Category::International, Category::Instrumental};
}

QString StationStore::label(Category category)
{
    switch (category) {
    case Category::All:
        return u"همه"_s;
    case Category::Iranian:
        return u"ایرانی"_s;
    case Category::International:
        return u"بینالمللی"_s;
    case Category::Instrumental:
        return u"بیکلام"_s;
    }
    Q_UNREACHABLE();
}

std::optional<QString> StationStore::key(Category category)
{
    switch (category) {
    case Category::All:
        return {};
    case Category::Iranian:
        return u"iranian"_s;
    case Category::International:
        return u"international"_s;
    case Category::Instrumental:
        return u"instrumental"_s;
    }
    Q_UNREACHABLE();
}

void StationStore::setSelectedCategory(Category category)
{
    if (std::exchange(m_selectedCategory, category) != category)
        Q_EMIT selectedCategoryChanged();
}

QList<Station> StationStore::filteredStations() const
{
    const auto wanted = key(m_selectedCategory);
    if (!wanted)
        return m_stations;
    QList<Station> filtered;
    for (const auto &station : m_stations) {
        if (station.category == wanted)
            filtered.append(station);
    }
    return filtered;
}

QCoro::Task<void> StationStore::load(bool force)
{
    if (m_isLoading)
        co_return;
    setLoading(true);
    setErrorMessage({});
    const QPointer self(this);
    QList<Station> fresh;
    std::exception_ptr failure;
    try {
        const auto refresh = refreshed(m_stations);
        co_await QFuture<void>(refresh); // what waits holds no list, which it would free on this thread
        fresh = refresh.result();
    } catch (...) {
        failure = std::current_exception();
    }
    if (!self)
        co_return;
    if (!failure)
        publish(std::move(fresh));
    else if (m_stations.isEmpty() || force)
        setErrorMessage(errorDescription(failure));
    setLoading(false);
}

QFuture<QList<Station>> StationStore::refreshed(const QList<Station> &old) const
{
    return m_client.fetchStations().then(
        QThreadPool::globalInstance(),
        [old](const QFuture<QList<Station>> &answer) { return withCarriedTracks(answer.result(), old); });
}

void StationStore::publish(QList<Station> stations)
{
    m_stations.swap(stations);
    Q_EMIT stationsChanged();
    disposeOfElsewhere(std::move(stations));
}

void StationStore::setLoading(bool loading)
{
    if (std::exchange(m_isLoading, loading) != loading)
        Q_EMIT isLoadingChanged();
}

void StationStore::setErrorMessage(std::optional<QString> message)
{
    if (message == m_errorMessage)
        return;
    m_errorMessage = std::move(message);
    Q_EMIT errorMessageChanged();
}

} // namespace navorin
