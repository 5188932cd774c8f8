#include "Views/Catalogue/HomeView.h"

#include "Platform/Tasks/Detached.h"
#include "Services/Account/AuthStore.h"
#include "Services/Catalogue/StationStore.h"
#include "Services/Playback/RadioPlayer.h"
#include "Services/Recognition/ShazamManager.h"
#include "Views/Catalogue/HomeDecisions.h"
#include "Views/Playback/StationSelection.h"
#include "Views/ViewSetup.h"

#include <QTime>

#include <algorithm>

namespace navorin {

HomeView::HomeView(QObject *parent)
    : HomeView(StationStore::shared(), RadioPlayer::shared(), AuthStore::shared(), ShazamManager::shared(),
               parent)
{
}

HomeView::HomeView(StationStore &store, RadioPlayer &player, AuthStore &auth, ShazamManager &shazam,
                   QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_player(player)
    , m_auth(auth)
    , m_shazam(shazam)
{
    connect(&m_store, &StationStore::stationsChanged, this, &HomeView::showStations);
    connect(&m_store, &StationStore::selectedCategoryChanged, this, &HomeView::showStations);
    connect(&m_store, &StationStore::selectedCategoryChanged, this, &HomeView::selectedCategoryChanged);
    connect(&m_store, &StationStore::isLoadingChanged, this, [this] {
        m_refreshAsked = m_refreshAsked && m_store.isLoading();
        Q_EMIT statusChanged();
    });
    connect(&m_store, &StationStore::errorMessageChanged, this, &HomeView::statusChanged);
    connect(&m_auth, &AuthStore::userChanged, this, &HomeView::isSignedInChanged);
    connect(&m_player, &RadioPlayer::isPlayingChanged, this, &HomeView::statusChanged);
    connect(&m_player, &RadioPlayer::isBufferingChanged, this, &HomeView::statusChanged);
    connect(&m_player, &RadioPlayer::currentStationChanged, this, &HomeView::showSelection);
    connect(&m_shazam, &ShazamManager::openRequestChanged, this, &HomeView::takeOpenRequest);
    showSelection();
    showStations();
}

QString HomeView::greeting() const
{
    return navorin::greeting(QTime::currentTime().hour());
}

QString HomeView::statusLabel() const
{
    return navorin::statusLabel(
        {m_player.isBuffering(), m_player.isPlaying(), m_store.isLoading(), m_store.stations().size()});
}

bool HomeView::isPlaying() const
{
    return m_player.isPlaying();
}

HomeView::Content HomeView::content() const
{
    return Content(
        homeContent(m_store.errorMessage().has_value(), m_store.isLoading(), !m_store.stations().isEmpty()));
}

QString HomeView::errorMessage() const
{
    return m_store.errorMessage().value_or(QString());
}

bool HomeView::isRefreshing() const
{
    return m_refreshAsked && !m_store.stations().isEmpty();
}

bool HomeView::hasStation() const
{
    return m_player.hasStation();
}

bool HomeView::isSignedIn() const
{
    return m_auth.user().has_value();
}

bool HomeView::opensAccountAtStart() const
{
    return viewSurroundings().debugLogin;
}

QStringList HomeView::categories() const
{
    QStringList labels;
    for (const auto category : StationStore::categories())
        labels.append(StationStore::label(category));
    return labels;
}

int HomeView::selectedCategory() const
{
    return int(StationStore::categories().indexOf(m_store.selectedCategory()));
}

void HomeView::selectCategory(int category)
{
    m_store.setSelectedCategory(StationStore::categories().at(category));
}

void HomeView::refresh()
{
    m_refreshAsked = true;
    detach(m_store.load(true), "refreshing the catalogue");
    Q_EMIT statusChanged();
}

void HomeView::openCard(int row)
{
    const auto stations = m_store.stations();
    const auto found = std::find_if(
        stations.cbegin(), stations.cend(),
        [genre = m_stations.genreAt(row)](const Station &station) { return station.genre == genre; });
    if (found == stations.cend())
        return;
    if (opensDetail(*found)) {
        Q_EMIT detailRequested(QVariant::fromValue(*found));
        return;
    }
    selectSoon(m_player, *found);
    m_player.setFullPlayerPresented(true);
}

QVariant HomeView::detailAtStart() const
{
    const auto &station = viewSurroundings().debugDetail;
    return station ? QVariant::fromValue(*station) : QVariant();
}

void HomeView::showStations()
{
    m_stations.setStations(m_store.filteredStations());
    Q_EMIT statusChanged();
}

void HomeView::showSelection()
{
    const auto &current = m_player.currentStation();
    m_stations.setSelectedGenre(current ? std::optional(current->genre) : std::nullopt);
    Q_EMIT hasStationChanged();
}

void HomeView::takeOpenRequest()
{
    if (!m_shazam.openRequest())
        return;
    m_shazam.setOpenRequest(false);
    Q_EMIT recognitionRequested();
}

} // namespace navorin
